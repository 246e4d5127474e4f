#include "UObject/Enum.h"

#include "UObject/DisplayName.h"

namespace
{
FString ShortName(const FString& Name)
{
	const int32 Colons = Name.Find(TEXT("::"), ESearchCase::CaseSensitive, ESearchDir::FromEnd);
	return Colons == INDEX_NONE ? Name : Name.RightChop(Colons + 2);
}
} // namespace

FName UEnum::GetNameByIndex(int32 Index) const
{
	return Names.IsValidIndex(Index) ? Names[Index].Key : FName();
}

FString UEnum::GetNameStringByIndex(int32 Index) const
{
	return Names.IsValidIndex(Index) ? ShortName(Names[Index].Key.ToString()) : FString();
}

int32 UEnum::GetIndexByName(FName Name, EGetByNameFlags Flags) const
{
	return GetIndexByNameString(Name.ToString(), Flags);
}

int32 UEnum::GetIndexByNameString(const FString& Name, EGetByNameFlags Flags) const
{
	const bool bHeedCase = EnumHasAnyFlags(Flags, EGetByNameFlags::CaseSensitive);
	const ESearchCase::Type Case = bHeedCase ? ESearchCase::CaseSensitive : ESearchCase::IgnoreCase;
	const bool bFull = Name.Contains(TEXT("::"));
	return Names.IndexOfByPredicate(
		[&](const TPair<FName, int64>& Entry)
		{
			const FString Full = Entry.Key.ToString();
			return bFull ? Full.Equals(Name, Case) : ShortName(Full).Equals(Name, Case);
		});
}

int32 UEnum::GetIndexByValue(int64 Value) const
{
	return Names.IndexOfByPredicate([Value](const TPair<FName, int64>& Entry) { return Entry.Value == Value; });
}

int64 UEnum::GetValueByIndex(int32 Index) const
{
	return Names[Index].Value;
}

int64 UEnum::GetValueByName(FName Name, EGetByNameFlags Flags) const
{
	return GetValueByNameString(Name.ToString(), Flags);
}

int64 UEnum::GetValueByNameString(const FString& Name, EGetByNameFlags Flags) const
{
	const int32 Index = GetIndexByNameString(Name, Flags);
	return Index == INDEX_NONE ? (int64)INDEX_NONE : Names[Index].Value;
}

FName UEnum::GetNameByValue(int64 Value) const
{
	return GetNameByIndex(GetIndexByValue(Value));
}

FString UEnum::GetNameStringByValue(int64 Value) const
{
	return GetNameStringByIndex(GetIndexByValue(Value));
}

int64 UEnum::GetMaxEnumValue() const
{
	int64 Max = Names.IsEmpty() ? 0 : Names[0].Value;
	for (const TPair<FName, int64>& Entry : Names)
	{
		Max = FMath::Max(Max, Entry.Value);
	}
	return Max;
}

FString UEnum::MaxName() const
{
	return GenerateFullEnumName(*(GetName() + TEXT("_MAX")));
}

bool UEnum::ContainsExistingMax() const
{
	const FString Last = GetNameStringByIndex(Names.Num() - 1);
	return Last == TEXT("MAX") || Last.EndsWith(TEXT("_MAX"));
}

FText UEnum::GetDisplayNameTextByIndex(int32 Index) const
{
	if (!Names.IsValidIndex(Index))
	{
		return FText();
	}
	const FString* Given = FindMetaData(EntryKey(TEXT("DisplayName"), Index));
	return FText::FromString(Given ? *Given : NameToDisplayString(GetNameStringByIndex(Index), false));
}

FText UEnum::GetDisplayNameTextByValue(int64 Value) const
{
	return GetDisplayNameTextByIndex(GetIndexByValue(Value));
}

FText UEnum::GetToolTipTextByIndex(int32 Index) const
{
	return FText::FromString(GetMetaData(TEXT("ToolTip"), Index));
}

FName UEnum::EntryKey(const TCHAR* Key, int32 NameIndex) const
{
	return NameIndex == INDEX_NONE ? FName(Key) : FName(GetNameStringByIndex(NameIndex) + TEXT(".") + Key);
}

bool UEnum::HasMetaData(const TCHAR* Key, int32 NameIndex) const
{
	return HasMetaData(EntryKey(Key, NameIndex));
}

FString UEnum::GetMetaData(const TCHAR* Key, int32 NameIndex) const
{
	return GetMetaData(EntryKey(Key, NameIndex));
}

void UEnum::SetMetaData(const TCHAR* Key, const TCHAR* Value, int32 NameIndex)
{
	SetMetaData(EntryKey(Key, NameIndex), Value);
}

FString UEnum::GenerateFullEnumName(const TCHAR* InShortName) const
{
	return CppForm == ECppForm::Regular ? FString(InShortName) : CppType + TEXT("::") + InShortName;
}

bool UEnum::SetEnums(
	const TArray<TPair<FName, int64>>& InNames, ECppForm InCppForm, EEnumFlags InFlags, bool bAddMaxKeyIfMissing)
{
	TSet<FName> Seen;
	for (const TPair<FName, int64>& Entry : InNames)
	{
		Seen.Add(Entry.Key);
	}
	if (Seen.Num() != InNames.Num())
	{
		return false;
	}
	CppType = CppType.IsEmpty() ? GetName() : CppType;
	CppForm = InCppForm;
	EnumFlags = InFlags;
	Names = InNames;
	if (bAddMaxKeyIfMissing && !ContainsExistingMax())
	{
		Names.Emplace(FName(MaxName()), GetMaxEnumValue() + 1);
	}
	return true;
}
