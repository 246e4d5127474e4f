#include "Misc/ConfigFile.h"

#include "ConfigValue.h"
#include "Logging/LogMacros.h"

DEFINE_LOG_CATEGORY_STATIC(LogConfig, Log, All);

namespace
{
bool IsOperation(TCHAR Char)
{
	return Char == u'+' || Char == u'-' || Char == u'.' || Char == u'!';
}

FString LineText(const FConfigLine& Line)
{
	if (!Line.Raw.IsEmpty() || Line.Key.IsEmpty())
	{
		return Line.Raw;
	}
	const FString Operation = Line.Operation ? FString::Chr(Line.Operation) : FString();
	return Operation + Line.Key + TEXT("=") + ConfigValue::Quote(Line.Value);
}

void AppendLine(FString& Text, const FConfigLine& Line)
{
	Text += LineText(Line);
	Text += Line.bCarriageReturn ? TEXT("\r\n") : TEXT("\n");
}

/** The place behind the section's last line that isn't blank, so that what is added stays above the gap. */
int32 EndOfContent(const FConfigSection& Section)
{
	int32 End = Section.Lines.Num();
	while (End > 0 && Section.Lines[End - 1].Key.IsEmpty() &&
		FStringView(Section.Lines[End - 1].Raw).TrimStart().IsEmpty())
	{
		--End;
	}
	return End;
}

bool HasValue(const TArray<const FConfigLine*>& Lines, const FString& Value)
{
	return Lines.ContainsByPredicate([&Value](const FConfigLine* Each) { return Each->Value.Equals(Value); });
}

/** Whether the lines give these values, letter for letter. */
bool Says(const TArray<const FConfigLine*>& Lines, const TArray<FString>& Values)
{
	bool bSame = Lines.Num() == Values.Num();
	for (int32 Index = 0; bSame && Index < Values.Num(); ++Index)
	{
		bSame = Lines[Index]->Value.Equals(Values[Index]);
	}
	return bSame;
}

/** Carries out one line on the values that stand so far. */
void ApplyLine(const FConfigLine& Line, TArray<const FConfigLine*>& Values)
{
	switch (Line.Operation)
	{
	case u'!':
		Values.Reset();
		return;
	case u'-':
		Values.RemoveAll([&Line](const FConfigLine* Each) { return Each->Value.Equals(Line.Value); });
		return;
	default:
		if (Line.Operation != u'+' || !HasValue(Values, Line.Value))
		{
			Values.Add(&Line);
		}
	}
}

/** Visits the lines of all places of a section that have the key. */
template <typename SectionsType, typename VisitorType>
void VisitLines(SectionsType& Sections, FStringView Name, FStringView Key, VisitorType&& Visit)
{
	for (auto& Section : Sections)
	{
		if (!(Section.Name == Name))
		{
			continue;
		}
		for (auto& Line : Section.Lines)
		{
			if (Line.Key == Key)
			{
				Visit(Line);
			}
		}
	}
}
} // namespace

void FConfigFile::Parse(FStringView Text, const FString& Filename)
{
	Sections.Reset();
	Sections.AddDefaulted();
	bCarriageReturns = false;
	int32 LineNumber = 0;
	while (!Text.IsEmpty())
	{
		int32 Length = 0;
		const bool bEnded = Text.FindChar(u'\n', Length);
		FStringView Raw = bEnded ? Text.Left(Length) : Text;
		Text = bEnded ? Text.RightChop(Length + 1) : FStringView();
		FConfigLine Line;
		Line.bCarriageReturn = bEnded ? Raw.EndsWith(u'\r') : bCarriageReturns;
		Line.Raw = FString(bEnded && Line.bCarriageReturn ? Raw.LeftChop(1) : Raw);
		bCarriageReturns = LineNumber == 0 ? Line.bCarriageReturn : bCarriageReturns;
		ParseLine(Line, Filename, ++LineNumber);
	}
}

void FConfigFile::ParseLine(const FConfigLine& Line, const FString& Filename, int32 LineNumber)
{
	const FStringView Text = FStringView(Line.Raw).TrimStartAndEnd();
	if (Text.StartsWith(u'[') && Text.EndsWith(u']'))
	{
		FConfigSection& Section = Sections.AddDefaulted_GetRef();
		Section.Name = FString(Text.Mid(1, Text.Len() - 2));
		Section.Header = Line;
		return;
	}
	FConfigLine& Parsed = Sections.Last().Lines.Add_GetRef(Line);
	if (Text.IsEmpty() || Text.StartsWith(u';') || Text.StartsWith(u'#'))
	{
		return;
	}
	int32 Equals = INDEX_NONE;
	if (Text.FindChar(u'=', Equals) && Equals > 0)
	{
		ParseValue(Parsed, Text, Equals, Filename, LineNumber);
	}
	else if (!Filename.IsEmpty())
	{
		UE_LOG(LogConfig, Warning,
			TEXT("%s(%d): not a section, a comment or a key with its value; the line is kept as it is"), *Filename,
			LineNumber);
	}
}

