#include "UObject/TextProperties.h"

#include "PropertyText.h"

using namespace PropertyText;

namespace
{
bool IsDelimited(int32 PortFlags)
{
	return (PortFlags & PPF_Delimited) != 0;
}

void AppendText(FString& ValueStr, FStringView Text, int32 PortFlags)
{
	if (IsDelimited(PortFlags))
	{
		AppendQuoted(ValueStr, Text);
		return;
	}
	ValueStr += Text;
}

/** In a list a quoted or bare text, else all of the buffer. */
const TCHAR* ReadText(const TCHAR* Buffer, FString& Out, int32 PortFlags)
{
	if (IsDelimited(PortFlags))
	{
		return *Buffer == TEXT('"') ? ReadQuoted(Buffer, Out) : ReadBare(Buffer, Out);
	}
	Out = Buffer;
	return Buffer + Out.Len();
}

struct FBoolWord
{
	const TCHAR* Word;
	bool bValue;
};

constexpr FBoolWord BoolWords[] = {{TEXT("True"), true}, {TEXT("False"), false}, {TEXT("1"), true}, {TEXT("0"), false},
	{TEXT("Yes"), true}, {TEXT("No"), false}, {TEXT("On"), true}, {TEXT("Off"), false}};

/** Reads `Macro(part, part)` with as many quoted parts. */
const TCHAR* ReadMacro(const TCHAR* Buffer, const TCHAR* Macro, TArrayView<FString> Parts)
{
	const int32 Length = FCString::Strlen(Macro);
	if (FCString::Strncmp(Buffer, Macro, Length) != 0)
	{
		return nullptr;
	}
	const TCHAR* Text = SkipBlanks(Buffer + Length);
	for (int32 Index = 0; Index < Parts.Num(); ++Index)
	{
		if (*Text != (Index == 0 ? TEXT('(') : TEXT(',')))
		{
			return nullptr;
		}
		Text = ReadQuoted(SkipBlanks(Text + 1), Parts[Index]);
		if (!Text)
		{
			return nullptr;
		}
		Text = SkipBlanks(Text);
	}
	return *Text == TEXT(')') ? Text + 1 : nullptr;
}

/** The written forms of texts for people: `NSLOCTEXT(...)`, `INVTEXT(...)` and, in a list, quoted. */
const TCHAR* ReadLocalizable(const TCHAR* Buffer, FText& Out, int32 PortFlags)
{
	FString Parts[3];
	if (const TCHAR* Behind = ReadMacro(Buffer, TEXT("NSLOCTEXT"), TArrayView<FString>(Parts, 3)))
	{
		Out = FText::AsLocalizable(*Parts[0], *Parts[1], *Parts[2]);
		return Behind;
	}
	if (const TCHAR* Behind = ReadMacro(Buffer, TEXT("LOCTEXT"), TArrayView<FString>(Parts, 2)))
	{
		Out = FText::AsLocalizable(TEXT(""), *Parts[0], *Parts[1]);
		return Behind;
	}
	const TCHAR* Behind = ReadMacro(Buffer, TEXT("INVTEXT"), TArrayView<FString>(Parts, 1));
	Behind = Behind || !IsDelimited(PortFlags) ? Behind : ReadQuoted(Buffer, Parts[0]);
	if (Behind)
	{
		Out = FText::AsCultureInvariant(Parts[0]);
	}
	return Behind;
}
} // namespace

FBoolProperty::FBoolProperty(FFieldVariant InOwner, FName InName, EObjectFlags InFlags)
	: FProperty(InOwner, InName, InFlags)
{
	ElementSize = 1;
	SetPropertyFlags(CPF_IsPlainOldData | CPF_NoDestructor | CPF_ZeroConstructor);
}

void FBoolProperty::SetPropertyValue(void* Data, bool bValue) const
{
	uint8& Byte = *(uint8*)Data;
	Byte = IsNativeBool() ? (uint8)bValue : (uint8)((Byte & ~FieldMask) | (bValue ? FieldMask : 0));
}

FString FBoolProperty::GetTypeText(FString*) const
{
	return TEXT("bool");
}

bool FBoolProperty::IdenticalValues(const void* A, const void* B, uint32) const
{
	return GetPropertyValue(A) == GetPropertyValue(B);
}

void FBoolProperty::ExportValue(FString& ValueStr, const void* Data, const void*, UObject*, int32, UObject*) const
{
	ValueStr += GetPropertyValue(Data) ? TEXT("True") : TEXT("False");
}

