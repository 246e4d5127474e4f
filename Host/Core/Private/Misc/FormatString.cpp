#include "Misc/FormatString.h"

#include "Containers/StringConv.h"
#include "Containers/UnrealString.h"

#include <algorithm>
#include <cstdio>

namespace
{
using FormatString::FSpec;

void AppendPadded(FString& Out, FStringView Text, const FSpec& Spec)
{
	const int32 Padding = std::max(0, Spec.Width - Text.Len());
	if (!Spec.bLeft)
	{
		Out.Append(FString::ChrN(Padding, u' '));
	}
	Out.Append(Text);
	if (Spec.bLeft)
	{
		Out.Append(FString::ChrN(Padding, u' '));
	}
}

/** Counts the units before the NUL but reads at most Limit of them; a negative limit is none. */
template <typename CharType>
int32 BoundedLength(const CharType* Text, int32 Limit)
{
	int32 Length = 0;
	while ((Limit < 0 || Length < Limit) && Text[Length])
	{
		++Length;
	}
	return Length;
}

void AppendText(FString& Out, const FSpec& Spec, const FFormatArg& Arg)
{
	if (Arg.Kind == EFormatArg::Wide)
	{
		const TCHAR* Text = Arg.Wide ? Arg.Wide : TEXT("(null)");
		AppendPadded(Out, FStringView(Text, BoundedLength(Text, Spec.Precision)), Spec);
		return;
	}
	const ANSICHAR* Text = Arg.Narrow ? Arg.Narrow : "(null)";
	AppendPadded(Out, FString::FromUtf8(Text, BoundedLength(Text, Spec.Precision)), Spec);
}

/** The C library's format for the number, with its length set to the widest type. */
void MakeNarrowFormat(const FSpec& Spec, const char* Length, char (&OutFormat)[32])
{
	char* Out = OutFormat;
	*Out++ = '%';
	const auto AddFlag = [&Out](bool bSet, char Flag)
	{
		if (bSet)
		{
			*Out++ = Flag;
		}
	};
	AddFlag(Spec.bLeft, '-');
	AddFlag(Spec.bPlus, '+');
	AddFlag(Spec.bBlank, ' ');
	AddFlag(Spec.bAlternate, '#');
	AddFlag(Spec.bZero, '0');
	const char* Fields = Spec.Precision >= 0 ? "*.*" : "*";
	std::snprintf(Out, 16, "%s%s%c", Fields, Length, (char)Spec.Conversion);
}

template <typename ValueType>
void AppendNumber(FString& Out, const FSpec& Spec, const char* Length, ValueType Value)
{
	char Format[32];
	MakeNarrowFormat(Spec, Length, Format);
	const auto Print = [&](char* Buffer, SIZE_T Size)
	{
		return Spec.Precision >= 0 ? std::snprintf(Buffer, Size, Format, Spec.Width, Spec.Precision, Value)
								   : std::snprintf(Buffer, Size, Format, Spec.Width, Value);
	};
	char Small[128];
	const int32 Needed = Print(Small, sizeof(Small));
	if (Needed < (int32)sizeof(Small))
	{
		Out.AppendUtf8(Small, Needed);
		return;
	}
	TArray<char> Large;
	Large.AddUninitialized(Needed + 1);
	Print(Large.GetData(), (SIZE_T)Large.Num());
	Out.AppendUtf8(Large.GetData(), Needed);
}

/** Integers are read in the width of their own type, so a negative int prints as 32-bit hexadecimal digits. */
void AppendInteger(FString& Out, const FSpec& Spec, const FFormatArg& Arg)
{
	if (Spec.Conversion == u'd' || Spec.Conversion == u'i')
	{
		AppendNumber(Out, Spec, "ll", Arg.Signed);
		return;
	}
	const bool bNarrow = Arg.Bytes < 8;
	AppendNumber(Out, Spec, "ll", bNarrow ? (uint64)(uint32)Arg.Unsigned : Arg.Unsigned);
}

void AppendOne(FString& Out, const FSpec& Spec, const FFormatArg& Arg)
{
	switch (Spec.Conversion)
	{
	case u's':
		AppendText(Out, Spec, Arg);
		break;
	case u'c':
	{
		const TCHAR Char = (TCHAR)Arg.Unsigned;
		AppendPadded(Out, FStringView(&Char, Char ? 1 : 0), Spec);
		break;
	}
	case u'p':
		AppendPadded(Out, FString::Printf(TEXT("0x%016llx"), (uint64)(UPTRINT)Arg.Pointer), Spec);
		break;
	default:
		if (Arg.Kind == EFormatArg::Floating)
		{
			AppendNumber(Out, Spec, "", Arg.Floating);
			break;
		}
		AppendInteger(Out, Spec, Arg);
	}
}

int32 TakeStar(TArrayView<const FFormatArg> Args, int32& Used)
{
	const int32 Value = (int32)Args[Used++].Signed;
	return std::clamp(Value, -FormatString::MaxWidth, FormatString::MaxWidth);
}
} // namespace

void AppendFormatted(FString& Out, const TCHAR* Format, TArrayView<const FFormatArg> Args)
{
	int32 Used = 0;
	const TCHAR* Cursor = Format;
	while (*Cursor)
	{
		const TCHAR* Percent = Cursor;
		while (*Percent && *Percent != u'%')
		{
			++Percent;
		}
		Out.Append(FStringView(Cursor, (int32)(Percent - Cursor)));
		Cursor = Percent;
		if (!*Cursor)
		{
			break;
		}
		if (*++Cursor == u'%')
		{
			Out.AppendChar(*Cursor++);
			continue;
		}
		FSpec Spec;
		const bool bRead = FormatString::ReadSpec(Cursor, Spec);
		check(bRead);
		if (Spec.bStarWidth)
		{
			const int32 Width = TakeStar(Args, Used);
			Spec.bLeft |= Width < 0;
			Spec.Width = Width < 0 ? -Width : Width;
		}
		if (Spec.bStarPrecision)
		{
			Spec.Precision = TakeStar(Args, Used);
		}
		AppendOne(Out, Spec, Args[Used++]);
	}
}
