#pragma once

#include <cstddef>
#include <cstdint>

using int8 = std::int8_t;
using int16 = std::int16_t;
using int32 = std::int32_t;
using int64 = long long;
using uint8 = std::uint8_t;
using uint16 = std::uint16_t;
using uint32 = std::uint32_t;
using uint64 = unsigned long long;

using SIZE_T = std::size_t;
using UPTRINT = std::uintptr_t;
using PTRINT = std::intptr_t;

using ANSICHAR = char;
using UTF8CHAR = char8_t;
using UTF16CHAR = char16_t;
using UTF32CHAR = char32_t;
using WIDECHAR = char16_t;

/** One UTF-16 code unit: the unit of all in-memory text. */
using TCHAR = char16_t;

#define UE_TEXT_PASTE(Literal) u##Literal
#define TEXT(Literal) UE_TEXT_PASTE(Literal)
#define TEXTVIEW(Literal) FStringView(TEXT(Literal))

#define PLATFORM_WINDOWS 0
#define PLATFORM_LINUX 1
#define PLATFORM_MAC 0
#define PLATFORM_UNIX 1
#define PLATFORM_DESKTOP 1
#define PLATFORM_64BITS 1
#define PLATFORM_LITTLE_ENDIAN 1
#define WITH_EDITOR 1
#define WITH_EDITORONLY_DATA 1

#define FORCEINLINE inline __attribute__((always_inline))
#define FORCENOINLINE __attribute__((noinline))
#define UE_NODISCARD [[nodiscard]]
#define LIKELY(Condition) __builtin_expect(!!(Condition), 1)
#define UNLIKELY(Condition) __builtin_expect(!!(Condition), 0)

#define UE_JOIN_INNER(A, B) A##B
#define UE_JOIN(A, B) UE_JOIN_INNER(A, B)

/** The index that lookups return for "not there". */
constexpr int32 INDEX_NONE = -1;

constexpr int8 MIN_int8 = INT8_MIN;
constexpr int16 MIN_int16 = INT16_MIN;
constexpr int32 MIN_int32 = INT32_MIN;
constexpr int64 MIN_int64 = INT64_MIN;
constexpr int8 MAX_int8 = INT8_MAX;
constexpr int16 MAX_int16 = INT16_MAX;
constexpr int32 MAX_int32 = INT32_MAX;
constexpr int64 MAX_int64 = INT64_MAX;
constexpr uint8 MAX_uint8 = UINT8_MAX;
constexpr uint16 MAX_uint16 = UINT16_MAX;
constexpr uint32 MAX_uint32 = UINT32_MAX;
constexpr uint64 MAX_uint64 = UINT64_MAX;
