#include "Agent/Guards/CVXCallCycle.h"

#include "Agent/Guards/CVXGuardContext.h"
#include "Templates/TypeHash.h"

namespace
{
uint32 HashCalls(const TArray<FCVXToolCall>& Calls)
{
	TArray<const FCVXToolCall*> Sorted;
	for (const FCVXToolCall& Call : Calls)
	{
		Sorted.Add(&Call);
	}
	// By arguments as well, so that two calls of one tool in either order are the same turn.
	Sorted.StableSort(
		[](const FCVXToolCall& A, const FCVXToolCall& B)
		{
			const int32 ByName = A.Name.Compare(B.Name, ESearchCase::IgnoreCase);
			return ByName != 0 ? ByName < 0 : A.Arguments.Compare(B.Arguments, ESearchCase::IgnoreCase) < 0;
		});
	uint32 Hash = 0;
	for (const FCVXToolCall* Call : Sorted)
	{
		Hash = HashCombine(Hash, GetTypeHash(Call->Name));
		Hash = HashCombine(Hash, GetTypeHash(Call->Arguments));
	}
	return Hash;
}
} // namespace

int32 CVXCallCycle::CountRepeats(FCVXGuardContext& Context)
{
	TArray<uint32>& Hashes = Context.State.RecentCallHashes;
	const uint32 Hash = HashCalls(Context.Calls);
	Hashes.Add(Hash);
	int32 Repeats = 0;
	while (Repeats < Hashes.Num() && Hashes[Hashes.Num() - 1 - Repeats] == Hash)
	{
		++Repeats;
	}
	return Repeats;
}
