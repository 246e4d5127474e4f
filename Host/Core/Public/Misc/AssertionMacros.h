#pragma once

#include "HAL/Platform.h"

/**
 * Assertions for a programmer's mistakes. A failed `check` prints the expression with its place to standard error and
 * aborts the process; a failed `ensure` prints once for each place and goes on with the value false. Any thread.
 */
struct FDebug
{
	[[noreturn]] static void CheckFailed(const char* Expression, const char* File, int Line);

	/** @param Message UTF-16 text, already formatted. */
	[[noreturn]] static void CheckFailed(const char* Expression, const char* File, int Line, const TCHAR* Message);

	/** @return always false, so that it can stand as the value of a failed `ensure`. */
	static bool EnsureFailed(bool& bReported, const char* Expression, const char* File, int Line);
	static bool EnsureFailed(bool& bReported, const char* Expression, const char* File, int Line, const TCHAR* Message);
};

#define check(...)                                                 \
	do                                                             \
	{                                                              \
		if (UNLIKELY(!(__VA_ARGS__)))                              \
		{                                                          \
			FDebug::CheckFailed(#__VA_ARGS__, __FILE__, __LINE__); \
		}                                                          \
	} while (false)

#define checkf(Expression, Format, ...)                                                                                \
	do                                                                                                                 \
	{                                                                                                                  \
		if (UNLIKELY(!(Expression)))                                                                                   \
		{                                                                                                              \
			FDebug::CheckFailed(#Expression, __FILE__, __LINE__, *FString::Printf(Format __VA_OPT__(, ) __VA_ARGS__)); \
		}                                                                                                              \
	} while (false)

#define verify(...) check(__VA_ARGS__)
#define checkNoEntry() FDebug::CheckFailed("unreachable", __FILE__, __LINE__)

#define ensure(...)                                                                   \
	(LIKELY(!!(__VA_ARGS__)) ||                                                       \
		[]                                                                            \
		{                                                                             \
			static bool bReported = false;                                            \
			return FDebug::EnsureFailed(bReported, #__VA_ARGS__, __FILE__, __LINE__); \
		}())

#define ensureMsgf(Expression, Format, ...)                                                                       \
	(LIKELY(!!(Expression)) ||                                                                                    \
		[&]                                                                                                       \
		{                                                                                                         \
			static bool bReported = false;                                                                        \
			return FDebug::EnsureFailed(                                                                          \
				bReported, #Expression, __FILE__, __LINE__, *FString::Printf(Format __VA_OPT__(, ) __VA_ARGS__)); \
		}())
