#include "Knowledge/CVXKnowledgeSummary.h"

#include "Algo/AnyOf.h"

namespace
{
constexpr int32 MaxSummaryChars = 2000;
constexpr const TCHAR* StartMark = TEXT("<!-- SUMMARY -->");
constexpr const TCHAR* EndMark = TEXT("<!-- END SUMMARY -->");
constexpr const TCHAR* Fence = TEXT("```");

/** What begins a line of a document's skeleton. */
constexpr const TCHAR* SkeletonStarts[] = {TEXT("#"), TEXT("**"), TEXT("- **"), TEXT("| ")};
/** What marks a line as a rule. */
constexpr const TCHAR* RuleWords[] = {
	TEXT("CRITICAL"), TEXT("MANDATORY"), TEXT("NEVER "), TEXT("ALWAYS "), TEXT("PREFERRED"), TEXT("IMPORTANT")};

bool IsWorthKeeping(const FString& Trimmed)
{
	return Algo::AnyOf(SkeletonStarts, [&](const TCHAR* Start) { return Trimmed.StartsWith(Start); }) ||
		Algo::AnyOf(RuleWords, [&](const TCHAR* Word) { return Trimmed.Contains(Word); });
}
} // namespace

FString CVXKnowledgeSummary::Make(const FString& Content)
{
	const int32 Start = Content.Find(StartMark);
	const int32 End = Content.Find(EndMark);
	if (Start == INDEX_NONE || End <= Start)
	{
		return ExtractSummary(Content);
	}
	const int32 First = Start + FCString::Strlen(StartMark);
	return Content.Mid(First, End - First).TrimStartAndEnd();
}

FString CVXKnowledgeSummary::ExtractSummary(const FString& Text)
{
	TArray<FString> Lines;
	Text.ParseIntoArrayLines(Lines, true);
	FString Summary;
	bool bInCode = false;
	for (const FString& Line : Lines)
	{
		const FString Trimmed = Line.TrimStartAndEnd();
		if (Trimmed.StartsWith(Fence))
		{
			bInCode = !bInCode;
		}
		else if (!bInCode && IsWorthKeeping(Trimmed))
		{
			Summary += Line + TEXT("\n");
		}
	}
	return Summary.Len() > MaxSummaryChars ? Summary.Left(MaxSummaryChars) + TEXT("\n...(truncated)") : Summary;
}
