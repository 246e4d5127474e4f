#pragma once

/** No white space outside strings. */
template <typename CharType>
struct TCondensedJsonPrintPolicy
{
	static constexpr bool bPretty = false;
};
