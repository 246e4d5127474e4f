#include "Tools/Diff/CVXUnifiedDiff.h"

#include "Math/UnrealMathUtility.h"
#include "Tools/Diff/CVXLineScript.h"

namespace
{
constexpr int32 MaxLines = 2000;

const TCHAR* const NoChanges = TEXT("(no changes)");

/** Entries of a script, from First up to Last, that make one hunk. */
struct FHunkRange
{
	int32 First = 0;
	int32 Last = 0;
};

TArray<FHunkRange> FindHunks(const TArray<FCVXScriptLine>& Script, int32 ContextLines)
{
	TArray<FHunkRange> Hunks;
	for (int32 Index = 0; Index < Script.Num(); ++Index)
	{
		if (Script[Index].Fate == ECVXLineFate::Equal)
		{
			continue;
		}
		const int32 First = FMath::Max(Index - ContextLines, 0);
		const int32 Last = FMath::Min(Index + ContextLines, Script.Num() - 1);
		if (!Hunks.IsEmpty() && First <= Hunks.Last().Last + 1)
		{
			Hunks.Last().Last = Last;
			continue;
		}
		Hunks.Add({First, Last});
	}
	return Hunks;
}

/** Lines of both files. */
struct FLineCounts
{
	int32 Old = 0;
	int32 New = 0;

	void Count(ECVXLineFate Fate)
	{
		Old += Fate != ECVXLineFate::Added ? 1 : 0;
		New += Fate != ECVXLineFate::Removed ? 1 : 0;
	}
};

TCHAR MarkerOf(ECVXLineFate Fate)
{
	return Fate == ECVXLineFate::Equal ? u' ' : (Fate == ECVXLineFate::Removed ? u'-' : u'+');
}

/** @param InOutBefore the lines in front of the hunk; then those in front of what follows. */
void AppendHunk(FString& Diff, const TArray<FCVXScriptLine>& Script, const FHunkRange& Hunk, FLineCounts& InOutBefore)
{
	FLineCounts Behind = InOutBefore;
	for (int32 Index = Hunk.First; Index <= Hunk.Last; ++Index)
	{
		Behind.Count(Script[Index].Fate);
	}
	Diff += FString::Printf(TEXT("@@ -%d,%d +%d,%d @@\n"), InOutBefore.Old + 1, Behind.Old - InOutBefore.Old,
		InOutBefore.New + 1, Behind.New - InOutBefore.New);
	for (int32 Index = Hunk.First; Index <= Hunk.Last; ++Index)
	{
		Diff.AppendChar(MarkerOf(Script[Index].Fate));
		Diff += Script[Index].Text;
		Diff.AppendChar(u'\n');
	}
	InOutBefore = Behind;
}

void AppendHunks(FString& Diff, const TArray<FCVXScriptLine>& Script, const TArray<FHunkRange>& Hunks)
{
	FLineCounts Before;
	int32 Index = 0;
	for (const FHunkRange& Hunk : Hunks)
	{
		for (; Index < Hunk.First; ++Index)
		{
			Before.Count(Script[Index].Fate);
		}
		AppendHunk(Diff, Script, Hunk, Before);
		Index = Hunk.Last + 1;
	}
}

FString ShownSide(const FString& Text, const TCHAR* Prefix, const FString& FilePath)
{
	return Text.IsEmpty() ? FString(TEXT("/dev/null")) : Prefix + FilePath;
}
} // namespace

FString GenerateUnifiedDiff(const FString& OldText, const FString& NewText, const FString& FilePath, int32 ContextLines)
{
	if (OldText == NewText)
	{
		return NoChanges;
	}
	TArray<FStringView> Old = SplitIntoLines(OldText);
	TArray<FStringView> New = SplitIntoLines(NewText);
	const bool bTruncated = Old.Num() > MaxLines || New.Num() > MaxLines;
	if (bTruncated)
	{
		Old.SetNum(MaxLines);
		New.SetNum(MaxLines);
	}
	const TArray<FCVXScriptLine> Script = MakeLineScript(Old, New);
	const TArray<FHunkRange> Hunks = FindHunks(Script, FMath::Max(ContextLines, 0));
	if (Hunks.IsEmpty())
	{
		return NoChanges;
	}
	FString Diff = FString::Printf(
		TEXT("--- %s\n+++ %s\n"), *ShownSide(OldText, TEXT("a/"), FilePath), *ShownSide(NewText, TEXT("b/"), FilePath));
	AppendHunks(Diff, Script, Hunks);
	if (bTruncated)
	{
		Diff += TEXT("\n... (diff truncated: file exceeds 2000 lines)\n");
	}
	return Diff;
}
