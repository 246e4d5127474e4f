#define PCRE2_CODE_UNIT_WIDTH 16

#include "Internationalization/Regex.h"

#include "Logging/LogMacros.h"
#include "Math/UnrealMathUtility.h"

#include <pcre2.h>

namespace
{
constexpr uint32 MaxMatchSteps = 10'000'000;
constexpr uint32 MaxDepth = 100'000;
constexpr uint32 MaxHeapKiB = 64 * 1024;

FString MessageOf(int32 ErrorCode)
{
	PCRE2_UCHAR Buffer[256] = {};
	pcre2_get_error_message(ErrorCode, Buffer, UE_ARRAY_COUNT(Buffer));
	return FString((const TCHAR*)Buffer);
}
} // namespace

struct FRegexPattern::FCompiled
{
	pcre2_code* Code;

	explicit FCompiled(pcre2_code* InCode)
		: Code(InCode)
	{
	}
	~FCompiled() { pcre2_code_free(Code); }
	FCompiled(const FCompiled&) = delete;
	FCompiled& operator=(const FCompiled&) = delete;
};

FRegexPattern::FRegexPattern(const FString& Source, ERegexPatternFlags Flags)
{
	// Text may hold lone surrogates, which match nothing but don't stop a search.
	uint32 Options = PCRE2_UTF | PCRE2_MATCH_INVALID_UTF;
	Options |= Flags == ERegexPatternFlags::CaseInsensitive ? PCRE2_CASELESS : 0;
	int ErrorCode = 0;
	PCRE2_SIZE Place = 0;
	pcre2_code* Code =
		pcre2_compile((PCRE2_SPTR)*Source, (PCRE2_SIZE)Source.Len(), Options, &ErrorCode, &Place, nullptr);
	if (!Code)
	{
		UE_LOG(LogCore, Warning, TEXT("Regular expression '%s' can't be read at %d: %s"), *Source, (int32)Place,
			*MessageOf(ErrorCode));
		return;
	}
	Compiled = MakeShared<FCompiled>(Code).ToSharedPtr();
}

struct FRegexMatcher::FMatch
{
	pcre2_match_data* Data;
	pcre2_match_context* Context;

	explicit FMatch(const pcre2_code* Code)
		: Data(pcre2_match_data_create_from_pattern(Code, nullptr))
		, Context(pcre2_match_context_create(nullptr))
	{
		pcre2_set_match_limit(Context, MaxMatchSteps);
		pcre2_set_depth_limit(Context, MaxDepth);
		pcre2_set_heap_limit(Context, MaxHeapKiB);
	}
	~FMatch()
	{
		pcre2_match_data_free(Data);
		pcre2_match_context_free(Context);
	}
	FMatch(const FMatch&) = delete;
	FMatch& operator=(const FMatch&) = delete;
};

FRegexMatcher::FRegexMatcher(const FRegexPattern& InPattern, const FString& InInput)
	: Pattern(InPattern)
	, Input(InInput)
	, End(InInput.Len())
{
	if (Pattern.Compiled)
	{
		Match = MakeShared<FMatch>(Pattern.Compiled->Code).ToSharedPtr();
	}
}

FRegexMatcher::~FRegexMatcher() = default;

bool FRegexMatcher::FindNext()
{
	if (!Match || NextStart > End)
	{
		return bMatched = false;
	}
	const int32 Result = pcre2_match(Pattern.Compiled->Code, (PCRE2_SPTR)*Input, (PCRE2_SIZE)End, (PCRE2_SIZE)NextStart,
		0, Match->Data, Match->Context);
	if (Result < PCRE2_ERROR_PARTIAL)
	{
		UE_LOG(LogCore, Warning, TEXT("A regular expression was given up: %s"), *MessageOf(Result));
	}
	bMatched = Result > 0;
	if (bMatched)
	{
		// A match of nothing would be found again at the same place.
		const bool bEmpty = GetMatchEnding() == GetMatchBeginning();
		NextStart = GetMatchEnding() + (bEmpty ? 1 : 0);
	}
	return bMatched;
}

int32 FRegexMatcher::GetCaptureGroupBeginning(int32 Index) const
{
	const bool bThere = bMatched && Index >= 0 && (uint32)Index < pcre2_get_ovector_count(Match->Data);
	const PCRE2_SIZE Place = bThere ? pcre2_get_ovector_pointer(Match->Data)[2 * Index] : PCRE2_UNSET;
	return Place == PCRE2_UNSET ? INDEX_NONE : (int32)Place;
}

int32 FRegexMatcher::GetCaptureGroupEnding(int32 Index) const
{
	const bool bThere = bMatched && Index >= 0 && (uint32)Index < pcre2_get_ovector_count(Match->Data);
	const PCRE2_SIZE Place = bThere ? pcre2_get_ovector_pointer(Match->Data)[2 * Index + 1] : PCRE2_UNSET;
	return Place == PCRE2_UNSET ? INDEX_NONE : (int32)Place;
}

FString FRegexMatcher::GetCaptureGroup(int32 Index) const
{
	const int32 Beginning = GetCaptureGroupBeginning(Index);
	return Beginning == INDEX_NONE ? FString() : Input.Mid(Beginning, GetCaptureGroupEnding(Index) - Beginning);
}

void FRegexMatcher::SetLimits(int32 BeginIndex, int32 EndIndex)
{
	End = FMath::Clamp(EndIndex, 0, Input.Len());
	NextStart = FMath::Clamp(BeginIndex, 0, End);
	bMatched = false;
}
