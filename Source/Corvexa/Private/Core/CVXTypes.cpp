#include "Core/CVXTypes.h"

#include "Misc/Guid.h"

namespace
{
FCVXMessage MakeText(ECVXMessageRole Role, const FString& Text)
{
	FCVXMessage Message;
	Message.MessageId = FGuid::NewGuid().ToString(EGuidFormats::Digits);
	Message.Role = Role;
	Message.Timestamp = FDateTime::UtcNow();
	FCVXContentBlock& Block = Message.Content.AddDefaulted_GetRef();
	Block.Type = TEXT("text");
	Block.Text = Text;
	return Message;
}
} // namespace

FCVXMessage FCVXMessage::MakeUserText(const FString& Text)
{
	return MakeText(ECVXMessageRole::User, Text);
}

FCVXMessage FCVXMessage::MakeSystemText(const FString& Text)
{
	return MakeText(ECVXMessageRole::System, Text);
}

FString FCVXMessage::GetFirstTextContent() const
{
	const FCVXContentBlock* Block =
		Content.FindByPredicate([](const FCVXContentBlock& Each) { return Each.Type == TEXT("text"); });
	return Block ? Block->Text : FString();
}

float FCVXTokenUsage::EstimateCostUSD(float InputPricePerMillion, float OutputPricePerMillion) const
{
	return (float)OutputTokens * 1e-6f * OutputPricePerMillion + (float)InputTokens * 1e-6f * InputPricePerMillion;
}

int32 FCVXTokenCounter::EstimateTokens(const FString& Text)
{
	return FMath::Max(1, Text.Len() / 4);
}

float FCVXTokenCounter::EstimateCostUSD(int32 InputTokens, int32 OutputTokens, float InputPrice, float OutputPrice)
{
	return (float)InputTokens * 1e-6f * InputPrice + (float)OutputTokens * 1e-6f * OutputPrice;
}

FString FCVXTokenCounter::FormatCostUSD(float Cost)
{
	if (Cost < 0.0001f)
	{
		return TEXT("<$0.0001");
	}
	if (Cost < 0.01f)
	{
		return FString::Printf(TEXT("$%.4f"), Cost);
	}
	return Cost < 1.0f ? FString::Printf(TEXT("$%.3f"), Cost) : FString::Printf(TEXT("$%.2f"), Cost);
}

FString FCVXTokenCounter::FormatTokenCount(int32 Count)
{
	if (Count < 1000)
	{
		return FString::Printf(TEXT("%d"), Count);
	}
	return Count < 1000000 ? FString::Printf(TEXT("%.1fk"), Count * 0.001)
						   : FString::Printf(TEXT("%.1fM"), Count * 1e-6);
}

FCVXToolExecutionResult FCVXToolExecutionResult::MakeSuccess(FString Output)
{
	FCVXToolExecutionResult Result;
	Result.Output = MoveTemp(Output);
	return Result;
}

FCVXToolExecutionResult FCVXToolExecutionResult::MakeError(FString Message)
{
	FCVXToolExecutionResult Result = MakeSuccess(MoveTemp(Message));
	Result.bIsError = true;
	return Result;
}