void FConfigFile::ParseValue(
	FConfigLine& Line, FStringView Text, int32 Equals, const FString& Filename, int32 LineNumber) const
{
	Line.Operation = IsOperation(Text[0]) ? Text[0] : TCHAR(0);
	Line.Key = FString(Text.Left(Equals).RightChop(Line.Operation ? 1 : 0).TrimStartAndEnd());
	if (!ConfigValue::Unquote(Text.RightChop(Equals + 1).TrimStart(), Line.Value) && !Filename.IsEmpty())
	{
		UE_LOG(LogConfig, Warning, TEXT("%s(%d): the quote of '%s' isn't closed; the rest of the line is its value"),
			*Filename, LineNumber, *Line.Key);
	}
}

FString FConfigFile::ToText() const
{
	FString Text;
	for (const FConfigSection& Section : Sections)
	{
		if (!Section.Name.IsEmpty() || !Section.Header.Raw.IsEmpty())
		{
			AppendLine(Text, Section.Header);
		}
		for (const FConfigLine& Line : Section.Lines)
		{
			AppendLine(Text, Line);
		}
	}
	return Text;
}

bool FConfigFile::HasSection(FStringView Name) const
{
	return Sections.ContainsByPredicate([Name](const FConfigSection& Each) { return Each.Name == Name; });
}

bool FConfigFile::HasKey(FStringView Section, FStringView Key) const
{
	bool bFound = false;
	VisitLines(Sections, Section, Key, [&](const FConfigLine&) { bFound = true; });
	return bFound;
}

void FConfigFile::GetSectionNames(TArray<FString>& OutNames) const
{
	OutNames.Reset();
	for (const FConfigSection& Section : Sections)
	{
		if (!Section.Name.IsEmpty())
		{
			OutNames.AddUnique(Section.Name);
		}
	}
}

const FString* FConfigFile::Find(FStringView Section, FStringView Key) const
{
	const FString* Found = nullptr;
	VisitLines(
		Sections, Section, Key, [&](const FConfigLine& Line) { Found = Line.Operation == 0 ? &Line.Value : Found; });
	return Found;
}

TArray<const FConfigLine*> FConfigFile::FindLines(FStringView Section, FStringView Key) const
{
	TArray<const FConfigLine*> Values;
	VisitLines(Sections, Section, Key, [&](const FConfigLine& Line) { ApplyLine(Line, Values); });
	return Values;
}

TArray<FString> FConfigFile::FindArray(FStringView Section, FStringView Key) const
{
	TArray<FString> Values;
	for (const FConfigLine* Line : FindLines(Section, Key))
	{
		Values.Add(Line->Value);
	}
	return Values;
}

TArray<const FConfigLine*> FConfigFile::GetKeyLines(FStringView Name) const
{
	TArray<const FConfigLine*> Lines;
	for (const FConfigSection& Section : Sections)
	{
		for (const FConfigLine& Line : Section.Lines)
		{
			if (Section.Name == Name && !Line.Key.IsEmpty())
			{
				Lines.Add(&Line);
			}
		}
	}
	return Lines;
}

int32 FConfigFile::GetLineNumber(const FConfigLine& Line) const
{
	int32 Number = 0;
	for (const FConfigSection& Section : Sections)
	{
		Number += Section.Header.Raw.IsEmpty() && Section.Name.IsEmpty() ? 0 : 1;
		const int32 Index =
			Section.Lines.IndexOfByPredicate([&Line](const FConfigLine& Each) { return &Each == &Line; });
		if (Index != INDEX_NONE)
		{
			return Number + Index + 1;
		}
		Number += Section.Lines.Num();
	}
	check(false);
	return 0;
}

