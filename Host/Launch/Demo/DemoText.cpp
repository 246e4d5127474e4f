#include "Launch/Demo/DemoText.h"

#include "Algo/AnyOf.h"
#include "Core/CVXTypes.h"
#include "Misc/Guid.h"

namespace
{
/** A word, or what stands for one in a text without blanks, isn't longer than this. */
constexpr int32 MaxPieceChars = 60;

/** How the results of failed tools begin, of those that scenarios call. */
constexpr const TCHAR* FailureBeginnings[] = {TEXT("Tool execution "), TEXT("Tool '"), TEXT("File not found"),
	TEXT("Failed to "), TEXT("Access denied"), TEXT("Cannot "), TEXT("old_string "), TEXT("Missing required"),
	TEXT("DELEGATION BLOCKED"), TEXT("Delegation not allowed"), TEXT("[DELEGATION COMPLETE — Status: ERROR]")};

/** Whether the text may be cut ahead of this index: not within a character. */
bool IsWholeCharacter(const FString& Text, int32 Index)
{
	return Text[Index] < 0xDC00 || Text[Index] > 0xDFFF;
}
} // namespace

TArray<FString> SplitDemoText(const FString& Text)
{
	TArray<FString> Pieces;
	int32 Start = 0;
	for (int32 Index = 1; Index <= Text.Len(); ++Index)
	{
		const bool bEnd = Index == Text.Len();
		const bool bWordEnd = !bEnd && Text[Index - 1] == TEXT(' ') && Text[Index] != TEXT(' ');
		const bool bTooLong = !bEnd && Index - Start >= MaxPieceChars && IsWholeCharacter(Text, Index);
		if (bEnd || bWordEnd || bTooLong)
		{
			Pieces.Add(Text.Mid(Start, Index - Start));
			Start = Index;
		}
	}
	return Pieces;
}

FString MakeDemoCallId()
{
	return TEXT("demo_") + FGuid::NewGuid().ToString(EGuidFormats::Digits);
}

bool SoundsFailed(const FString& Result)
{
	return Algo::AnyOf(FailureBeginnings, [&](const TCHAR* Beginning) { return Result.StartsWith(Beginning); });
}

int32 CountDemoTokens(const FDemoRequest& Request)
{
	int32 Tokens = FCVXTokenCounter::EstimateTokens(Request.Question);
	for (const FDemoCall& Call : Request.Calls)
	{
		Tokens += FCVXTokenCounter::EstimateTokens(Call.Result);
	}
	return Tokens;
}
