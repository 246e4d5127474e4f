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

FConfigLine MakeLine(FStringView Key, FStringView Value, TCHAR Operation)
{
	FConfigLine Line;
	Line.Key = FString(Key);
	Line.Value = FString(Value);
	Line.Operation = Operation;
	return Line;
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
} // namespace

const FString* FConfigSection::Find(FStringView Key) const
{
	const int32 Index =
		Lines.FindLastByPredicate([Key](const FConfigLine& Line) { return Line.Operation == 0 && Line.Key == Key; });
	return Index == INDEX_NONE ? nullptr : &Lines[Index].Value;
}

TArray<FString> FConfigSection::FindArray(FStringView Key) const
{
	TArray<FString> Values;
	const auto Remove = [&Values](const FString& Value)
	{ Values.RemoveAll([&Value](const FString& Each) { return Each.Equals(Value); }); };
	for (const FConfigLine& Line : Lines)
	{
		if (!(Line.Key == Key))
		{
			continue;
		}
		switch (Line.Operation)
		{
		case u'!':
			Values.Reset();
			break;
		case u'-':
			Remove(Line.Value);
			break;
		case u'+':
			if (!Values.ContainsByPredicate([&Line](const FString& Each) { return Each.Equals(Line.Value); }))
			{
				Values.Add(Line.Value);
			}
			break;
		default:
			Values.Add(Line.Value);
		}
	}
	return Values;
}

bool FConfigSection::Contains(FStringView Key) const
{
	return Lines.ContainsByPredicate([Key](const FConfigLine& Line) { return Line.Key == Key; });
}

void FConfigFile::Parse(FStringView Text, const FString& Filename)
{
	Sections.Reset();
	Sections.AddDefaulted();
	TArray<FString> Lines;
	FString(Text).ParseIntoArrayLines(Lines, false);
	if (!Lines.IsEmpty() && Lines.Last().IsEmpty())
	{
		Lines.Pop();
	}
	for (int32 Index = 0; Index < Lines.Num(); ++Index)
	{
		ParseLine(Lines[Index], Filename, Index + 1);
	}
}

void FConfigFile::ParseLine(FStringView Line, const FString& Filename, int32 LineNumber)
{
	FStringView Rest = Line.TrimStartAndEnd();
	FConfigLine Parsed;
	Parsed.Raw = FString(Line);
	if (Rest.StartsWith(u'[') && Rest.EndsWith(u']'))
	{
		FConfigSection& Section = Sections.AddDefaulted_GetRef();
		Section.Name = FString(Rest.Mid(1, Rest.Len() - 2));
		return;
	}
	int32 Equals = INDEX_NONE;
	const bool bComment = Rest.IsEmpty() || Rest.StartsWith(u';') || Rest.StartsWith(u'#');
	if (!bComment && (!Rest.FindChar(u'=', Equals) || Equals == 0))
	{
		UE_LOG(LogConfig, Warning,
			TEXT("%s(%d): not a section, a comment or a key with its value; the line is kept as it is"), *Filename,
			LineNumber);
	}
	else if (!bComment)
	{
		Parsed.Operation = IsOperation(Rest[0]) ? Rest[0] : TCHAR(0);
		Parsed.Key = FString(Rest.Left(Equals).RightChop(Parsed.Operation ? 1 : 0).TrimStartAndEnd());
		if (!ConfigValue::Unquote(Rest.RightChop(Equals + 1).TrimStart(), Parsed.Value))
		{
			UE_LOG(LogConfig, Warning,
				TEXT("%s(%d): the quote of '%s' isn't closed; the rest of the line is its value"), *Filename,
				LineNumber, *Parsed.Key);
		}
	}
	Sections.Last().Lines.Add(MoveTemp(Parsed));
}

FString FConfigFile::ToText() const
{
	FString Text;
	for (const FConfigSection& Section : Sections)
	{
		if (!Section.Name.IsEmpty())
		{
			Text.Appendf(TEXT("[%s]\n"), *Section.Name);
		}
		for (const FConfigLine& Line : Section.Lines)
		{
			Text += LineText(Line);
			Text += u'\n';
		}
	}
	return Text;
}

const FConfigSection* FConfigFile::FindSection(FStringView Name) const
{
	return Sections.FindByPredicate([Name](const FConfigSection& Each) { return Each.Name == Name; });
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
		Sections.Last().Lines.AddDefaulted();
	}
	FConfigSection& Section = Sections.AddDefaulted_GetRef();
	Section.Name = FString(Name);
	return Section;
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

void FConfigFile::SetString(FStringView SectionName, FStringView Key, FStringView Value)
{
	FConfigSection& Section = FindOrAddSection(SectionName);
	const int32 Place = Section.Lines.FindLastByPredicate(
		[Key](const FConfigLine& Line) { return Line.Operation == 0 && Line.Key == Key; });
	if (Place == INDEX_NONE)
	{
		Section.Lines.Insert(MakeLine(Key, Value, 0), EndOfContent(Section));
		return;
	}
	Section.Lines[Place] = MakeLine(Key, Value, 0);
}

void FConfigFile::SetArray(FStringView SectionName, FStringView Key, const TArray<FString>& Values)
{
	FConfigSection& Section = FindOrAddSection(SectionName);
	const auto bMatches = [Key](const FConfigLine& Line) { return Line.Key == Key; };
	const int32 First = Section.Lines.IndexOfByPredicate(bMatches);
	Section.Lines.RemoveAll(bMatches);
	const int32 Place = First == INDEX_NONE ? EndOfContent(Section) : First;
	TArray<FConfigLine> NewLines;
	for (const FString& Value : Values)
	{
		// Equal values would be added once only by a plus.
		const bool bRepeated =
			NewLines.ContainsByPredicate([&Value](const FConfigLine& Line) { return Line.Value.Equals(Value); });
		NewLines.Add(MakeLine(Key, Value, bRepeated ? u'.' : u'+'));
	}
	Section.Lines.Insert(NewLines, Place);
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
