#pragma once

/** Each member and element on its own line, indented with tabs, a space behind each colon. */
template <typename CharType>
struct TPrettyJsonPrintPolicy
{
	static constexpr bool bPretty = true;
};
