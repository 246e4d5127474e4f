#include "Launch/Terminal/KeyMask.h"

void FKeyMask::Hide(const FString& Key)
{
	if (Key.Len() >= MinKeyChars)
	{
		Keys.AddUnique(Key);
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
