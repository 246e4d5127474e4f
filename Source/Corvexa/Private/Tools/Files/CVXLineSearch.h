#pragma once

#include "Containers/UnrealString.h"
#include "Tools/Files/CVXByteSearch.h"

/** A line that holds what was looked for. */
struct FCVXLineMatch
{
	/** Counted from 1. */
	int32 Line = 0;
	/** Without the blanks at both ends. */
	FString Text;
};

/**
 * Looks for a plain text in the lines of files, as if each file were loaded as text and cut into lines. Bytes that
 * can't hold the text are never made text. Any thread.
 */
class FCVXLineSearch
{
public:
	/** @param InPattern is in every line when empty. */
	FCVXLineSearch(const FString& InPattern, ESearchCase::Type InCase);

	/** Adds the matching lines of a file's bytes, in order. @param MaxMatches the number at which Out is full. */
	void Search(const TArray<uint8>& Bytes, int32 MaxMatches, TArray<FCVXLineMatch>& Out) const;

private:
	void SearchBytes(const TArray<uint8>& Bytes, int32 MaxMatches, TArray<FCVXLineMatch>& Out) const;
	void SearchText(const FString& Text, int32 MaxMatches, TArray<FCVXLineMatch>& Out) const;
	bool IsIn(const FString& Line) const;

	FString Pattern;
	ESearchCase::Type Case;
	/** Bytes that every matching line has; empty when there are none to go by. */
	FCVXByteSearch Needle;
	/** Whether a line that has the needle matches for sure. */
	bool bNeedleIsWhole = false;
	/** No line has a line end in it. */
	bool bNeverMatches = false;
};
