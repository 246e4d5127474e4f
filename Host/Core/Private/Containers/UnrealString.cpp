#include "Containers/UnrealString.h"

#include "Containers/UnicodeConversion.h"

#include <algorithm>

FString::FString(const TCHAR* Source)
	: FString(FStringView(Source))
{
}

FString::FString(const ANSICHAR* Source)
{
	AppendUtf8(Source, Source ? (int64)std::strlen(Source) : 0);
}

FString::FString(int32 Len, const TCHAR* Source)
	: FString(FStringView(Source, Len))
{
}

FString::FString(FStringView View)
{
	if (View.Len() > 0)
	{
		Data.Reserve(View.Len() + 1);
		Append(View);
	}
}

FString FString::FromUtf8(const ANSICHAR* Source, int64 Bytes)
{
	FString Result;
	Result.AppendUtf8(Source, Bytes);
	return Result;
}

FString& FString::operator=(const TCHAR* Source)
{
	const FStringView View(Source);
	if (View.GetData() >= Data.begin() && View.GetData() < Data.end())
	{
		return *this = FString(View);
	}
	Data.Reset();
	return Append(View);
}

void FString::Empty(int32 Slack)
{
	Data.Empty(Slack ? Slack + 1 : 0);
}

void FString::Reset(int32 NewReserved)
{
	Data.Reset(NewReserved ? NewReserved + 1 : 0);
}

FString& FString::Append(FStringView Text)
{
	if (Text.Len() == 0)
	{
		return *this;
	}
	const bool bInside = Text.GetData() >= Data.begin() && Text.GetData() < Data.end();
	const PTRINT Offset = bInside ? Text.GetData() - Data.GetData() : 0;
	TCHAR* Dest = AppendUninitialized(Text.Len());
	FMemory::Memmove(Dest, bInside ? Data.GetData() + Offset : Text.GetData(), (SIZE_T)Text.Len() * sizeof(TCHAR));
	return *this;
}

FString& FString::AppendChar(TCHAR Char)
{
	if (Char != 0)
	{
		*AppendUninitialized(1) = Char;
	}
	return *this;
}

void FString::AppendInt(int64 Value)
{
	Appendf(TEXT("%lld"), Value);
}

FString& FString::AppendUtf8(const ANSICHAR* Source, int64 Bytes)
{
	if (Bytes <= 0)
	{
		return *this;
	}
	check(Bytes < MAX_int32 - Len() - 1);
	const int32 OldLen = Len();
	TCHAR* Dest = AppendUninitialized((int32)Bytes);
	const int32 Units = (int32)Unicode::Utf8ToUtf16(Source, Bytes, Dest);
	Data.SetNumUninitialized(OldLen + Units + 1, EAllowShrinking::No);
	Data.GetData()[OldLen + Units] = 0;
	if (OldLen == 0 && Data.GetSlack() > Data.Num() / 4 + 64)
	{
		Data.Shrink();
	}
	return *this;
}

void FString::InsertAt(int32 Index, FStringView Text)
{
	check(Index >= 0 && Index <= Len());
	if (Text.Len() == 0)
	{
		return;
	}
	const FString Copy(Text);
	const int32 Tail = Len() - Index;
	AppendUninitialized(Copy.Len());
	TCHAR* At = Data.GetData() + Index;
	FMemory::Memmove(At + Copy.Len(), At, (SIZE_T)Tail * sizeof(TCHAR));
	FMemory::Memcpy(At, *Copy, (SIZE_T)Copy.Len() * sizeof(TCHAR));
}

void FString::RemoveAt(int32 Index, int32 Count)
{
	check(Index >= 0 && Count >= 0 && Index <= Len() - Count);
	if (Count > 0)
	{
		Data.RemoveAt(Index, Count, EAllowShrinking::No);
	}
}

void FString::PathAppend(const TCHAR* Text, int32 Count)
{
	if (Count == 0)
	{
		return;
	}
	const auto bSlash = [](TCHAR Char) { return Char == u'/' || Char == u'\\'; };
	if (Len() > 0 && !bSlash((*this)[Len() - 1]) && !bSlash(Text[0]))
	{
		AppendChar(u'/');
	}
	const bool bDouble = Len() > 0 && bSlash((*this)[Len() - 1]) && bSlash(Text[0]);
	Append(FStringView(Text, Count).RightChop(bDouble ? 1 : 0));
}

int32 FString::Find(
	FStringView SubStr, ESearchCase::Type SearchCase, ESearchDir::Type SearchDir, int32 StartPosition) const
{
	if (SubStr.IsEmpty())
	{
		return INDEX_NONE;
	}
	if (SearchDir == ESearchDir::FromStart)
	{
		return StringSearch::Find(**this, Len(), SubStr.GetData(), SubStr.Len(), StartPosition, SearchCase);
	}
	const int32 Start = StartPosition == INDEX_NONE ? Len() : StartPosition;
	return StringSearch::FindLast(**this, Len(), SubStr.GetData(), SubStr.Len(), Start, SearchCase);
}

void FString::LeftInline(int32 Count, EAllowShrinking Shrinking)
{
	MidInline(0, Count, Shrinking);
}

void FString::LeftChopInline(int32 Count, EAllowShrinking Shrinking)
{
	MidInline(0, Len() - Count, Shrinking);
}

void FString::RightInline(int32 Count, EAllowShrinking Shrinking)
{
	MidInline(Count < Len() ? Len() - Count : 0, MAX_int32, Shrinking);
}

