#include "PropertyText.h"
#include "UObject/Property.h"
#include "UObject/ScriptStruct.h"

using namespace PropertyText;

namespace
{
/** `Name`, `Name[3]` or `Name(3)`. @return behind it, or null. */
const TCHAR* ReadMemberName(const TCHAR* Text, FString& OutName, int32& OutIndex)
{
	const TCHAR* Start = Text;
	while (IsWordChar(*Text) || *Text >= 128)
	{
		++Text;
	}
	OutName = FString((int32)(Text - Start), Start);
	OutIndex = 0;
	if (Text == Start || (*Text != TEXT('[') && *Text != TEXT('(')))
	{
		return Text == Start ? nullptr : Text;
	}
	const TCHAR Closer = *Text == TEXT('[') ? TEXT(']') : TEXT(')');
	FWideInteger Index;
	Text = ReadInteger(SkipBlanks(Text + 1), Index);
	if (!Text || Index.bNegative || Index.Magnitude > MAX_int32 || *SkipBlanks(Text) != Closer)
	{
		return nullptr;
	}
	OutIndex = (int32)Index.Magnitude;
	return SkipBlanks(Text) + 1;
}

/** Where one member is read to. */
struct FMemberReader
{
	const UScriptStruct* Struct;
	uint8* Value;
	UObject* Owner;
	int32 PortFlags;
	FOutputDevice* Error;
	const FString& StructName;

	const TCHAR* Read(const TCHAR* Text) const
	{
		FString Name;
		int32 Index = 0;
		Text = ReadMemberName(Text, Name, Index);
		Text = Text ? SkipBlanks(Text) : nullptr;
		if (!Text || *Text != TEXT('='))
		{
			Report(Error, FString::Printf(TEXT("%s: expected 'Member=Value' at '%s'"), *StructName, *Name));
			return nullptr;
		}
		Text = SkipBlanks(Text + 1);
		const FProperty* Property = Struct->FindPropertyByName(FName(Name, FNAME_Find));
		if (!Property || Name.IsEmpty() || Index >= Property->ArrayDim)
		{
			Report(Error, FString::Printf(TEXT("%s: unknown member '%s' is skipped"), *StructName, *Name));
			return SkipValue(Text);
		}
		return Property->ImportText_Direct(
			Text, Property->ContainerPtrToValuePtr<void>(Value, Index), Owner, PortFlags | PPF_Delimited, Error);
	}
};
} // namespace

const TCHAR* UScriptStruct::ImportText(const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32 PortFlags,
	FOutputDevice* ErrorText, const FString& StructName, bool bAllowNativeOverride) const
{
	Buffer = SkipBlanks(Buffer);
	if (bAllowNativeOverride && CppStructOps && CppStructOps->ImportTextItem)
	{
		const TCHAR* Text = Buffer;
		if (CppStructOps->ImportTextItem(Value, Text, PortFlags, OwnerObject, ErrorText))
		{
			return Text;
		}
	}
	const FMemberReader Reader{this, (uint8*)Value, OwnerObject, PortFlags, ErrorText, StructName};
	const TCHAR* Behind = ReadList(Buffer, [&Reader](const TCHAR* Text) { return Reader.Read(Text); });
	if (!Behind)
	{
		Report(ErrorText,
			FString::Printf(
				TEXT("%s: '%s' isn't of the form (Member=Value,...)"), *StructName, *FString(Buffer).Left(80)));
	}
	return Behind;
}

void UScriptStruct::ExportText(FString& ValueStr, const void* Value, const void* Defaults, UObject* OwnerObject,
	int32 PortFlags, UObject* ExportRootScope, bool bAllowNativeOverride) const
{
	if (bAllowNativeOverride && CppStructOps && CppStructOps->ExportTextItem &&
		CppStructOps->ExportTextItem(Value, ValueStr, Defaults, OwnerObject, PortFlags, ExportRootScope))
	{
		return;
	}
	ValueStr += TEXT('(');
	bool bFirst = true;
	for (const FProperty* Each = PropertyLink; Each; Each = Each->PropertyLinkNext)
	{
		for (int32 Index = 0; Index < Each->ArrayDim; ++Index)
		{
			FString Member;
			if (Each->ExportText_InContainer(
					Index, Member, Value, Defaults, OwnerObject, PortFlags | PPF_Delimited, ExportRootScope))
			{
				ValueStr += bFirst ? TEXT("") : TEXT(",");
				ValueStr += Each->GetName();
				ValueStr += Each->ArrayDim > 1 ? FString::Printf(TEXT("[%d]="), Index) : FString(TEXT("="));
				ValueStr += Member;
				bFirst = false;
			}
		}
	}
	ValueStr += TEXT(')');
}
