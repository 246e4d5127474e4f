#include "SemanticSearch/CVXBM25File.h"

#include <cstddef>
#include <cstdint>

namespace
{
bool IsSame(const FCVXBM25Doc& A, const FCVXBM25Doc& B)
{
	return A.FilePath.Equals(B.FilePath) && A.Text.Equals(B.Text) && A.StartLine == B.StartLine &&
		A.EndLine == B.EndLine && A.TokenCount == B.TokenCount && A.FileTimestamp == B.FileTimestamp;
}
} // namespace

/** Takes the input for the file of an index; what has been read is written and read again without a difference. */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size)
{
	const FString Json = FString::FromUtf8(reinterpret_cast<const ANSICHAR*>(Data), static_cast<int64>(Size));
	FCVXBM25Contents First;
	if (!CVXBM25File::Read(Json, First))
	{
		return 0;
	}
	FString Written;
	FCVXBM25Contents Second;
	check(CVXBM25File::Write(First.Docs, First.AverageDocLength, Written));
	check(CVXBM25File::Read(Written, Second));
	check(First.Docs.Num() == Second.Docs.Num() && First.AverageDocLength == Second.AverageDocLength);
	for (int32 Index = 0; Index < First.Docs.Num(); ++Index)
	{
		check(IsSame(First.Docs[Index], Second.Docs[Index]));
	}
	return 0;
}
