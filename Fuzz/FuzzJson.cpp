#include "Policies/CondensedJsonPrintPolicy.h"
#include "Serialization/JsonSerializer.h"

#include <cstddef>
#include <cstdint>

/** What reads once reads again from its own text, pretty or condensed, as an equal value. */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size)
{
	FJsonReader Reader((const ANSICHAR*)Data, (int64)Size);
	TSharedPtr<FJsonValue> Value;
	if (!Reader.Read(Value))
	{
		check(!Value.IsValid() && Reader.GetErrorMessage().Contains(TEXT("Line: ")));
		return 0;
	}
	for (const bool bPretty : {false, true})
	{
		FString Text;
		FJsonTextWriter Writer(Text, bPretty);
		check(FJsonSerializer::Serialize(Value, FString(), Writer));
		TSharedPtr<FJsonValue> Again;
		check(FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(Text), Again));
		check(FJsonValue::CompareEqual(*Value, *Again));
	}
	check(FJsonValue::CompareEqual(*Value, *FJsonValue::Duplicate(Value)));
	return 0;
}
