#include "Tools/Edit/CVXPatchParser.h"

#include "Tools/Edit/CVXPatchPath.h"

namespace
{
const TCHAR* const OldHeader = TEXT("--- ");
const TCHAR* const NewHeader = TEXT("+++ ");
const TCHAR* const HunkHeader = TEXT("@@ ");

TArray<FStringView> SplitAtLineFeeds(FStringView Text)
{
	TArray<FStringView> Lines;
	int32 End = INDEX_NONE;
	while (Text.FindChar(u'\n', End))
	{
		Lines.Add(Text.Left(End));
		Text.RemovePrefix(End + 1);
	}
	if (!Text.IsEmpty())
	{
		Lines.Add(Text);
	}
	return Lines;
}

/** A CR behind a header can't belong to a file: the patch itself came with CR LF. */
void DropLineEndsOfThePatch(TArray<FStringView>& Lines)
{
	const FStringView* Header = Lines.FindByPredicate([](FStringView Line) { return Line.StartsWith(OldHeader); });
	if (!Header || !Header->EndsWith(u'\r'))
	{
		return;
	}
	for (FStringView& Line : Lines)
	{
		Line.RemoveSuffix(Line.EndsWith(u'\r') ? 1 : 0);
	}
}

/** Reads "start,count", where a missing count is 1. */
void ReadRange(FStringView Range, int32& OutStart, int32& OutCount)
{
	int32 Comma = INDEX_NONE;
	const bool bCount = Range.FindChar(u',', Comma);
	OutStart = FCString::Atoi(*FString(bCount ? Range.Left(Comma) : Range));
	OutCount = bCount ? FCString::Atoi(*FString(Range.RightChop(Comma + 1))) : 1;
}

FCVXDiffHunk ReadHunkHeader(FStringView Line)
{
	FCVXDiffHunk Hunk;
	const int32 Minus = Line.Find(TEXT("-"), 3);
	const int32 Plus = Minus == INDEX_NONE ? INDEX_NONE : Line.Find(TEXT("+"), Minus);
	if (Plus == INDEX_NONE)
	{
		return Hunk;
	}
	const int32 Blank = Line.Find(TEXT(" "), Plus);
	const int32 End = Blank == INDEX_NONE ? Line.Len() : Blank;
	ReadRange(Line.Mid(Minus + 1, Plus - Minus - 1), Hunk.OldStart, Hunk.OldCount);
	ReadRange(Line.Mid(Plus + 1, End - Plus - 1), Hunk.NewStart, Hunk.NewCount);
	return Hunk;
}

/** Takes a patch line by line. */
class FPatchReader
{
public:
	explicit FPatchReader(const FString& Patch)
		: Lines(SplitAtLineFeeds(Patch))
	{
		DropLineEndsOfThePatch(Lines);
	}

	TArray<FCVXFilePatch> Read()
	{
		for (Index = 0; Index < Lines.Num(); ++Index)
		{
			ReadLine(Lines[Index]);
		}
		CloseHunk();
		return MoveTemp(Files);
	}

private:
	void ReadLine(FStringView Line)
	{
		if (Line.StartsWith(OldHeader) && !IsRemovedLine())
		{
			CloseHunk();
			Files.AddDefaulted_GetRef().OldPath = ReadPatchPath(Line.RightChop(4));
		}
		else if (Line.StartsWith(NewHeader) && !Files.IsEmpty() && !(bInHunk && NewLeft > 0))
		{
			CloseHunk();
			Files.Last().NewPath = ReadPatchPath(Line.RightChop(4));
		}
		else if (Line.StartsWith(HunkHeader) && !Files.IsEmpty())
		{
			CloseHunk();
			OpenHunk(Line);
		}
		else if (bInHunk)
		{
			ReadHunkLine(Line);
		}
	}

	/** Whether what looks like a header is a line that the hunk still awaits. */
	bool IsRemovedLine() const
	{
		const bool bHeader = Index + 2 < Lines.Num() && Lines[Index + 1].StartsWith(NewHeader) &&
			Lines[Index + 2].StartsWith(HunkHeader);
		return bInHunk && OldLeft > 0 && !bHeader;
	}

	/** What follows a patch in a mail, or begins the next file. */
	bool EndsHunk(FStringView Line) const
	{
		return OldLeft <= 0 && NewLeft <= 0 &&
			(Line.Equals(TEXT("-- ")) || Line.StartsWith(TEXT("diff "), ESearchCase::CaseSensitive));
	}

	void ReadHunkLine(FStringView Line)
	{
		const TCHAR Marker = Line.IsEmpty() || Line.Equals(TEXT("\r")) ? u'\0' : Line[0];
		if (Marker == u'\0')
		{
			++PendingEmptyLines;
		}
		else if (EndsHunk(Line))
		{
			CloseHunk();
		}
		else if (Marker == u'\\')
		{
			NoteMissingLineEnd();
		}
		else if (Marker == u' ' || Marker == u'+' || Marker == u'-')
		{
			TakeEmptyLines(PendingEmptyLines);
			Take(Line, Marker);
		}
	}

	/** Behind a removed line it tells that the old file lacked a line end, which by itself says that the new has it. */
	void NoteMissingLineEnd()
	{
		const bool bOfOld = !Hunk().Lines.IsEmpty() && Hunk().Lines.Last().StartsWith(TEXT("-"));
		Hunk().FinalLineEnd = bOfOld ? ECVXFinalLineEnd::Present : ECVXFinalLineEnd::Missing;
	}

	void Take(FStringView Line, TCHAR Marker)
	{
		Hunk().Lines.Add(FString(Line));
		OldLeft -= Marker != u'+' ? 1 : 0;
		NewLeft -= Marker != u'-' ? 1 : 0;
	}

	void TakeEmptyLines(int32 Count)
	{
		for (; Count > 0; --Count)
		{
			Take(FStringView(), u' ');
		}
		PendingEmptyLines = 0;
	}

	void OpenHunk(FStringView Line)
	{
		Files.Last().Hunks.Add(ReadHunkHeader(Line));
		bInHunk = true;
		OldLeft = Hunk().OldCount;
		NewLeft = Hunk().NewCount;
	}

	void CloseHunk()
	{
		if (bInHunk)
		{
			TakeEmptyLines(FMath::Min(PendingEmptyLines, FMath::Min(OldLeft, NewLeft)));
		}
		bInHunk = false;
	}

	FCVXDiffHunk& Hunk() { return Files.Last().Hunks.Last(); }

	TArray<FStringView> Lines;
	int32 Index = 0;
	TArray<FCVXFilePatch> Files;
	bool bInHunk = false;
	/** Lines that the hunk awaits by its counts; below 0 where there were more. */
	int32 OldLeft = 0;
	int32 NewLeft = 0;
	/** Empty lines behind the hunk's last line, which are part of it only if something follows or the counts say so. */
	int32 PendingEmptyLines = 0;
};
} // namespace

TArray<FCVXFilePatch> ParsePatch(const FString& Patch)
{
	return FPatchReader(Patch).Read();
}
