#include "Launch/View/ShownTexts.h"

#include "Launch/View/ConversationView.h"

FString ShownTexts::DescribeState(ECVXTaskState State)
{
	switch (State)
	{
	case ECVXTaskState::Streaming:
		return TEXT("the model answers");
	case ECVXTaskState::ExecutingTool:
		return TEXT("tools run");
	case ECVXTaskState::WaitingApproval:
		return TEXT("waiting for approval");
	case ECVXTaskState::WaitingClarification:
		return TEXT("waiting for an answer");
	case ECVXTaskState::WaitingForSubAgent:
		return TEXT("waiting for a sub-agent");
	case ECVXTaskState::Cancelled:
		return TEXT("cancelled");
	case ECVXTaskState::Idle:
	case ECVXTaskState::Complete:
	case ECVXTaskState::Error:
		break;
	}
	return FString();
}

FString ShownTexts::SumUp(const FString& Text, int32 MaxChars)
{
	TArray<FString> Lines;
	Text.TrimStartAndEnd().ParseIntoArrayLines(Lines, false);
	if (Lines.IsEmpty())
	{
		return TEXT("(no output)");
	}
	const FString More = Lines.Num() > 1 ? FString::Printf(TEXT(" (%d lines)"), Lines.Num()) : FString();
	const FString First = Lines[0].TrimStartAndEnd();
	const int32 Room = FMath::Max(MaxChars - More.Len(), 10);
	return (First.Len() > Room ? First.Left(Room - 3) + TEXT("...") : First) + More;
}

FString ShownTexts::FormatSeconds(double Seconds)
{
	if (Seconds < 10.0)
	{
		return FString::Printf(TEXT("%.1f s"), Seconds);
	}
	const int32 Whole = static_cast<int32>(Seconds);
	return Whole < 60 ? FString::Printf(TEXT("%d s"), Whole)
					  : FString::Printf(TEXT("%d min %d s"), Whole / 60, Whole % 60);
}

FString ShownTexts::DescribeUsage(const FShownUsage& Usage)
{
	const FCVXTokenUsage& Tokens = Usage.Tokens;
	FString Text =
		FString::Printf(TEXT("%s tokens in, %s out"), *FCVXTokenCounter::FormatTokenCount(Tokens.InputTokens),
			*FCVXTokenCounter::FormatTokenCount(Tokens.OutputTokens));
	if (Tokens.CacheRead > 0)
	{
		Text += FString::Printf(TEXT(", %s from the cache"), *FCVXTokenCounter::FormatTokenCount(Tokens.CacheRead));
	}
	return Text + TEXT(", ") + FormatSeconds(Usage.Seconds);
}
