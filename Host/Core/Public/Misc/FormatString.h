#pragma once

#include "Containers/ArrayView.h"

#include <type_traits>

/** What one placeholder of a format text takes. */
enum class EFormatArg : uint8
{
	Signed,
	Unsigned,
	Floating,
	Wide,
	Narrow,
	Pointer,
	Unfit
};

/** One argument of a formatted text, with its type. Text arguments are borrowed for the time of the call. */
struct FFormatArg
{
	EFormatArg Kind;
	uint8 Bytes;
	union
	{
		int64 Signed;
		uint64 Unsigned;
		double Floating;
		const TCHAR* Wide;
		const ANSICHAR* Narrow;
		const void* Pointer;
	};
};

namespace FormatString
{
template <typename T>
constexpr EFormatArg KindOf()
{
	using Type = std::decay_t<T>;
	if constexpr (std::is_enum_v<Type>)
	{
		return KindOf<std::underlying_type_t<Type>>();
	}
	else if constexpr (std::is_floating_point_v<Type>)
	{
		return EFormatArg::Floating;
	}
	else if constexpr (std::is_integral_v<Type>)
	{
		return std::is_signed_v<Type> ? EFormatArg::Signed : EFormatArg::Unsigned;
	}
	else if constexpr (std::is_same_v<Type, const TCHAR*> || std::is_same_v<Type, TCHAR*>)
	{
		return EFormatArg::Wide;
	}
	else if constexpr (std::is_same_v<Type, const char*> || std::is_same_v<Type, char*>)
	{
		return EFormatArg::Narrow;
	}
	else
	{
		return std::is_pointer_v<Type> || std::is_null_pointer_v<Type> ? EFormatArg::Pointer : EFormatArg::Unfit;
	}
}

template <typename T>
FFormatArg MakeArg(const T& Value)
{
	FFormatArg Result;
	Result.Kind = KindOf<T>();
	Result.Bytes = (uint8)sizeof(T);
	if constexpr (KindOf<T>() == EFormatArg::Signed)
	{
		Result.Signed = (int64)Value;
	}
	else if constexpr (KindOf<T>() == EFormatArg::Unsigned)
	{
		Result.Unsigned = (uint64)Value;
	}
	else if constexpr (KindOf<T>() == EFormatArg::Floating)
	{
		Result.Floating = (double)Value;
	}
	else if constexpr (KindOf<T>() == EFormatArg::Wide)
	{
		Result.Wide = Value;
	}
	else if constexpr (KindOf<T>() == EFormatArg::Narrow)
	{
		Result.Narrow = Value;
	}
	else
	{
		Result.Pointer = (const void*)Value;
	}
	return Result;
}

/** One placeholder, `%[flags][width][.precision][length]conversion`, as the C library's printf writes them. */
struct FSpec
{
	bool bLeft = false;
	bool bPlus = false;
	bool bBlank = false;
	bool bAlternate = false;
	bool bZero = false;
	bool bNarrow = false;
	bool bStarWidth = false;
	bool bStarPrecision = false;
	/** The number of length letters: l is 1, ll is 2, h is -1, hh is -2. */
	int8 Length = 0;
	int32 Width = 0;
	int32 Precision = -1;
	TCHAR Conversion = 0;
};

/** Widths and precisions beyond this many units are a mistake in the format. */
constexpr int32 MaxWidth = 4096;

constexpr bool ReadNumber(const TCHAR*& Cursor, int32& OutNumber)
{
	OutNumber = 0;
	while (*Cursor >= u'0' && *Cursor <= u'9')
	{
		OutNumber = OutNumber * 10 + (*Cursor++ - u'0');
		if (OutNumber > MaxWidth)
		{
			return false;
		}
	}
	return true;
}

constexpr void ReadLength(const TCHAR*& Cursor, FSpec& OutSpec)
{
	for (; *Cursor == u'l' || *Cursor == u'h' || *Cursor == u'z' || *Cursor == u'j' || *Cursor == u't'; ++Cursor)
	{
		OutSpec.Length += *Cursor == u'h' ? -1 : (*Cursor == u'l' ? 1 : 2);
	}
}

/** Reads the placeholder behind a per cent sign. @return false for a malformed one. */
constexpr bool ReadSpec(const TCHAR*& Cursor, FSpec& OutSpec)
{
	for (;; ++Cursor)
	{
		switch (*Cursor)
		{
		case u'-':
			OutSpec.bLeft = true;
			continue;
		case u'+':
			OutSpec.bPlus = true;
			continue;
		case u' ':
			OutSpec.bBlank = true;
			continue;
		case u'#':
			OutSpec.bAlternate = true;
			continue;
		case u'0':
			OutSpec.bZero = true;
			continue;
		}
		break;
	}
	if (*Cursor == u'*')
	{
		OutSpec.bStarWidth = true;
		++Cursor;
	}
	else if (!ReadNumber(Cursor, OutSpec.Width))
	{
		return false;
	}
	if (*Cursor == u'.')
	{
		++Cursor;
		OutSpec.bStarPrecision = *Cursor == u'*';
		if (OutSpec.bStarPrecision)
		{
			++Cursor;
		}
		else if (!ReadNumber(Cursor, OutSpec.Precision))
		{
			return false;
		}
	}
	ReadLength(Cursor, OutSpec);
	OutSpec.bNarrow = OutSpec.Length < 0;
	OutSpec.Conversion = *Cursor;
	return *Cursor != 0 && (++Cursor, true);
}

/** Whether a placeholder takes an argument of this kind. Integers of either sign fit each other, as in C. */
constexpr bool Fits(const FSpec& Spec, EFormatArg Kind)
{
	const bool bInteger = Kind == EFormatArg::Signed || Kind == EFormatArg::Unsigned;
	switch (Spec.Conversion)
	{
	case u'd':
	case u'i':
	case u'u':
	case u'x':
	case u'X':
	case u'o':
	case u'c':
		return bInteger;
	case u'f':
	case u'F':
	case u'e':
	case u'E':
	case u'g':
	case u'G':
		return Kind == EFormatArg::Floating;
	case u's':
		return Kind == (Spec.bNarrow ? EFormatArg::Narrow : EFormatArg::Wide);
	case u'p':
		return Kind == EFormatArg::Pointer || Kind == EFormatArg::Wide || Kind == EFormatArg::Narrow;
	default:
		return false;
	}
}

/** The bytes of an integer that a placeholder may take: 8 with ll, else 4, so that a cut value doesn't compile. */
constexpr bool FitsWidth(const FSpec& Spec, EFormatArg Kind, SIZE_T Bytes)
{
	const bool bInteger = Kind == EFormatArg::Signed || Kind == EFormatArg::Unsigned;
	return !bInteger || Spec.Length >= 1 || Bytes <= 4;
}

/** Named so that the compiler's message tells what is wrong; none is ever defined. */
void Error_MalformedPlaceholder();
void Error_MoreArgumentsThanPlaceholders();
void Error_FewerArgumentsThanPlaceholders();
void Error_ArgumentDoesNotFitPlaceholder_DereferenceStringsWithStar();
void Error_WiderIntegerThanPlaceholder_UseLL();
} // namespace FormatString

