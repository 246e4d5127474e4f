#include "Containers/StringConv.h"

#include <string>

FTCHARToUTF8::FTCHARToUTF8(const TCHAR* Source)
	: FTCHARToUTF8(Source, Source ? (int32)std::char_traits<TCHAR>::length(Source) : 0)
{
}

FTCHARToUTF8::FTCHARToUTF8(const TCHAR* Source, int32 Len)
{
	const int64 Bytes = Unicode::Utf16ToUtf8Length(Source, Len);
	check(Bytes < MAX_int32);
	Storage.Resize(0, (int32)Bytes + 1);
	Count = (int32)Unicode::Utf16ToUtf8(Source, Len, Storage.GetAllocation());
	Storage.GetAllocation()[Count] = 0;
}

FUTF8ToTCHAR::FUTF8ToTCHAR(const ANSICHAR* Source)
	: FUTF8ToTCHAR(Source, Source ? (int32)std::strlen(Source) : 0)
{
}

FUTF8ToTCHAR::FUTF8ToTCHAR(const ANSICHAR* Source, int32 Len)
{
	Storage.Resize(0, Len + 1);
	Count = (int32)Unicode::Utf8ToUtf16(Source, Len, Storage.GetAllocation());
	Storage.GetAllocation()[Count] = 0;
}
