#include "Tools/Edit/CVXTextReplacement.h"

namespace
{
const TCHAR* const CrLf = TEXT("\r\n");
const TCHAR* const Lf = TEXT("\n");

FString WithLineFeeds(const FString& Text)
{
	return Text.Replace(CrLf, Lf, ESearchCase::CaseSensitive);
}

FString WithLineEndsOf(const FString& Original, const FString& Text)
{
	return Original.Contains(CrLf, ESearchCase::CaseSensitive) ? Text.Replace(Lf, CrLf, ESearchCase::CaseSensitive)
															   : Text;
}

FString TrimLineEnds(const FString& Text)
{
	FString Result;
	Result.Reserve(Text.Len());
	FStringView Rest = Text;
	int32 End = INDEX_NONE;
	while (Rest.FindChar(u'\n', End))
	{
		Result += Rest.Left(End).TrimEnd();
		Result.AppendChar(u'\n');
		Rest.RemovePrefix(End + 1);
	}
	return Result += Rest.TrimEnd();
}

/** Places that don't overlap; none for an empty needle. */
int32 CountPlaces(FStringView Text, FStringView Needle)
{
	int32 Count = 0;
	int32 From = 0;
	while (!Needle.IsEmpty() && (From = Text.Find(Needle, From)) != INDEX_NONE)
	{
		++Count;
		From += Needle.Len();
	}
	return Count;
}

/** What is worked on, with line feeds alone. */
struct FWorkingTexts
{
	FString Text;
	FString Old;
	FString New;

	void TrimAll()
	{
		for (FString* Each : {&Text, &Old, &New})
		{
			*Each = TrimLineEnds(*Each);
		}
	}

	FString Replaced() const { return Text.Replace(Old, New, ESearchCase::CaseSensitive); }
};
} // namespace

bool FCVXTextReplacement::Apply(FString& InOutText, int32& OutCount, FString& OutError) const
{
	FWorkingTexts Working = {WithLineFeeds(InOutText), WithLineFeeds(OldString), WithLineFeeds(NewString)};
	OutCount = CountPlaces(Working.Text, Working.Old);
	if (OutCount == 0)
	{
		Working.TrimAll();
		OutCount = CountPlaces(Working.Text, Working.Old);
	}
	if (OutCount == 0)
	{
		OutError = TEXT("old_string not found in file. The text may differ from what you expect — use read_file to see "
						"the exact content before editing.");
		return false;
	}
	if (OutCount > 1 && !bReplaceAll)
	{
		OutError = FString::Printf(TEXT("old_string found %d times — ambiguous. Use replace_all:true or make "
										"old_string more specific."),
			OutCount);
		return false;
	}
	InOutText = WithLineEndsOf(InOutText, Working.Replaced());
	return true;
}

FString FCVXTextReplacement::Preview(const FString& Text) const
{
	const FWorkingTexts Working = {WithLineFeeds(Text), WithLineFeeds(OldString), WithLineFeeds(NewString)};
	const int32 First = Working.Text.Find(Working.Old, ESearchCase::CaseSensitive);
	if (First == INDEX_NONE)
	{
		return Text;
	}
	return WithLineEndsOf(Text,
		bReplaceAll ? Working.Replaced()
					: Working.Text.Left(First) + Working.New + Working.Text.RightChop(First + Working.Old.Len()));
}
