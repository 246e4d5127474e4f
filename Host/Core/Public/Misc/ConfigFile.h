#pragma once

#include "Containers/Array.h"
#include "Containers/UnrealString.h"

/**
 * One line of a configuration file. Every line of the file is kept, so that a save loses nothing that isn't understood.
 */
struct FConfigLine
{
	/** The line as it stands in the file; empty when it is to be written anew from the fields below. */
	FString Raw;
	/** Empty for comments, blank lines and lines that can't be read. */
	FString Key;
	FString Value;
	/** `+` adds once, `.` adds, `-` takes away, `!` clears, and 0 is a plain line. */
	TCHAR Operation = 0;
	/** Whether the line ends as on Windows. */
	bool bCarriageReturn = false;
};

/** The lines from one `[Name]` to the next. The lines before the first have an empty name. */
struct FConfigSection
{
	FString Name;
	/** The line with the name; the lines before the first section have none. */
	FConfigLine Header;
	TArray<FConfigLine> Lines;
};

/**
 * The text of a configuration file, taken apart and put together without loss. Names and keys ignore case. A section
 * may stand in several places, which count as one in their order.
 */
class FConfigFile
{
public:
	/** @param Filename for warnings, which carry file and line; empty for none. */
	void Parse(FStringView Text, const FString& Filename);
	FString ToText() const;

	bool HasSection(FStringView Name) const;
	bool HasKey(FStringView Section, FStringView Key) const;
	void GetSectionNames(TArray<FString>& OutNames) const;
	/** The last plain value of the key; null when there is none. Valid until the next change. */
	const FString* Find(FStringView Section, FStringView Key) const;
	/** The lines that give the key's values, with the operations carried out in order. Valid until the next change. */
	TArray<const FConfigLine*> FindLines(FStringView Section, FStringView Key) const;
	/** The values of `FindLines`. */
	TArray<FString> FindArray(FStringView Section, FStringView Key) const;
	/** The section's lines that have a key, in order. Valid until the next change. */
	TArray<const FConfigLine*> GetKeyLines(FStringView Section) const;
	/** Where one of this file's lines stands, from 1. */
	int32 GetLineNumber(const FConfigLine& Line) const;

	/** Puts the value where the key's last line stood, or at the section's end. A line that says so already stays. */
	void SetString(FStringView Section, FStringView Key, FStringView Value);
	/** Writes one `+Key=` line a value where the key's first line stood, or at the section's end; as `SetString`. */
	void SetArray(FStringView Section, FStringView Key, const TArray<FString>& Values);
	/** Turns the key's lines into comments, which keep their text. */
	void CommentOut(FStringView Section, FStringView Key);
	/** @return whether the key was there. */
	bool RemoveKey(FStringView Section, FStringView Key);
	/** Takes the section away with all its lines. @return whether it was there. */
	bool RemoveSection(FStringView Section);

private:
	void ParseLine(const FConfigLine& Line, const FString& Filename, int32 LineNumber);
	void ParseValue(FConfigLine& Line, FStringView Text, int32 Equals, const FString& Filename, int32 LineNumber) const;
	FConfigSection& FindOrAddSection(FStringView Name);
	/** Removes the key's lines. @return the section where its first line stood, or would, and the place in there. */
	FConfigSection& TakeKeyAway(FStringView Section, FStringView Key, int32& OutPlace);
	FConfigLine MakeLine(FStringView Key, FStringView Value, TCHAR Operation) const;

	TArray<FConfigSection> Sections;
	/** How new lines end: as the file's first does. */
	bool bCarriageReturns = false;
};
