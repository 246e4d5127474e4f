#include "Containers/UnrealString.h"
#include "Tools/Diff/CVXLineScript.h"
#include "Tools/Diff/CVXUnifiedDiff.h"
#include "Tools/Edit/CVXHunkApplication.h"
#include "Tools/Edit/CVXPatchParser.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace
{
/** Whether the patch of the preview makes the new lines of the old ones. It doesn't tell of a missing last line end. */
void CheckRoundTrip(FString Old, FString New)
{
	Old.AppendChar(u'\n');
	New.AppendChar(u'\n');
	const TArray<FStringView> NewLines = SplitIntoLines(New);
	const int32 LineCount = std::max(SplitIntoLines(Old).Num(), NewLines.Num());
	const bool bComparable = LineCount <= 2000 && !(Old + New).Contains(TEXT("\r"));
	const TArray<FCVXFilePatch> Files = ParsePatch(GenerateUnifiedDiff(Old, New, TEXT("file"), 3));
	if (!bComparable || Files.IsEmpty())
	{
		return;
	}
	FString Text = Old;
	FString Error;
	check(Files.Num() == 1 && ApplyHunksToText(Text, Files[0], Error));
	const TArray<FStringView> Lines = SplitIntoLines(Text);
	check(Lines.Num() == NewLines.Num());
	check(std::equal(Lines.GetData(), Lines.GetData() + Lines.Num(), NewLines.GetData()));
}
} // namespace

/** Takes what stands in front of the first zero byte for a patch, and for an old text; the rest is the text. */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size)
{
	const std::uint8_t* Zero = std::find(Data, Data + Size, 0);
	const FString First = FString::FromUtf8((const ANSICHAR*)Data, Zero - Data);
	const std::size_t Rest = std::min<std::size_t>(Zero - Data + 1, Size);
	const FString Second = FString::FromUtf8((const ANSICHAR*)Data + Rest, (int64)(Size - Rest));
	for (const FCVXFilePatch& File : ParsePatch(First))
	{
		FString Text = Second;
		FString Error;
		check(ApplyHunksToText(Text, File, Error) || !Error.IsEmpty());
		(void)MakeNewText(File);
	}
	CheckRoundTrip(First, Second);
	return 0;
}
