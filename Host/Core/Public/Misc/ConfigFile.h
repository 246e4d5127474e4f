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
};

/** The lines from one `[Name]` to the next. The lines before the first have an empty name. */
struct FConfigSection
{
	FString Name;
	TArray<FConfigLine> Lines;

	/** The last plain value of the key; null when there is none. */
	const FString* Find(FStringView Key) const;
	/** All values of the key, with the operations carried out in order. */
	TArray<FString> FindArray(FStringView Key) const;
	bool Contains(FStringView Key) const;
};

/** The text of a configuration file, taken apart and put together without loss. Names and keys ignore case. */
class FConfigFile
{
public:
	/** @param Filename for warnings, which carry file and line. */
	void Parse(FStringView Text, const FString& Filename);
	FString ToText() const;

	const FConfigSection* FindSection(FStringView Name) const;
	FConfigSection& FindOrAddSection(FStringView Name);
	void GetSectionNames(TArray<FString>& OutNames) const;

	/** Puts the value where the key's last line stood, or at the section's end. */
	void SetString(FStringView Section, FStringView Key, FStringView Value);
	/** Writes one `+Key=` line a value where the key's first line stood, or at the section's end. */
	void SetArray(FStringView Section, FStringView Key, const TArray<FString>& Values);
	/** @return whether the key was there. */
	bool RemoveKey(FStringView Section, FStringView Key);
	/** Takes the section away with all its lines. @return whether it was there. */
	bool RemoveSection(FStringView Section);

private:
	void ParseLine(FStringView Line, const FString& Filename, int32 LineNumber);

	TArray<FConfigSection> Sections;
};
