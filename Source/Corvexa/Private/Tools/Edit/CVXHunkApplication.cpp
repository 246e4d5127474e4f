#include "Tools/Edit/CVXHunkApplication.h"

namespace
{
FStringView WithoutCr(FStringView Line)
{
	return Line.LeftChop(Line.EndsWith(u'\r') ? 1 : 0);
}

bool IsAdded(const FString& HunkLine)
{
	return FStringView(HunkLine).StartsWith(u'+');
}

bool IsRemoved(const FString& HunkLine)
{
	return FStringView(HunkLine).StartsWith(u'-');
}

/** A hunk's line without its marker. */
FStringView TextOf(const FString& HunkLine)
{
	return FStringView(HunkLine).RightChop(1);
}

/** Makes the new lines beside the old ones, in one pass over both. */
class FHunkApplier
{
public:
	explicit FHunkApplier(TArray<FString>& InLines)
		: Old(InLines)
	{
		New.Reserve(Old.Num());
	}

	bool Apply(const FCVXDiffHunk& Hunk, FString& OutError)
	{
		const int64 Start = FindStart(Hunk);
		if (!Matches(Hunk, Start, OutError))
		{
			return false;
		}
		KeepUntil((int32)Start);
		for (const FString& Line : Hunk.Lines)
		{
			Take(Line);
		}
		return true;
	}

	void Finish()
	{
		KeepUntil(Old.Num());
		Old = MoveTemp(New);
	}

private:
	/** @return the index of the hunk's first old line. A hunk without any goes behind the line that it names. */
	int64 FindStart(const FCVXDiffHunk& Hunk) const
	{
		const bool bInserts =
			Hunk.OldCount == 0 && !Hunk.Lines.ContainsByPredicate([](const FString& Line) { return !IsAdded(Line); });
		// Line 0 is in front of an empty file alone.
		const bool bBehind = bInserts && (Hunk.OldStart > 0 || Old.IsEmpty());
		return (int64)Hunk.OldStart - (bBehind ? 0 : 1);
	}

	bool Matches(const FCVXDiffHunk& Hunk, int64 Start, FString& OutError) const
	{
		int64 Index = Start;
		for (const FString& Line : Hunk.Lines)
		{
			if (!IsAdded(Line) && !MatchesLine(Index++, TextOf(Line), OutError))
			{
				return false;
			}
		}
		return (Start >= Taken && Start <= Old.Num()) || Mismatch(Start, EndText(Start), OutError);
	}

	bool MatchesLine(int64 Index, FStringView Text, FString& OutError) const
	{
		if (Index < Taken || Index >= Old.Num())
		{
			return Mismatch(Index, EndText(Index), OutError);
		}
		const FStringView Expected = WithoutCr(Text);
		const FStringView Got = WithoutCr(Old[(int32)Index]);
		return Expected == Got ||
			Mismatch(Index,
				FString::Printf(TEXT(":\n  Expected: \"%s\"\n  Got:      \"%s\""), *FString(Expected), *FString(Got)),
				OutError);
	}

	FString EndText(int64 Index) const
	{
		return Index >= 0 && Index < Taken ? TEXT(": an earlier hunk has changed it; hunks must come in file order.")
										   : TEXT(": file has fewer lines than expected.");
	}

	bool Mismatch(int64 Index, const FString& What, FString& OutError) const
	{
		// Told as the line's number in the file as it would be by now.
		const int64 Shown = Index + 1 + New.Num() - Taken;
		OutError = TEXT("Hunk mismatch at line ") + FString::FromInt(Shown) + What;
		return false;
	}

	void KeepUntil(int32 End)
	{
		for (; Taken < End; ++Taken)
		{
			New.Add(MoveTemp(Old[Taken]));
		}
	}

	void Take(const FString& HunkLine)
	{
		if (IsAdded(HunkLine))
		{
			New.Add(FString(TextOf(HunkLine)));
			return;
		}
		if (!IsRemoved(HunkLine))
		{
			const bool bCr = FStringView(Old[Taken]).EndsWith(u'\r');
			New.Add(FString(WithoutCr(TextOf(HunkLine))) + (bCr ? TEXT("\r") : TEXT("")));
		}
		++Taken;
	}

