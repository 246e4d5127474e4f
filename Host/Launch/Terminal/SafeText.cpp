#include "Launch/Terminal/SafeText.h"

namespace
{
bool IsDirectionMark(TCHAR Char)
{
	return (Char >= 0x202A && Char <= 0x202E) || (Char >= 0x2066 && Char <= 0x2069) || Char == 0x200E ||
		Char == 0x200F || Char == 0x061C;
}

bool IsHarmless(TCHAR Char)
{
	const bool bControl = (Char < 0x20 && Char != TEXT('\n') && Char != TEXT('\t')) || (Char >= 0x7F && Char < 0xA0);
	return !bControl && !IsDirectionMark(Char);
}

void AppendName(TCHAR Char, FString& Out)
{
	if (Char < 0x20 || Char == 0x7F)
	{
		Out += TEXT('^');
		Out += static_cast<TCHAR>(Char ^ 0x40);
		return;
	}
	Out += FString::Printf(TEXT("<U+%04X>"), static_cast<uint32>(Char));
}
} // namespace

FString MakeSafeText(FStringView Text)
{
	FString Safe;
	Safe.Reserve(Text.Len());
	for (int32 Index = 0; Index < Text.Len(); ++Index)
	{
		const TCHAR Char = Text[Index];
		if (IsHarmless(Char))
		{
			Safe += Char;
		}
		else if (Char != TEXT('\r'))
		{
			AppendName(Char, Safe);
		}
	}
	return Safe;
}
