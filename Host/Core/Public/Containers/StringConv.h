#pragma once

#include "Containers/ContainerAllocationPolicies.h"
#include "Containers/UnicodeConversion.h"

/** The UTF-8 form of a UTF-16 text, ended by a NUL. Lives as long as the object. A null source gives "". */
class FTCHARToUTF8
{
public:
	explicit FTCHARToUTF8(const TCHAR* Source);
	FTCHARToUTF8(const TCHAR* Source, int32 Len);
	template <typename StringType>
	requires requires(const StringType& String)
	{
		{
			String.Len()
			} -> std::same_as<int32>;
	}
	explicit FTCHARToUTF8(const StringType& String)
		: FTCHARToUTF8(String.GetData(), String.Len())
	{
	}

	const ANSICHAR* Get() const { return Storage.GetAllocation(); }
	/** Bytes, without the NUL. */
	int32 Length() const { return Count; }

private:
	TInlineAllocator<128>::ForElementType<ANSICHAR> Storage;
	int32 Count = 0;
};

/** The UTF-16 form of a UTF-8 text, ended by a NUL. Lives as long as the object. A null source gives "". */
class FUTF8ToTCHAR
{
public:
	explicit FUTF8ToTCHAR(const ANSICHAR* Source);
	FUTF8ToTCHAR(const ANSICHAR* Source, int32 Len);

	const TCHAR* Get() const { return Storage.GetAllocation(); }
	/** Code units, without the NUL. */
	int32 Length() const { return Count; }

private:
	TInlineAllocator<128>::ForElementType<TCHAR> Storage;
	int32 Count = 0;
};

using FTCHARToANSI = FTCHARToUTF8;
using FANSIToTCHAR = FUTF8ToTCHAR;

/** The results live to the end of the full expression. */
#define TCHAR_TO_UTF8(String) (FTCHARToUTF8(String).Get())
#define UTF8_TO_TCHAR(String) (FUTF8ToTCHAR((const ANSICHAR*)(String)).Get())
#define TCHAR_TO_ANSI(String) TCHAR_TO_UTF8(String)
#define ANSI_TO_TCHAR(String) UTF8_TO_TCHAR(String)
