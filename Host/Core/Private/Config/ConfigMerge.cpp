#include "ConfigMerge.h"

namespace
{
/** Letters count, unlike in the comparison of texts. */
int32 FindExact(const TArray<FString>& Values, const FString& Wanted)
{
	return Values.IndexOfByPredicate([&](const FString& Value) { return Value.Equals(Wanted); });
}

bool SameValues(const TArray<FString>& A, const TArray<FString>& B)
{
	bool bSame = A.Num() == B.Num();
	for (int32 Index = 0; bSame && Index < A.Num(); ++Index)
	{
		bSame = A[Index].Equals(B[Index]);
	}
	return bSame;
}

/** For each value of From whether it is among To, as often as it stands there. */
TArray<bool> FindKept(const TArray<FString>& From, TArray<FString> To)
{
	TArray<bool> Kept;
	for (const FString& Value : From)
	{
		const int32 Found = FindExact(To, Value);
		Kept.Add(Found != INDEX_NONE);
		if (Found != INDEX_NONE)
		{
			To.RemoveAt(Found);
		}
	}
	return Kept;
}
} // namespace

TArray<FString> MergeArray(const TArray<FString>& Base, const TArray<FString>& Mine, const TArray<FString>& Theirs)
{
	if (SameValues(Base, Theirs))
	{
		return Mine;
	}
	TArray<FString> Result = Theirs;
	const TArray<bool> Stays = FindKept(Base, Mine);
	TArray<bool> Known = FindKept(Mine, Base);
	for (int32 Index = 0; Index < Base.Num(); ++Index)
	{
		const int32 Place = Stays[Index] ? INDEX_NONE : FindExact(Result, Base[Index]);
		if (Place == INDEX_NONE)
		{
			continue;
		}
		if (Mine.Num() >= Base.Num() && !Known[Index])
		{
			Result[Place] = Mine[Index];
			Known[Index] = true;
			continue;
		}
		Result.RemoveAt(Place);
	}
	for (int32 Index = 0; Index < Mine.Num(); ++Index)
	{
		if (!Known[Index] && FindExact(Result, Mine[Index]) == INDEX_NONE)
		{
			Result.Add(Mine[Index]);
		}
	}
	return Result;
}
