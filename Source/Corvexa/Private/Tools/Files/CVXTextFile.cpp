#include "Tools/Files/CVXTextFile.h"

#include "Containers/StringConv.h"
#include "Misc/FileHelper.h"

namespace
{
bool StartsWith(const TArray<uint8>& Bytes, std::initializer_list<uint8> Mark)
{
	return Bytes.Num() >= (int32)Mark.size() && FMemory::Memcmp(Bytes.GetData(), Mark.begin(), Mark.size()) == 0;
}

/** Whether the text, written as UTF-8, gives these bytes again. */
bool IsUtf8Of(const FString& Text, const TArray<uint8>& Bytes)
{
	const FTCHARToUTF8 Again(*Text, Text.Len());
	return Again.Length() == Bytes.Num() && FMemory::Memcmp(Again.Get(), Bytes.GetData(), Bytes.Num()) == 0;
}

ECVXTextEncoding FindEncoding(const TArray<uint8>& Bytes, const FString& Text)
{
	if (StartsWith(Bytes, {0xEF, 0xBB, 0xBF}))
	{
		return ECVXTextEncoding::Utf8WithMark;
	}
	if (StartsWith(Bytes, {0xFF, 0xFE}))
	{
		return ECVXTextEncoding::Utf16LittleEndian;
	}
	if (StartsWith(Bytes, {0xFE, 0xFF}))
	{
		return ECVXTextEncoding::Utf16BigEndian;
	}
	return IsUtf8Of(Text, Bytes) ? ECVXTextEncoding::Utf8 : ECVXTextEncoding::SingleByte;
}

void WidenBytes(const TArray<uint8>& Bytes, FString& OutText)
{
	OutText.Reset();
	OutText.Reserve(Bytes.Num());
	for (const uint8 Byte : Bytes)
	{
		OutText.AppendChar((TCHAR)Byte);
	}
}

/** @return false when a character doesn't fit. */
bool NarrowBytes(const FString& Text, TArray<uint8>& OutBytes)
{
	OutBytes.Reserve(Text.Len());
	for (const TCHAR Char : Text)
	{
		if (Char > 0xFF)
		{
			return false;
		}
		OutBytes.Add((uint8)Char);
	}
	return true;
}

void PutBigEndian(const FString& Text, TArray<uint8>& OutBytes)
{
	OutBytes.Reserve(2 + Text.Len() * 2);
	OutBytes.Append({0xFE, 0xFF});
	for (const TCHAR Char : Text)
	{
		OutBytes.Add((uint8)(Char >> 8));
		OutBytes.Add((uint8)(Char & 0xFF));
	}
}
} // namespace

bool CVXTextFile::Load(const FString& Path, FString& OutText, ECVXTextEncoding& OutEncoding)
{
	TArray<uint8> Bytes;
	if (!FFileHelper::LoadFileToArray(Bytes, *Path))
	{
		return false;
	}
	FFileHelper::BufferToString(OutText, Bytes.GetData(), Bytes.Num());
	OutEncoding = FindEncoding(Bytes, OutText);
	if (OutEncoding == ECVXTextEncoding::SingleByte)
	{
		WidenBytes(Bytes, OutText);
	}
	return true;
}

bool CVXTextFile::Save(const FString& Path, const FString& Text, ECVXTextEncoding Encoding)
{
	using EOptions = FFileHelper::EEncodingOptions;
	TArray<uint8> Bytes;
	switch (Encoding)
	{
	case ECVXTextEncoding::Utf8WithMark:
		return FFileHelper::SaveStringToFile(Text, *Path, EOptions::ForceUTF8);
	case ECVXTextEncoding::Utf16LittleEndian:
		return FFileHelper::SaveStringToFile(Text, *Path, EOptions::ForceUnicode);
	case ECVXTextEncoding::Utf16BigEndian:
		PutBigEndian(Text, Bytes);
		return FFileHelper::SaveArrayToFile(Bytes, *Path);
	case ECVXTextEncoding::SingleByte:
		return NarrowBytes(Text, Bytes) && FFileHelper::SaveArrayToFile(Bytes, *Path);
	default:
		return FFileHelper::SaveStringToFile(Text, *Path, EOptions::ForceUTF8WithoutBOM);
	}
}

int32 CVXTextFile::Utf8Length(const FString& Text)
{
	return FTCHARToUTF8(*Text, Text.Len()).Length();
}
