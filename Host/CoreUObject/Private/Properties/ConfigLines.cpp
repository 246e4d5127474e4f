#include "ConfigLines.h"

#include "ConfigText.h"
#include "Misc/OutputDevice.h"
#include "ScratchValue.h"
#include "UObject/UnrealType.h"

namespace
{
/** Takes the reports of an attempt that may fail. */
class FSilence : public FOutputDevice
{
public:
	void Serialize(const TCHAR*, ELogVerbosity::Type, const FName&) override {}
};

/** An old line with the element that it reads to; without one if it can't be read. */
struct FOldLine
{
	const FString* Text = nullptr;
	TUniquePtr<FScratchValue> Element;
};

/** Whether a single line holds the whole array as one list `(a,b,c)`. */
bool ReadList(const FArrayProperty* Property, const TArray<FString>& Lines, void* Data, UObject* Owner)
{
	if (Lines.Num() != 1 || !Lines[0].StartsWith(TEXT("(")))
	{
		return false;
	}
	const FScratchValue Element(Property->Inner);
	if (ConfigText::Read(Property->Inner, Lines[0], Element.Get(), Owner, [](const FString&) {}))
	{
		return false;
	}
	FSilence Silence;
	const FScratchValue List(Property);
	const bool bRead = Property->ImportText_Direct(*Lines[0], List.Get(), Owner, PPF_None, &Silence) != nullptr;
	if (bRead)
	{
		Property->CopySingleValue(Data, List.Get());
	}
	return bRead;
}

TArray<FOldLine> ReadOldLines(const FArrayProperty* Property, UObject* Owner, const TArray<FString>& Lines)
{
	TArray<FOldLine> Result;
	for (const FString& Line : Lines)
	{
		FOldLine& Old = Result.AddDefaulted_GetRef();
		Old.Text = &Line;
		Old.Element = MakeUnique<FScratchValue>(Property->Inner);
		if (!ConfigText::Read(Property->Inner, Line, Old.Element->Get(), Owner, [](const FString&) {}))
		{
			Old.Element.Reset();
		}
	}
	return Result;
}

/** Whether two structs have the same first member, which is what names them. */
bool SameName(const FProperty* Inner, const void* A, const void* B)
{
	const FStructProperty* Struct = CastField<FStructProperty>(Inner);
	const FProperty* First = Struct ? Struct->Struct->PropertyLink : nullptr;
	return First && First->Identical_InContainer(A, B);
}

/** The old line that an element came from; null without one. Each line is given out once. */
const FString* TakeOrigin(const FProperty* Inner, const void* Element, TArray<FOldLine>& OldLines)
{
	FOldLine* Found = OldLines.FindByPredicate(
		[&](const FOldLine& Old) { return Old.Text && Old.Element && Inner->Identical(Old.Element->Get(), Element); });
	if (!Found)
	{
		Found = OldLines.FindByPredicate([&](const FOldLine& Old)
			{ return Old.Text && Old.Element && SameName(Inner, Old.Element->Get(), Element); });
	}
	const FString* Text = Found ? Found->Text : nullptr;
	if (Found)
	{
		Found->Text = nullptr;
	}
	return Text;
}

/** Puts the lines that can't be read back behind as many elements as they stood behind. */
void RestoreUnread(const TArray<FOldLine>& OldLines, TArray<FString>& Lines)
{
	int32 Before = 0;
	for (const FOldLine& Old : OldLines)
	{
		if (!Old.Element)
		{
			Lines.Insert(*Old.Text, FMath::Min(Before, Lines.Num()));
		}
		++Before;
	}
}
} // namespace

void ConfigLines::Read(
	const FArrayProperty* Property, const TArray<FString>& Lines, void* Data, UObject* Owner, FReport Report)
{
	if (ReadList(Property, Lines, Data, Owner))
	{
		return;
	}
	FScriptArrayHelper Helper(Property, Data);
	const int32 OldNum = Helper.Num();
	for (int32 Line = 0; Line < Lines.Num(); ++Line)
	{
		const int32 Index = Helper.AddValue();
		const auto ReportLine = [&](const FString& Problem) { Report(Line, Problem); };
		if (!ConfigText::Read(Property->Inner, Lines[Line], Helper.GetRawPtr(Index), Owner, ReportLine))
		{
			Helper.Resize(Index);
		}
	}
	if (Helper.Num() > OldNum)
	{
		Helper.RemoveValues(0, OldNum);
	}
}

TArray<FString> ConfigLines::Write(
	const FArrayProperty* Property, const void* Data, UObject* Owner, const TArray<FString>& OldLines)
{
	const FScratchValue List(Property);
	const bool bWasList = ReadList(Property, OldLines, List.Get(), Owner);
	TArray<FOldLine> Old = bWasList ? TArray<FOldLine>() : ReadOldLines(Property, Owner, OldLines);
	const FScriptArrayHelper Helper(Property, (void*)Data);
	TArray<FString> Lines;
	for (int32 Index = 0; Index < Helper.Num(); ++Index)
	{
		const void* Element = Helper.GetRawPtr(Index);
		const FString* Origin = TakeOrigin(Property->Inner, Element, Old);
		Lines.Add(ConfigText::Write(Property->Inner, Element, Owner, Origin ? *Origin : FString()));
	}
	RestoreUnread(Old, Lines);
	return Lines;
}
