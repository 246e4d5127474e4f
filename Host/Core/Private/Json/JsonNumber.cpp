#include "Json/JsonNumber.h"

#include "Containers/StringConv.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string>

namespace
{
template <typename T>
bool Read(const ANSICHAR* First, const ANSICHAR* Last, T& OutNumber)
{
	const auto [End, Error] = std::from_chars(First, Last, OutNumber);
	return Error == std::errc() && End == Last;
}

bool ReadDouble(const ANSICHAR* First, const ANSICHAR* Last, double& OutNumber)
{
	const auto [End, Error] = std::from_chars(First, Last, OutNumber);
	if (Error != std::errc::result_out_of_range)
	{
		return Error == std::errc() && End == Last;
	}
	// Too small reads as the nearest number, which is 0 or below all normal ones; too large is refused.
	OutNumber = std::strtod(std::string(First, Last).c_str(), nullptr);
	return End == Last && std::isfinite(OutNumber);
}
}

int32 JsonNumber::Write(double Number, ANSICHAR* Out)
{
	if (!std::isfinite(Number))
	{
		FMemory::Memcpy(Out, "null", 4);
		return 4;
	}
	const double Size = std::fabs(Number);
	const bool bPlain = Size == 0 || (Size >= 1e-6 && Size < 1e21);
	const auto Format = bPlain ? std::chars_format::fixed : std::chars_format::scientific;
	return (int32)(std::to_chars(Out, Out + MaxChars, Number, Format).ptr - Out);
}

int32 JsonNumber::Write(int64 Number, ANSICHAR* Out)
{
	return (int32)(std::to_chars(Out, Out + MaxChars, Number).ptr - Out);
}

int32 JsonNumber::Write(uint64 Number, ANSICHAR* Out)
{
	return (int32)(std::to_chars(Out, Out + MaxChars, Number).ptr - Out);
}

TSharedPtr<FJsonValue> JsonNumber::Make(const ANSICHAR* First, const ANSICHAR* Last, bool bWhole)
{
	int64 Signed = 0;
	if (bWhole && Read(First, Last, Signed))
	{
		return MakeShared<FJsonValueNumber>(Signed);
	}
	uint64 Unsigned = 0;
	if (bWhole && Read(First, Last, Unsigned))
	{
		return MakeShared<FJsonValueNumber>(Unsigned);
	}
	double Double = 0;
	if (!bWhole && ReadDouble(First, Last, Double))
	{
		return MakeShared<FJsonValueNumber>(Double);
	}
	return MakeShared<FJsonValueNumberString>(FString::FromUtf8(First, Last - First));
}

bool JsonNumber::ToDouble(FStringView Text, double& OutNumber)
{
	const FTCHARToUTF8 Utf8(Text.GetData(), Text.Len());
	return ReadDouble(Utf8.Get(), Utf8.Get() + Utf8.Length(), OutNumber);
}
