#pragma once

#include "Containers/Array.h"
#include "Containers/UnrealString.h"

/** Base64 with the standard alphabet and padding (RFC 4648, section 4). Any thread. */
struct FBase64
{
	static FString Encode(const uint8* Source, uint32 Length);
	static FString Encode(const TArray<uint8>& Source) { return Encode(Source.GetData(), (uint32)Source.Num()); }
	/** The text's UTF-8 form, encoded. */
	static FString Encode(const FString& Source);

	/** @return false, and an empty result, for a text with another character, a wrong length or wrong padding. */
	static bool Decode(FStringView Source, TArray<uint8>& OutDest);
	static bool Decode(FStringView Source, FString& OutDest);

	static constexpr uint32 GetEncodedDataSize(uint32 Bytes) { return (Bytes + 2) / 3 * 4; }
};
