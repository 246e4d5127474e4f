#include "Launch/Demo/DemoText.h"

#include "Core/CVXTypes.h"

namespace
{
/** A word, or what stands for one in a text without blanks, isn't longer than this. */
constexpr int32 MaxPieceChars = 60;

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

int32 CountDemoTokens(const FDemoRequest& Request)
{
	int32 Tokens = FCVXTokenCounter::EstimateTokens(Request.Question);
	for (const FDemoCall& Call : Request.Calls)
	{
		Tokens += FCVXTokenCounter::EstimateTokens(Call.Result);
	}
	return Tokens;
}
