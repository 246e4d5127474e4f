#include "UObject/MetaData.h"

#include "UObject/DisplayName.h"
#include "UObject/UObjectGlobals.h"

const FString& FMetaDataOwner::GetMetaData(FName Key) const
{
	static const FString Empty;
	const FString* Found = Entries.Find(Key);
	return Found ? *Found : Empty;
}

bool FMetaDataOwner::GetBoolMetaData(FName Key) const
{
	const FString* Found = Entries.Find(Key);
	return Found && (Found->IsEmpty() || Found->ToBool());
}

int32 FMetaDataOwner::GetIntMetaData(FName Key) const
{
	return FCString::Atoi(*GetMetaData(Key));
}

float FMetaDataOwner::GetFloatMetaData(FName Key) const
{
	return FCString::Atof(*GetMetaData(Key));
}

UClass* FMetaDataOwner::GetClassMetaData(FName Key) const
{
	const FString& Value = GetMetaData(Key);
	return Value.IsEmpty() ? nullptr : FindFirstObject<UClass>(*Value);
}

FText FMetaDataOwner::ToolTipOrName(const FString& Name, bool bShortToolTip) const
{
	static const FName ToolTipKey(TEXT("ToolTip"));
	static const FName ShortToolTipKey(TEXT("ShortToolTip"));
	const FString* Text = bShortToolTip ? FindMetaData(ShortToolTipKey) : nullptr;
	Text = Text ? Text : FindMetaData(ToolTipKey);
	if (!Text)
	{
		return FText::FromString(NameToDisplayString(Name, false));
	}
	const int32 Tags = Text->Find(TEXT("\n@"), ESearchCase::CaseSensitive);
	return FText::FromString(Tags == INDEX_NONE ? *Text : Text->Left(Tags).TrimEnd());
}

FText FMetaDataOwner::DisplayNameOr(const FString& Name, bool bIsBool) const
{
	static const FName DisplayNameKey(TEXT("DisplayName"));
	const FString* Text = FindMetaData(DisplayNameKey);
	return FText::FromString(Text ? *Text : NameToDisplayString(Name, bIsBool));
}

FString NameToDisplayString(const FString& Name, bool bIsBool)
{
	FString Result;
	const int32 Start = bIsBool && Name.Len() > 1 && Name[0] == TEXT('b') && FChar::IsUpper(Name[1]) ? 1 : 0;
	for (int32 Index = Start; Index < Name.Len(); ++Index)
	{
		const TCHAR Char = Name[Index];
		const bool bBehindLower = Index > Start && !FChar::IsUpper(Name[Index - 1]) && Name[Index - 1] != TEXT('_');
		const bool bBeforeLower = Index > Start && Index + 1 < Name.Len() && FChar::IsLower(Name[Index + 1]) &&
			FChar::IsUpper(Name[Index - 1]);
		const bool bStartsNumber = FChar::IsDigit(Char) && Index > Start && !FChar::IsDigit(Name[Index - 1]);
		const bool bStartsWord = (FChar::IsUpper(Char) && (bBehindLower || bBeforeLower)) || bStartsNumber;
		if (Char == TEXT('_'))
		{
			Result += Result.IsEmpty() ? TEXT("") : TEXT(" ");
			continue;
		}
		Result += bStartsWord && !Result.EndsWith(TEXT(" ")) ? TEXT(" ") : TEXT("");
		Result += Result.IsEmpty() ? FChar::ToUpper(Char) : Char;
	}
	return Result;
}
