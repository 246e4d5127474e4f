#pragma once

#include "Containers/Array.h"
#include "Containers/StringView.h"

/** What becomes of a line. */
enum class ECVXLineFate : uint8
{
	Equal,
	Removed,
	Added,
};

/** A line of an edit script. Its text lies in the texts that were compared; that of an equal line in the old one. */
struct FCVXScriptLine
{
	ECVXLineFate Fate = ECVXLineFate::Equal;
	FStringView Text;
};

/** The lines of a text without their ends, which are LF, CR or CR LF; an end at the end begins no further line. */
TArray<FStringView> SplitIntoLines(FStringView Text);

/**
 * The edits that lead from the old lines to the new ones with as many equal lines as can be, in the order of the file.
 * Lines that differ in case alone are equal. Where several scripts are as good, removals come before additions and the
 * equal lines are those found first from the end. Takes a bit for each pair of lines. Any thread.
 */
TArray<FCVXScriptLine> MakeLineScript(const TArray<FStringView>& Old, const TArray<FStringView>& New);
