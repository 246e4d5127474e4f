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

	/**
	 * The same for a text that comes in pieces. @param InOutHeld of this text: an end of it that may be the beginning
	 * of a key, kept until the next piece tells; empty at first. What it holds at the text's end is shown as it is.
	 */
	FString ApplyToPiece(const FString& Piece, FString& InOutHeld) const;

private:
	int32 CountPossibleKeyChars(const FString& Text) const;

	/** The longest first, so that one that begins another doesn't leave the other's end. */
	TArray<FString> Keys;
};
