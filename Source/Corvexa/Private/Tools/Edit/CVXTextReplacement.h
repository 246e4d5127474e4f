#pragma once

#include "Containers/UnrealString.h"

/** A replacement in a text, which heeds case and takes CR LF and LF for the same. Any thread. */
struct FCVXTextReplacement
{
	FString OldString;
	FString NewString;
	bool bReplaceAll = false;

	/**
	 * Replaces every place, or the only one. Where the old string isn't found, blanks at the ends of lines are taken
	 * out of text and strings and it is looked for again. A text that has CR LF anywhere comes out with it throughout.
	 * @param OutCount the places found. @param OutError why not, for the model; Text is then as it was.
	 */
	bool Apply(FString& InOutText, int32& OutCount, FString& OutError) const;

	/** What the text would be, for who is asked: the first place, or every one, as far as it is there exactly. */
	FString Preview(const FString& Text) const;
};
