#include "Launch/Terminal/KeyMask.h"

void FKeyMask::Hide(const FString& Key)
{
	if (Key.Len() >= MinKeyChars)
	{
		Keys.AddUnique(Key);
		Keys.Sort([](const FString& A, const FString& B) { return A.Len() > B.Len(); });
	}
}

FString FKeyMask::Apply(const FString& Text) const
{
	FString Masked = Text;
	for (const FString& Key : Keys)
	{
		Masked.ReplaceInline(Key, TEXT("[API key]"), ESearchCase::CaseSensitive);
	}
	return Masked;
}

FString FKeyMask::ApplyToPiece(const FString& Piece, FString& InOutHeld) const
{
	FString Text = Apply(InOutHeld + Piece);
	const int32 HeldChars = CountPossibleKeyChars(Text);
	InOutHeld = Text.Right(HeldChars);
	Text.LeftChopInline(HeldChars);
	return Text;
}

/** How many of the last characters begin a key without being the whole of it. */
int32 FKeyMask::CountPossibleKeyChars(const FString& Text) const
{
	int32 Longest = 0;
	for (const FString& Key : Keys)
	{
		int32 Chars = FMath::Min(Key.Len() - 1, Text.Len());
		while (Chars > Longest && !Text.EndsWith(Key.Left(Chars), ESearchCase::CaseSensitive))
		{
			--Chars;
		}
		Longest = FMath::Max(Longest, Chars);
	}
	return Longest;
}
