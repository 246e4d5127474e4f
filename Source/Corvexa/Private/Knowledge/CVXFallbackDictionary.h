#pragma once

#include "CoreMinimal.h"

/** One entry of the dictionary that stands in when no translation files are there. */
struct FCVXFallbackMapping
{
	const TCHAR* Term;
	const TCHAR* Key;
};

namespace CVXFallbackDictionary
{
/** Terms that match as whole words. */
TArrayView<const FCVXFallbackMapping> GetExact();
/** Stems, which stop before the ending that inflection changes, in the order in which they are tried. */
TArrayView<const FCVXFallbackMapping> GetPrefixes();
} // namespace CVXFallbackDictionary