void FString::RightChopInline(int32 Count, EAllowShrinking Shrinking)
{
	MidInline(Count, MAX_int32, Shrinking);
}

void FString::MidInline(int32 Start, int32 Count, EAllowShrinking Shrinking)
{
	const FStringView Kept = FStringView(*this).Mid(Start, Count);
	if (Kept.IsEmpty())
	{
		Data.SetNum(0, Shrinking);
		return;
	}
	const int32 First = (int32)(Kept.GetData() - Data.GetData());
	Data.RemoveAt(First + Kept.Len(), Len() - First - Kept.Len(), EAllowShrinking::No);
	Data.RemoveAt(0, First, Shrinking);
}

bool FString::Split(FStringView Separator, FString* LeftPart, FString* RightPart, ESearchCase::Type SearchCase,
	ESearchDir::Type SearchDir) const
{
	const int32 Place = Find(Separator, SearchCase, SearchDir);
	if (Place == INDEX_NONE)
	{
		return false;
	}
	// Either part may be this text itself.
	FString NewLeft = Left(Place);
	FString NewRight = RightChop(Place + Separator.Len());
	if (LeftPart)
	{
		*LeftPart = MoveTemp(NewLeft);
	}
	if (RightPart)
	{
		*RightPart = MoveTemp(NewRight);
	}
	return true;
}

FString FString::Replace(FStringView From, FStringView To, ESearchCase::Type SearchCase) const
{
	FString Result(*this);
	Result.ReplaceInline(From, To, SearchCase);
	return Result;
}

int32 FString::ReplaceInline(FStringView From, FStringView To, ESearchCase::Type SearchCase)
{
	int32 Place = Find(From, SearchCase);
	if (Place == INDEX_NONE)
	{
		return 0;
	}
	FString Result;
	Result.Reserve(Len());
	int32 Taken = 0;
	int32 Count = 0;
	for (; Place != INDEX_NONE; Place = Find(From, SearchCase, ESearchDir::FromStart, Taken))
	{
		Result.Append(FStringView(*this).Mid(Taken, Place - Taken));
		Result.Append(To);
		Taken = Place + From.Len();
		++Count;
	}
	Result.Append(FStringView(*this).Mid(Taken));
	*this = MoveTemp(Result);
	return Count;
}

void FString::ReplaceCharInline(TCHAR From, TCHAR To, ESearchCase::Type SearchCase)
{
	const bool bIgnoreCase = SearchCase == ESearchCase::IgnoreCase;
	const TCHAR Folded = FChar::ToLower(From);
	for (TCHAR& Char : *this)
	{
		if (Char == From || (bIgnoreCase && FChar::ToLower(Char) == Folded))
		{
			Char = To;
		}
	}
}

void FString::TrimStartInline()
{
	RightChopInline(Len() - FStringView(*this).TrimStart().Len(), EAllowShrinking::No);
}

void FString::TrimEndInline()
{
	LeftInline(FStringView(*this).TrimEnd().Len(), EAllowShrinking::No);
}

void FString::TrimStartAndEndInline()
{
	TrimEndInline();
	TrimStartInline();
}

FString FString::TrimQuotes(bool* bOutQuotesRemoved) const
{
	const FString Result = TrimChar(u'"');
	if (bOutQuotesRemoved)
	{
		*bOutQuotesRemoved = Result.Len() != Len();
	}
	return Result;
}

FString FString::TrimChar(TCHAR Char) const
{
	FStringView View(*this);
	if (View.StartsWith(Char))
	{
		View.RemovePrefix(1);
	}
	if (View.EndsWith(Char))
	{
		View.RemoveSuffix(1);
	}
	return FString(View);
}

bool FString::RemoveFromStart(FStringView Prefix, ESearchCase::Type SearchCase)
{
	const bool bRemove = !Prefix.IsEmpty() && StartsWith(Prefix, SearchCase);
	if (bRemove)
	{
		RightChopInline(Prefix.Len());
	}
	return bRemove;
}

bool FString::RemoveFromEnd(FStringView Suffix, ESearchCase::Type SearchCase)
{
	const bool bRemove = !Suffix.IsEmpty() && EndsWith(Suffix, SearchCase);
	if (bRemove)
	{
		LeftChopInline(Suffix.Len());
	}
	return bRemove;
}

FString FString::ToUpper() const
{
	FString Result(*this);
	Result.ToUpperInline();
	return Result;
}

FString FString::ToLower() const
{
	FString Result(*this);
	Result.ToLowerInline();
	return Result;
}

void FString::ToUpperInline()
{
	for (TCHAR& Char : *this)
	{
		Char = FChar::ToUpper(Char);
	}
}

void FString::ToLowerInline()
{
	for (TCHAR& Char : *this)
	{
		Char = FChar::ToLower(Char);
	}
}

FString FString::LeftPad(int32 Count) const
{
	return Count > Len() ? ChrN(Count - Len(), u' ') + *this : *this;
}

FString FString::RightPad(int32 Count) const
{
	return Count > Len() ? *this + ChrN(Count - Len(), u' ') : *this;
}

FString FString::Reverse() const
{
	FString Result(*this);
	std::reverse(Result.begin(), Result.end());
	return Result;
}

FString FString::ChrN(int32 Count, TCHAR Char)
{
	FString Result;
	if (Count > 0)
	{
		TCHAR* Dest = Result.AppendUninitialized(Count);
		std::fill(Dest, Dest + Count, Char);
	}
	return Result;
}
