#include "Tools/Edit/CVXPatchPath.h"

#include "Containers/StringConv.h"

namespace
{
bool IsOctal(TCHAR Char)
{
	return Char >= u'0' && Char <= u'7';
}

ANSICHAR PlainOf(TCHAR Escaped)
{
	const FStringView Letters = TEXT("abtnvfr");
	int32 Place = INDEX_NONE;
	return Letters.FindChar(Escaped, Place) ? (ANSICHAR)("\a\b\t\n\v\f\r"[Place]) : (ANSICHAR)Escaped;
}

/** Reads an escape's byte. @param InOutIndex at what follows the backslash; left at the last unit of the escape. */
ANSICHAR ReadEscape(FStringView Quoted, int32& InOutIndex)
{
	if (!IsOctal(Quoted[InOutIndex]))
	{
		return PlainOf(Quoted[InOutIndex]);
	}
	int32 Value = 0;
	const int32 End = FMath::Min(InOutIndex + 3, Quoted.Len());
	int32 Index = InOutIndex;
	for (; Index < End && IsOctal(Quoted[Index]); ++Index)
	{
		Value = Value * 8 + (Quoted[Index] - u'0');
	}
	InOutIndex = Index - 1;
	return (ANSICHAR)Value;
}

/** @param Quoted begins with a double quote. */
FString Unquote(FStringView Quoted)
{
	TArray<ANSICHAR> Bytes;
	for (int32 Index = 1; Index < Quoted.Len() && Quoted[Index] != u'"'; ++Index)
	{
		if (Quoted[Index] == u'\\' && Index + 1 < Quoted.Len())
		{
			Bytes.Add(ReadEscape(Quoted, ++Index));
			continue;
		}
		const FTCHARToUTF8 Plain(Quoted.GetData() + Index, 1);
		Bytes.Append(Plain.Get(), Plain.Length());
	}
	return FString::FromUtf8(Bytes.GetData(), Bytes.Num());
}
} // namespace

FString ReadPatchPath(FStringView Header)
{
	int32 Tab = INDEX_NONE;
	const FStringView Shown = (Header.FindChar(u'\t', Tab) ? Header.Left(Tab) : Header).TrimStartAndEnd();
	FString Path = Shown.StartsWith(u'"') ? Unquote(Shown) : FString(Shown);
	if (!Path.RemoveFromStart(TEXT("a/"), ESearchCase::CaseSensitive))
	{
		(void)Path.RemoveFromStart(TEXT("b/"), ESearchCase::CaseSensitive);
	}
	return Path;
}
