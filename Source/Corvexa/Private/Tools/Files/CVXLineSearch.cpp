#include "Tools/Files/CVXLineSearch.h"

#include "Containers/StringConv.h"
#include "Misc/FileHelper.h"

#include <cstring>

namespace
{
bool IsLineEnd(uint8 Byte)
{
	return Byte == '\n' || Byte == '\r';
}

TArray<uint8> ToUtf8(FStringView Text)
{
	const FTCHARToUTF8 Converted(Text.GetData(), Text.Len());
	TArray<uint8> Bytes;
	Bytes.Append((const uint8*)Converted.Get(), Converted.Length());
	return Bytes;
}

/** Whether malformed bytes of a file could give this text too. */
bool HasReplacement(FStringView Text)
{
	const FTCHARToUTF8 Bytes(Text.GetData(), Text.Len());
	const FUTF8ToTCHAR Again(Bytes.Get(), Bytes.Length());
	int32 Found = INDEX_NONE;
	return FStringView(Again.Get(), Again.Length()).FindChar(0xFFFD, Found);
}

/** The longest run of ASCII in a text. */
FStringView LongestAsciiRun(FStringView Text)
{
	FStringView Best;
	int32 Start = 0;
	for (int32 Index = 0; Index <= Text.Len(); ++Index)
	{
		if (Index < Text.Len() && Text[Index] < 0x80)
		{
			continue;
		}
		if (Index - Start > Best.Len())
		{
			Best = Text.Mid(Start, Index - Start);
		}
		Start = Index + 1;
	}
	return Best;
}

bool IsUtf16(const TArray<uint8>& Bytes)
{
	return Bytes.Num() >= 2 && ((Bytes[0] == 0xFF && Bytes[1] == 0xFE) || (Bytes[0] == 0xFE && Bytes[1] == 0xFF));
}

int32 Utf8MarkLength(const TArray<uint8>& Bytes)
{
	return Bytes.Num() >= 3 && Bytes[0] == 0xEF && Bytes[1] == 0xBB && Bytes[2] == 0xBF ? 3 : 0;
}

/** Line ends in a run that ends with one; the byte behind the run is there. */
int32 CountLineEnds(const uint8* Bytes, int32 Count)
{
	int32 Ends = 0;
	for (int32 Index = 0; Index < Count; ++Index)
	{
		Ends += (int32)(Bytes[Index] == '\n') | (int32)((Bytes[Index] == '\r') & (Bytes[Index + 1] != '\n'));
	}
	return Ends;
}

int32 FindLineStart(const uint8* Bytes, int32 From, int32 At)
{
	while (At > From && !IsLineEnd(Bytes[At - 1]))
	{
		--At;
	}
	return At;
}

int32 FindLineEnd(const uint8* Bytes, int32 From, int32 Size)
{
	const void* Feed = std::memchr(Bytes + From, '\n', (SIZE_T)(Size - From));
	const int32 End = Feed ? (int32)((const uint8*)Feed - Bytes) : Size;
	const void* Return = std::memchr(Bytes + From, '\r', (SIZE_T)(End - From));
	return Return ? (int32)((const uint8*)Return - Bytes) : End;
}

FString DecodeLine(const uint8* Bytes, int32 Count)
{
	const FUTF8ToTCHAR Text((const ANSICHAR*)Bytes, Count);
	return FString(FStringView(Text.Get(), Text.Length()));
}
} // namespace

FCVXLineSearch::FCVXLineSearch(const FString& InPattern, ESearchCase::Type InCase)
	: Pattern(InPattern)
	, Case(InCase)
{
	int32 Found = INDEX_NONE;
	bNeverMatches = Pattern.FindChar(u'\n', Found) || Pattern.FindChar(u'\r', Found);
	const FStringView Ascii = LongestAsciiRun(Pattern);
	const bool bIgnoreCase = Case == ESearchCase::IgnoreCase;
	bNeedleIsWhole = Ascii.Len() == Pattern.Len() || (!bIgnoreCase && !HasReplacement(Pattern));
	Needle = FCVXByteSearch(ToUtf8(bNeedleIsWhole ? FStringView(Pattern) : Ascii), bIgnoreCase);
}

void FCVXLineSearch::Search(const TArray<uint8>& Bytes, int32 MaxMatches, TArray<FCVXLineMatch>& Out) const
{
	if (bNeverMatches)
	{
		return;
	}
	if (!Needle.IsEmpty() && !IsUtf16(Bytes))
	{
		SearchBytes(Bytes, MaxMatches, Out);
		return;
	}
	FString Text;
	FFileHelper::BufferToString(Text, Bytes.GetData(), Bytes.Num());
	SearchText(Text, MaxMatches, Out);
}

void FCVXLineSearch::SearchBytes(const TArray<uint8>& Bytes, int32 MaxMatches, TArray<FCVXLineMatch>& Out) const
{
	const uint8* Data = Bytes.GetData();
	const int32 Size = Bytes.Num();
	int32 At = Utf8MarkLength(Bytes);
	int32 LineStart = At;
	int32 Line = 1;
	while (Out.Num() < MaxMatches)
	{
		const int32 Hit = Needle.Find(Data, Size, At);
		if (Hit == INDEX_NONE)
		{
			return;
		}
		const int32 HitLineStart = FindLineStart(Data, At, Hit);
		Line += CountLineEnds(Data + LineStart, HitLineStart - LineStart);
		LineStart = HitLineStart;
		At = FindLineEnd(Data, Hit, Size);
		const FString Text = DecodeLine(Data + LineStart, At - LineStart);
		if (bNeedleIsWhole || IsIn(Text))
		{
			Out.Add({Line, Text.TrimStartAndEnd()});
		}
	}
}

void FCVXLineSearch::SearchText(const FString& Text, int32 MaxMatches, TArray<FCVXLineMatch>& Out) const
{
	TArray<FString> Lines;
	Text.ParseIntoArrayLines(Lines, false);
	for (int32 Index = 0; Index < Lines.Num() && Out.Num() < MaxMatches; ++Index)
	{
		if (IsIn(Lines[Index]))
		{
			Out.Add({Index + 1, Lines[Index].TrimStartAndEnd()});
		}
	}
}

bool FCVXLineSearch::IsIn(const FString& Line) const
{
	return Pattern.IsEmpty() || Line.Contains(Pattern, Case);
}
