#pragma once

#include "Containers/UnrealString.h"

/** Keeps API keys out of what is shown, whichever way they got into a text. Game thread. */
class FKeyMask
{
public:
	/** A shorter text is no key, and hiding it would tear other texts apart. */
	static constexpr int32 MinKeyChars = 8;

	void Hide(const FString& Key);
	/** The text with a mark in the place of each hidden key. */
	FString Apply(const FString& Text) const;

private:
	TArray<FString> Keys;
};
