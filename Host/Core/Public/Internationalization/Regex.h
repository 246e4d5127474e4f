#pragma once

#include "Containers/UnrealString.h"
#include "Templates/SharedPointer.h"

enum class ERegexPatternFlags : uint32
{
	None = 0,
	CaseInsensitive = 1
};

/** A regular expression in Perl's syntax. A pattern that can't be read is logged and matches nothing. Any thread. */
class FRegexPattern
{
public:
	explicit FRegexPattern(const FString& Source, ERegexPatternFlags Flags = ERegexPatternFlags::None);

private:
	friend class FRegexMatcher;
	struct FCompiled;
	TSharedPtr<const FCompiled> Compiled;
};

/**
 * The places in a text where a pattern matches, one after the other. A match that takes too many steps or too much
 * depth counts as none, so that every search ends. Indices are code units. One thread at a time.
 */
class FRegexMatcher
{
public:
	FRegexMatcher(const FRegexPattern& Pattern, const FString& Input);
	~FRegexMatcher();
	FRegexMatcher(const FRegexMatcher&) = delete;
	FRegexMatcher& operator=(const FRegexMatcher&) = delete;

	/** Goes on to the next match. @return false when there is none. */
	bool FindNext();

	/** The present match: its first index, and the index behind it. INDEX_NONE before the first match. */
	int32 GetMatchBeginning() const { return GetCaptureGroupBeginning(0); }
	int32 GetMatchEnding() const { return GetCaptureGroupEnding(0); }
	/** Groups count from 1, 0 is the whole match. A group that took no part is INDEX_NONE and empty. */
	int32 GetCaptureGroupBeginning(int32 Index) const;
	int32 GetCaptureGroupEnding(int32 Index) const;
	FString GetCaptureGroup(int32 Index) const;

	/** Limits the search to a part of the text. */
	void SetLimits(int32 BeginIndex, int32 EndIndex);

private:
	struct FMatch;

	FRegexPattern Pattern;
	FString Input;
	TSharedPtr<FMatch> Match;
	int32 NextStart = 0;
	int32 End;
	bool bMatched = false;
};