	TArray<FString>& Old;
	TArray<FString> New;
	/** Old lines that have been dealt with. */
	int32 Taken = 0;
};

bool HasCr(const FCVXFilePatch& File)
{
	return File.Hunks.ContainsByPredicate(
		[](const FCVXDiffHunk& Hunk) {
			return Hunk.Lines.ContainsByPredicate(
				[](const FString& Line) { return FStringView(Line).EndsWith(u'\r'); });
		});
}

void AddCrToNewLines(FCVXFilePatch& File)
{
	for (FCVXDiffHunk& Hunk : File.Hunks)
	{
		for (FString& Line : Hunk.Lines)
		{
			Line += IsAdded(Line) ? TEXT("\r") : TEXT("");
		}
	}
}

/** @return whether the text's last line had an end. */
bool SplitText(const FString& Text, TArray<FString>& OutLines)
{
	Text.ParseIntoArray(OutLines, TEXT("\n"), false);
	const bool bFinalEnd = Text.EndsWith(TEXT("\n"));
	if (bFinalEnd)
	{
		(void)OutLines.Pop();
	}
	return bFinalEnd;
}

ECVXFinalLineEnd FinalLineEndOf(const FCVXFilePatch& File)
{
	return File.Hunks.IsEmpty() ? ECVXFinalLineEnd::Unsaid : File.Hunks.Last().FinalLineEnd;
}

bool KeepsFinalEnd(const FCVXFilePatch& File, bool bHadOne)
{
	const ECVXFinalLineEnd Said = FinalLineEndOf(File);
	return Said == ECVXFinalLineEnd::Unsaid ? bHadOne : Said == ECVXFinalLineEnd::Present;
}

FString JoinLines(const TArray<FString>& Lines, bool bFinalEnd)
{
	FString Text = FString::Join(Lines, TEXT("\n"));
	Text += !Lines.IsEmpty() && bFinalEnd ? TEXT("\n") : TEXT("");
	return Text;
}
} // namespace

bool ApplyHunks(TArray<FString>& Lines, const FCVXFilePatch& File, FString& OutError)
{
	FHunkApplier Applier(Lines);
	for (const FCVXDiffHunk& Hunk : File.Hunks)
	{
		if (!Applier.Apply(Hunk, OutError))
		{
			return false;
		}
	}
	Applier.Finish();
	return true;
}

bool ApplyHunksToText(FString& InOutText, const FCVXFilePatch& File, FString& OutError)
{
	TArray<FString> Lines;
	// What an empty file gets are whole lines.
	const bool bHadFinalEnd = SplitText(InOutText, Lines) || Lines.IsEmpty();
	const bool bFinalEnd = KeepsFinalEnd(File, bHadFinalEnd);
	FCVXFilePatch Adapted = File;
	const bool bAddCr = InOutText.Contains(TEXT("\r\n")) && !HasCr(File);
	if (bAddCr)
	{
		AddCrToNewLines(Adapted);
		// The last line may get an end, and another one may lose it.
		Lines.Last() += bHadFinalEnd ? TEXT("") : TEXT("\r");
	}
	if (!ApplyHunks(Lines, Adapted, OutError))
	{
		return false;
	}
	InOutText = JoinLines(Lines, bFinalEnd);
	if (bAddCr && !bFinalEnd)
	{
		(void)InOutText.RemoveFromEnd(TEXT("\r"));
	}
	return true;
}

FString MakeNewText(const FCVXFilePatch& File)
{
	TArray<FString> Lines;
	for (const FCVXDiffHunk& Hunk : File.Hunks)
	{
		for (const FString& Line : Hunk.Lines)
		{
			if (IsAdded(Line))
			{
				Lines.Add(FString(TextOf(Line)));
			}
		}
	}
	return JoinLines(Lines, KeepsFinalEnd(File, true));
}
