#include "Misc/Guid.h"

#include <cerrno>
#include <sys/random.h>

namespace
{
void FillRandom(void* Dest, SIZE_T Bytes)
{
	// Up to 256 bytes come whole once the kernel's pool is ready, so only a signal before that can cut the call short.
	while (getrandom(Dest, Bytes, 0) != (ssize_t)Bytes)
	{
		checkf(errno == EINTR, TEXT("The system gives no random bytes (error %d)"), errno);
	}
}

/** The digits of a written form, without its marks. @return false unless there are 32. */
bool CollectDigits(const FString& Text, FString& OutDigits)
{
	for (const TCHAR Char : Text)
	{
		if (FChar::IsHexDigit(Char))
		{
			OutDigits += Char;
		}
	}
	return OutDigits.Len() == 32;
}

uint32 ReadWord(const FString& Digits, int32 Word)
{
	uint32 Value = 0;
	for (int32 Index = 0; Index < 8; ++Index)
	{
		Value = Value * 16 + (uint32)FChar::ConvertCharDigitToInt(Digits[Word * 8 + Index]);
	}
	return Value;
}
} // namespace

FGuid FGuid::NewGuid()
{
	FGuid Result;
	FillRandom(&Result, sizeof(Result));
	Result.B = (Result.B & 0xFFFF0FFFu) | 0x00004000u;
	Result.C = (Result.C & 0x3FFFFFFFu) | 0x80000000u;
	return Result;
}

bool FGuid::Parse(const FString& Text, FGuid& OutGuid)
{
	FString Digits;
	if (!CollectDigits(Text, Digits))
	{
		return false;
	}
	const FGuid Result(ReadWord(Digits, 0), ReadWord(Digits, 1), ReadWord(Digits, 2), ReadWord(Digits, 3));
	for (int32 Format = 0; Format <= (int32)EGuidFormats::UniqueObjectGuid; ++Format)
	{
		if (Result.ToString((EGuidFormats)Format) == Text)
		{
			OutGuid = Result;
			return true;
		}
	}
	return false;
}

FString FGuid::ToString(EGuidFormats Format) const
{
	const uint32 B1 = B >> 16, B2 = B & 0xFFFF, C1 = C >> 16, C2 = C & 0xFFFF;
	switch (Format)
	{
	case EGuidFormats::DigitsLower:
		return FString::Printf(TEXT("%08x%08x%08x%08x"), A, B, C, D);
	case EGuidFormats::DigitsWithHyphens:
		return FString::Printf(TEXT("%08X-%04X-%04X-%04X-%04X%08X"), A, B1, B2, C1, C2, D);
	case EGuidFormats::DigitsWithHyphensLower:
		return FString::Printf(TEXT("%08x-%04x-%04x-%04x-%04x%08x"), A, B1, B2, C1, C2, D);
	case EGuidFormats::DigitsWithHyphensInBraces:
		return FString::Printf(TEXT("{%08X-%04X-%04X-%04X-%04X%08X}"), A, B1, B2, C1, C2, D);
	case EGuidFormats::DigitsWithHyphensInParentheses:
		return FString::Printf(TEXT("(%08X-%04X-%04X-%04X-%04X%08X)"), A, B1, B2, C1, C2, D);
	case EGuidFormats::UniqueObjectGuid:
		return FString::Printf(TEXT("%08X-%08X-%08X-%08X"), A, B, C, D);
	default:
		return FString::Printf(TEXT("%08X%08X%08X%08X"), A, B, C, D);
	}
}
