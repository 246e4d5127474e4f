#include "Agent/Checkpoints/CVXCheckpointList.h"

#include "HAL/FileManager.h"
#include "Misc/Paths.h"

namespace
{
constexpr const TCHAR* NamePrefix = TEXT("checkpoint_");
/** Of a longer number we can't have been the author. */
constexpr int32 MaxDigits = 8;
constexpr const TCHAR* Padding = TEXT("00000000");

/** What tells a checkpoint from the others of its task: its name without the prefix, ".json" and ".gz". Empty for
 * another file. */
FString GetKey(const FString& FileName)
{
	FString Name = FileName;
	Name.RemoveFromEnd(TEXT(".gz"));
	const bool bIsOne = Name.RemoveFromStart(NamePrefix) && Name.RemoveFromEnd(TEXT(".json"));
	return bIsOne ? Name : FString();
}

int32 CountDigits(const FString& Key)
{
	int32 Digits = 0;
	while (Digits < Key.Len() && FChar::IsDigit(Key[Digits]))
	{
		++Digits;
	}
	return Digits;
}

/** The key in a form whose order is that of the numbers, however many digits they have. */
FString MakeSortKey(const FString& Key)
{
	const int32 Digits = CountDigits(Key);
	return Digits > 0 && Digits < MaxDigits ? FString(Padding + Digits) + Key : Key;
}

struct FFound
{
	FString SortKey;
	FString Name;
};
} // namespace

TArray<FString> CVXCheckpointList::Find(const FString& Directory)
{
	TArray<FString> Names;
	IFileManager::Get().FindFiles(Names, *FPaths::Combine(Directory, TEXT("*")), true, false);
	TMap<FString, FFound> FoundByKey;
	for (const FString& Name : Names)
	{
		const FString Key = GetKey(Name);
		if (!Key.IsEmpty() && (Name.EndsWith(TEXT(".gz")) || !FoundByKey.Contains(Key)))
		{
			FoundByKey.Add(Key, {MakeSortKey(Key), Name});
		}
	}
	TArray<FFound> Found;
	FoundByKey.GenerateValueArray(Found);
	Found.Sort([](const FFound& A, const FFound& B) { return A.SortKey < B.SortKey; });
	TArray<FString> Paths;
	for (const FFound& Each : Found)
	{
		Paths.Add(FPaths::Combine(Directory, Each.Name));
	}
	return Paths;
}

int32 CVXCheckpointList::FindNextNumber(const FString& Directory)
{
	TArray<FString> Names;
	IFileManager::Get().FindFiles(Names, *FPaths::Combine(Directory, TEXT("*")), true, true);
	int32 Next = 0;
	for (const FString& Name : Names)
	{
		const FString Key = GetKey(Name);
		const int32 Digits = CountDigits(Key);
		if (Digits > 0 && Digits <= MaxDigits)
		{
			Next = FMath::Max(Next, FCString::Atoi(*Key.Left(Digits)) + 1);
		}
	}
	return Next;
}

FString CVXCheckpointList::MakePath(const FString& Directory, int32 Number)
{
	return FPaths::Combine(Directory, FString::Printf(TEXT("%s%04d.json"), NamePrefix, Number));
}
