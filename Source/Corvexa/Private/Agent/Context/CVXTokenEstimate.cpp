#include "Agent/Context/CVXContextManager.h"

namespace
{
/** From this many characters on, a quarter of the length is good enough. */
constexpr int32 QuarterRuleLength = 100001;
/** About 3.5 letters and 2.5 digits go to a token. */
constexpr float TokensPerLetter = 0.2857143f;
constexpr float TokensPerDigit = 0.4f;
/** An image costs its Base64 length divided by the second, at least the first. */
constexpr int32 MinImageTokens = 85;
constexpr int32 Base64CharsPerImageToken = 100;

bool IsCjkIdeograph(TCHAR Char)
{
	return Char >= 0x4E00 && Char <= 0x9FFF;
}

/** @return the index behind the run of characters that pass the test, which the first one does. */
template <typename TestType>
int32 EndOfRun(FStringView Text, int32 Start, TestType Test)
{
	int32 End = Start + 1;
	while (End < Text.Len() && Test(Text[End]))
	{
		++End;
	}
	return End;
}

bool IsLetter(TCHAR Char)
{
	return FChar::IsAlpha(Char) && !IsCjkIdeograph(Char);
}

bool IsDigit(TCHAR Char)
{
	return FChar::IsDigit(Char);
}

/** Adds the cost of a run at Index. @return the index behind it. */
int32 AddRun(FStringView Text, int32 Index, float& Sum)
{
	const TCHAR Char = Text[Index];
	if (IsLetter(Char))
	{
		const int32 End = EndOfRun(Text, Index, IsLetter);
		Sum += FMath::Max(1.0f, static_cast<float>(End - Index) * TokensPerLetter);
		return End;
	}
	if (IsDigit(Char))
	{
		const int32 End = EndOfRun(Text, Index, IsDigit);
		Sum += FMath::Max(1.0f, static_cast<float>(End - Index) * TokensPerDigit);
		return End;
	}
	if (!FChar::IsWhitespace(Char))
	{
		Sum += Char <= 127 || IsCjkIdeograph(Char) ? 1.0f : 0.5f;
	}
	return Index + 1;
}
} // namespace

int32 FCVXContextManager::EstimateTokensForString(const FString& Text)
{
	if (Text.IsEmpty())
	{
		return 0;
	}
	if (Text.Len() >= QuarterRuleLength)
	{
		return FMath::Max(1, Text.Len() / 4);
	}
	float Sum = 0.0f;
	for (int32 Index = 0; Index < Text.Len();)
	{
		Index = AddRun(Text, Index, Sum);
	}
	return FMath::Max(1, FMath::RoundToInt(Sum));
}

int32 FCVXContextManager::EstimateTokensForMessage(const FCVXMessage& Message)
{
	int32 Sum = 0;
	for (const FCVXContentBlock& Block : Message.Content)
	{
		Sum += EstimateTokensForString(Block.Text) + EstimateTokensForString(Block.InputJson) +
			EstimateTokensForString(Block.ToolResultContent);
		if (!Block.ImageBase64.IsEmpty())
		{
			Sum += FMath::Max(MinImageTokens, Block.ImageBase64.Len() / Base64CharsPerImageToken);
		}
	}
	return Sum;
}
