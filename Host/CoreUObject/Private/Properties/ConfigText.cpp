#include "ConfigText.h"

#include "Misc/OutputDevice.h"
#include "PropertyText.h"
#include "ScratchValue.h"
#include "UObject/UnrealType.h"

using namespace PropertyText;

namespace
{
/** `Name=Text` of a struct. */
struct FPart
{
	FString Name;
	FString Text;
};

/** Keeps the last message. */
class FLastMessage : public FOutputDevice
{
public:
	void Serialize(const TCHAR* Text, ELogVerbosity::Type, const FName&) override { Message = Text; }

	FString Message;
};

/** The property's struct type, if its values are written member by member. */
const UScriptStruct* MemberwiseStruct(const FProperty* Property)
{
	const FStructProperty* Struct = CastField<FStructProperty>(Property);
	const FCppStructOps* Ops = Struct ? Struct->Struct->GetCppStructOps() : nullptr;
	return Struct && !(Ops && (Ops->ImportTextItem || Ops->ExportTextItem)) ? Struct->Struct : nullptr;
}

/** @return false if the text isn't a whole `(Name=Text,...)`. */
bool Split(const FString& Text, TArray<FPart>& OutParts)
{
	const TCHAR* Behind = ReadList(SkipBlanks(*Text),
		[&OutParts](const TCHAR* Item) -> const TCHAR*
		{
			const TCHAR* Equals = Item;
			while (*Equals && *Equals != TEXT('=') && *Equals != TEXT(',') && *Equals != TEXT(')'))
			{
				++Equals;
			}
			const TCHAR* Value = *Equals == TEXT('=') ? SkipBlanks(Equals + 1) : nullptr;
			const TCHAR* End = Value ? SkipValue(Value) : nullptr;
			if (End)
			{
				OutParts.Add({FString((int32)(Equals - Item), Item).TrimStartAndEnd(),
					FString((int32)(End - Value), Value).TrimStartAndEnd()});
			}
			return End;
		});
	return Behind && *SkipBlanks(Behind) == 0;
}

/** The property that a part names, with the place in a C array. */
const FProperty* FindMember(const UScriptStruct* Struct, const FString& PartName, int32& OutIndex)
{
	FString Name = PartName;
	FString Index;
	OutIndex = PartName.Split(TEXT("["), &Name, &Index) ? FCString::Atoi(*Index) : 0;
	const FProperty* Property = Struct->FindPropertyByName(FName(Name, FNAME_Find));
	return Property && !Name.IsEmpty() && OutIndex >= 0 && OutIndex < Property->ArrayDim ? Property : nullptr;
}

bool ReadValue(const FProperty* Property, const FString& Text, void* Data, UObject* Owner, int32 PortFlags,
	ConfigText::FReport Report);

void ReadPart(const UScriptStruct* Struct, const FPart& Part, void* Value, UObject* Owner, ConfigText::FReport Report)
{
	int32 Index = 0;
	const FProperty* Member = FindMember(Struct, Part.Name, Index);
	if (!Member)
	{
		Report(FString::Printf(TEXT("'%s' is no member of %s"), *Part.Name, *Struct->GetName()));
		return;
	}
	void* Data = Member->ContainerPtrToValuePtr<void>(Value, Index);
	const FBoolProperty* Switch = CastField<FBoolProperty>(Member);
	if (!ReadValue(Member, Part.Text, Data, Owner, PPF_Delimited, Report) && Switch)
	{
		Switch->SetPropertyValue(Data, false);
	}
}

bool ReadValue(const FProperty* Property, const FString& Text, void* Data, UObject* Owner, int32 PortFlags,
	ConfigText::FReport Report)
{
	if (const UScriptStruct* Struct = MemberwiseStruct(Property))
	{
		TArray<FPart> Parts;
		const bool bWhole = Split(Text, Parts);
		if (!bWhole)
		{
			Report(FString::Printf(TEXT("'%s' isn't a whole (Member=Value,...)"), *Text.Left(80)));
		}
		for (int32 Index = 0; bWhole && Index < Parts.Num(); ++Index)
		{
			ReadPart(Struct, Parts[Index], Data, Owner, Report);
		}
		return bWhole;
	}
	const FScratchValue Scratch(Property);
	FLastMessage Error;
	const TCHAR* Behind = Property->ImportText_Direct(*Text, Scratch.Get(), Owner, PortFlags, &Error);
	if (!Behind || *SkipBlanks(Behind))
	{
		Report(Error.Message.IsEmpty() || Behind
				? FString::Printf(TEXT("'%s' is no value of %s"), *Text.Left(80), *Property->GetName())
				: Error.Message);
		return false;
	}
	Property->CopySingleValue(Data, Scratch.Get());
	return true;
}

FString WriteValue(
	const FProperty* Property, const void* Data, UObject* Owner, const FString& OldText, int32 PortFlags);

/** A part that this program can't read stays while the member is what reading the part gives. */
FString WriteMember(const UScriptStruct* Struct, const FProperty* Member, int32 Index, const void* Value,
	const FScratchValue& Fresh, UObject* Owner, const FPart* Old)
{
	const void* Data = Member->ContainerPtrToValuePtr<void>(Value, Index);
	bool bUnderstood = true;
	if (Old)
	{
		ReadPart(Struct, *Old, Fresh.Get(), Owner, [&bUnderstood](const FString&) { bUnderstood = false; });
	}
	const void* AsRead = Member->ContainerPtrToValuePtr<void>((const void*)Fresh.Get(), Index);
	return !bUnderstood && Member->Identical(AsRead, Data)
		? Old->Text
		: WriteValue(Member, Data, Owner, Old ? Old->Text : FString(), PPF_Delimited);
}

FString WriteStruct(const FProperty* Property, const UScriptStruct* Struct, const void* Value, UObject* Owner,
	const TArray<FPart>& OldParts)
{
	const FScratchValue Fresh(Property);
	TArray<FString> Members;
	for (const FProperty* Each = Struct->PropertyLink; Each; Each = Each->PropertyLinkNext)
	{
		for (int32 Index = 0; Index < Each->ArrayDim; ++Index)
		{
			const FString Name =
				Each->ArrayDim > 1 ? FString::Printf(TEXT("%s[%d]"), *Each->GetName(), Index) : Each->GetName();
			const FPart* Old = OldParts.FindByPredicate([&](const FPart& Part) { return Part.Name == Name; });
			Members.Add(Name + TEXT("=") + WriteMember(Struct, Each, Index, Value, Fresh, Owner, Old));
		}
	}
	for (const FPart& Part : OldParts)
	{
		int32 Index = 0;
		if (!FindMember(Struct, Part.Name, Index))
		{
			Members.Add(Part.Name + TEXT("=") + Part.Text);
		}
	}
	return TEXT("(") + FString::Join(Members, TEXT(",")) + TEXT(")");
}

FString WriteValue(const FProperty* Property, const void* Data, UObject* Owner, const FString& OldText, int32 PortFlags)
{
	TArray<FPart> OldParts;
	const UScriptStruct* Struct = MemberwiseStruct(Property);
	if (Struct && !OldText.IsEmpty() && Split(OldText, OldParts))
	{
		return WriteStruct(Property, Struct, Data, Owner, OldParts);
	}
	FString Text;
	Property->ExportTextItem_Direct(Text, Data, nullptr, Owner, PortFlags);
	return Text;
}
} // namespace

bool ConfigText::Read(const FProperty* Property, const FString& Text, void* Data, UObject* Owner, FReport Report)
{
	return ReadValue(Property, Text, Data, Owner, PPF_None, Report);
}

FString ConfigText::Write(const FProperty* Property, const void* Data, UObject* Owner, const FString& OldText)
{
	return WriteValue(Property, Data, Owner, OldText, PPF_None);
}