FConfigSection& FConfigFile::FindOrAddSection(FStringView Name)
{
	FConfigSection* Found = Sections.FindByPredicate([Name](const FConfigSection& Each) { return Each.Name == Name; });
	if (Found)
	{
		return *Found;
	}
	// A blank line before the new section, unless it is the first thing in the file.
	if (!Sections.IsEmpty() && EndOfContent(Sections.Last()) == Sections.Last().Lines.Num() &&
		!(Sections.Num() == 1 && Sections[0].Lines.IsEmpty()))
	{
		Sections.Last().Lines.AddDefaulted_GetRef().bCarriageReturn = bCarriageReturns;
	}
	FConfigSection& Section = Sections.AddDefaulted_GetRef();
	Section.Name = FString(Name);
	Section.Header.Raw = TEXT("[") + Section.Name + TEXT("]");
	Section.Header.bCarriageReturn = bCarriageReturns;
	return Section;
}

FConfigLine FConfigFile::MakeLine(FStringView Key, FStringView Value, TCHAR Operation) const
{
	FConfigLine Line;
	Line.Key = FString(Key);
	Line.Value = FString(Value);
	Line.Operation = Operation;
	Line.bCarriageReturn = bCarriageReturns;
	return Line;
}

void FConfigFile::SetString(FStringView SectionName, FStringView Key, FStringView Value)
{
	FConfigLine* Last = nullptr;
	VisitLines(Sections, SectionName, Key, [&](FConfigLine& Line) { Last = Line.Operation == 0 ? &Line : Last; });
	const FConfigLine New = MakeLine(Key, Value, 0);
	if (!Last)
	{
		FConfigSection& Section = FindOrAddSection(SectionName);
		Section.Lines.Insert(New, EndOfContent(Section));
	}
	else if (!Last->Value.Equals(New.Value))
	{
		*Last = New;
	}
}

void FConfigFile::SetArray(FStringView SectionName, FStringView Key, const TArray<FString>& Values)
{
	if (Says(FindLines(SectionName, Key), Values) && HasKey(SectionName, Key))
	{
		return;
	}
	TArray<FConfigLine> OldLines;
	VisitLines(Sections, SectionName, Key, [&](const FConfigLine& Line) { OldLines.Add(Line); });
	TArray<FConfigLine> NewLines;
	for (const FString& Value : Values)
	{
		const auto bSame = [&Value](const FConfigLine& Line) { return Line.Value.Equals(Value); };
		// Equal values would be added once only by a plus.
		const TCHAR Operation = NewLines.ContainsByPredicate(bSame) ? u'.' : u'+';
		const FConfigLine* Old = OldLines.FindByPredicate(
			[&](const FConfigLine& Line) { return Line.Operation == Operation && bSame(Line); });
		NewLines.Add(Old ? *Old : MakeLine(Key, Value, Operation));
	}
	int32 Place = INDEX_NONE;
	FConfigSection& Section = TakeKeyAway(SectionName, Key, Place);
	Section.Lines.Insert(NewLines, Place);
}

FConfigSection& FConfigFile::TakeKeyAway(FStringView SectionName, FStringView Key, int32& OutPlace)
{
	const auto bMatches = [Key](const FConfigLine& Line) { return Line.Key == Key; };
	FConfigSection* First = nullptr;
	for (FConfigSection& Section : Sections)
	{
		const int32 Index = Section.Name == SectionName ? Section.Lines.IndexOfByPredicate(bMatches) : INDEX_NONE;
		if (Index != INDEX_NONE)
		{
			OutPlace = First ? OutPlace : Index;
			First = First ? First : &Section;
			Section.Lines.RemoveAll(bMatches);
		}
	}
	if (!First)
	{
		First = &FindOrAddSection(SectionName);
		OutPlace = EndOfContent(*First);
	}
	return *First;
}

void FConfigFile::CommentOut(FStringView SectionName, FStringView Key)
{
	VisitLines(Sections, SectionName, Key,
		[](FConfigLine& Line)
		{
			Line.Raw = TEXT("; ") + LineText(Line);
			Line.Key.Reset();
			Line.Value.Reset();
		});
}

bool FConfigFile::RemoveKey(FStringView SectionName, FStringView Key)
{
	bool bRemoved = false;
	for (FConfigSection& Section : Sections)
	{
		if (Section.Name == SectionName)
		{
			bRemoved |= Section.Lines.RemoveAll([Key](const FConfigLine& Line) { return Line.Key == Key; }) > 0;
		}
	}
	return bRemoved;
}

bool FConfigFile::RemoveSection(FStringView SectionName)
{
	return Sections.RemoveAll([SectionName](const FConfigSection& Each) { return Each.Name == SectionName; }) > 0;
}