const TCHAR* FBoolProperty::ImportValue(
	const TCHAR* Buffer, void* Data, UObject*, int32, FOutputDevice* ErrorText) const
{
	FString Word;
	const TCHAR* Behind = ReadQuotedOrBare(Buffer, Word);
	for (const FBoolWord& Each : BoolWords)
	{
		if (Behind && Word == Each.Word)
		{
			SetPropertyValue(Data, Each.bValue);
			return Behind;
		}
	}
	Report(ErrorText, FString::Printf(TEXT("%s: '%s' is neither true nor false"), *GetName(), *Word));
	return nullptr;
}

uint32 FStrProperty::GetValueTypeHash(const void* Data) const
{
	return GetTypeHash(*(const FString*)Data);
}

FString FStrProperty::GetTypeText(FString*) const
{
	return TEXT("FString");
}

bool FStrProperty::IdenticalValues(const void* A, const void* B, uint32) const
{
	return ((const FString*)A)->Equals(*(const FString*)B);
}

void FStrProperty::ExportValue(
	FString& ValueStr, const void* Data, const void*, UObject*, int32 PortFlags, UObject*) const
{
	AppendText(ValueStr, *(const FString*)Data, PortFlags);
}

const TCHAR* FStrProperty::ImportValue(
	const TCHAR* Buffer, void* Data, UObject*, int32 PortFlags, FOutputDevice* ErrorText) const
{
	FString Value;
	const TCHAR* Behind = ReadText(Buffer, Value, PortFlags);
	if (!Behind)
	{
		Report(ErrorText, FString::Printf(TEXT("%s: a quoted text has no end"), *GetName()));
		return nullptr;
	}
	*(FString*)Data = MoveTemp(Value);
	return Behind;
}

uint32 FNameProperty::GetValueTypeHash(const void* Data) const
{
	return GetTypeHash(*(const FName*)Data);
}

FString FNameProperty::GetTypeText(FString*) const
{
	return TEXT("FName");
}

bool FNameProperty::IdenticalValues(const void* A, const void* B, uint32) const
{
	return *(const FName*)A == *(const FName*)B;
}

void FNameProperty::ExportValue(
	FString& ValueStr, const void* Data, const void*, UObject*, int32 PortFlags, UObject*) const
{
	AppendText(ValueStr, ((const FName*)Data)->ToString(), PortFlags);
}

const TCHAR* FNameProperty::ImportValue(
	const TCHAR* Buffer, void* Data, UObject*, int32 PortFlags, FOutputDevice* ErrorText) const
{
	FString Value;
	const TCHAR* Behind = ReadText(Buffer, Value, PortFlags);
	if (!Behind || Value.Len() > NAME_SIZE)
	{
		Report(ErrorText, FString::Printf(TEXT("%s: the name has no end or is too long"), *GetName()));
		return nullptr;
	}
	*(FName*)Data = FName(Value);
	return Behind;
}

FString FTextProperty::GetTypeText(FString*) const
{
	return TEXT("FText");
}

bool FTextProperty::IdenticalValues(const void* A, const void* B, uint32) const
{
	const FText& Left = *(const FText*)A;
	const FText& Right = *(const FText*)B;
	return Left.IdenticalTo(Right) ||
		(Left.EqualTo(Right) && Left.GetNamespace().Equals(Right.GetNamespace()) &&
			Left.GetKey().Equals(Right.GetKey()));
}

void FTextProperty::ExportValue(
	FString& ValueStr, const void* Data, const void*, UObject*, int32 PortFlags, UObject*) const
{
	const FText& Text = *(const FText*)Data;
	if (Text.GetKey().IsEmpty())
	{
		AppendText(ValueStr, Text.ToString(), PortFlags);
		return;
	}
	ValueStr += TEXT("NSLOCTEXT(");
	AppendQuoted(ValueStr, Text.GetNamespace());
	ValueStr += TEXT(", ");
	AppendQuoted(ValueStr, Text.GetKey());
	ValueStr += TEXT(", ");
	AppendQuoted(ValueStr, Text.ToString());
	ValueStr += TEXT(")");
}

const TCHAR* FTextProperty::ImportValue(
	const TCHAR* Buffer, void* Data, UObject*, int32 PortFlags, FOutputDevice* ErrorText) const
{
	const TCHAR* Behind = ReadLocalizable(Buffer, *(FText*)Data, PortFlags);
	if (Behind && (IsDelimited(PortFlags) || *SkipBlanks(Behind) == 0))
	{
		return Behind;
	}
	FString Value;
	Behind = ReadText(Buffer, Value, PortFlags);
	if (!Behind)
	{
		Report(ErrorText, FString::Printf(TEXT("%s: a quoted text has no end"), *GetName()));
		return nullptr;
	}
	*(FText*)Data = FText::AsCultureInvariant(Value);
	return Behind;
}
