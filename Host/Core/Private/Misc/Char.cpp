#include "Misc/Char.h"

#include <utf8proc.h>

namespace
{
/** The case mappings of the basic plane that stay inside it, looked up once so that a mapping is one load. */
struct FCaseTable
{
	TCHAR Upper[0x10000];
	TCHAR Lower[0x10000];

	FCaseTable()
	{
		for (int32 Char = 0; Char < 0x10000; ++Char)
		{
			Upper[Char] = Keep(Char, utf8proc_toupper(Char));
			Lower[Char] = Keep(Char, utf8proc_tolower(Char));
		}
	}

	/** No letter changes between ASCII and the rest: text that ignores case stays comparable a block at a time. */
	static TCHAR Keep(int32 Char, int32 Mapped)
	{
		return (TCHAR)(Mapped >= 0 && Mapped < 0x10000 && (Mapped < 0x80) == (Char < 0x80) ? Mapped : Char);
	}
};

const FCaseTable& CaseTable()
{
	static const FCaseTable Table;
	return Table;
}

utf8proc_category_t Category(TCHAR Char)
{
	return utf8proc_category(Char);
}
} // namespace

TCHAR FChar::ToUpperWide(TCHAR Char)
{
	return CaseTable().Upper[Char];
}

TCHAR FChar::ToLowerWide(TCHAR Char)
{
	return CaseTable().Lower[Char];
}

bool FChar::IsAlpha(TCHAR Char)
{
	if (Char < 128)
	{
		return (Char | 32) >= u'a' && (Char | 32) <= u'z';
	}
	const utf8proc_category_t Class = Category(Char);
	return Class >= UTF8PROC_CATEGORY_LU && Class <= UTF8PROC_CATEGORY_LO;
}

bool FChar::IsAlnum(TCHAR Char)
{
	return IsDigit(Char) || IsAlpha(Char) || (Char >= 128 && Category(Char) == UTF8PROC_CATEGORY_ND);
}

bool FChar::IsUpper(TCHAR Char)
{
	return Char < 128 ? (Char >= u'A' && Char <= u'Z') : Category(Char) == UTF8PROC_CATEGORY_LU;
}

bool FChar::IsLower(TCHAR Char)
{
	return Char < 128 ? (Char >= u'a' && Char <= u'z') : Category(Char) == UTF8PROC_CATEGORY_LL;
}

bool FChar::IsPunct(TCHAR Char)
{
	if (Char < 128)
	{
		return Char > 32 && Char < 127 && !IsAlnum(Char);
	}
	const utf8proc_category_t Class = Category(Char);
	return Class >= UTF8PROC_CATEGORY_PC && Class <= UTF8PROC_CATEGORY_PO;
}

bool FChar::IsWhitespace(TCHAR Char)
{
	if (Char < 128)
	{
		return Char == u' ' || (Char >= 9 && Char <= 13);
	}
	return Char == 0x85 || Category(Char) == UTF8PROC_CATEGORY_ZS || Char == 0x2028 || Char == 0x2029;
}