/** A format literal that was checked against the types of its arguments when it was compiled. */
template <typename... ArgTypes>
class TCheckedFormat
{
public:
	consteval TCheckedFormat(const TCHAR* Format)
		: Text(Format)
	{
		constexpr EFormatArg Kinds[] = {FormatString::KindOf<ArgTypes>()..., EFormatArg::Unfit};
		constexpr SIZE_T Bytes[] = {sizeof(std::decay_t<ArgTypes>)..., 0};
		SIZE_T Used = 0;
		for (const TCHAR* Cursor = Format; *Cursor;)
		{
			if (*Cursor++ != u'%')
			{
				continue;
			}
			if (*Cursor == u'%')
			{
				++Cursor;
				continue;
			}
			FormatString::FSpec Spec;
			if (!FormatString::ReadSpec(Cursor, Spec))
			{
				FormatString::Error_MalformedPlaceholder();
			}
			Used += (Spec.bStarWidth ? 1 : 0) + (Spec.bStarPrecision ? 1 : 0);
			if (Used >= sizeof...(ArgTypes))
			{
				FormatString::Error_FewerArgumentsThanPlaceholders();
			}
			if (!FormatString::Fits(Spec, Kinds[Used]))
			{
				FormatString::Error_ArgumentDoesNotFitPlaceholder_DereferenceStringsWithStar();
			}
			if (!FormatString::FitsWidth(Spec, Kinds[Used], Bytes[Used]))
			{
				FormatString::Error_WiderIntegerThanPlaceholder_UseLL();
			}
			++Used;
		}
		if (Used != sizeof...(ArgTypes))
		{
			FormatString::Error_MoreArgumentsThanPlaceholders();
		}
	}

	const TCHAR* Get() const { return Text; }

private:
	const TCHAR* Text;
};

class FString;

/**
 * Appends formatted text. The format set is the C library's: flags, width, precision and star for the conversions
 * d i u x X o c s f e g p, with `%hs` for UTF-8 text. A null text prints as "(null)".
 */
void AppendFormatted(FString& Out, const TCHAR* Format, TArrayView<const FFormatArg> Args);
