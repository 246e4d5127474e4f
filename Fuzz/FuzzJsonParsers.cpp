#include "Json/JsonQuickParser.h"
#include "Json/JsonTextParser.h"

#include <cstddef>
#include <cstdint>
#include <string>

/** What the quick parser reads, the careful one reads as an equal value. */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size)
{
	std::string Text((const char*)Data, Size);
	Text.append(JsonQuickParser::Padding, '\0');
	TSharedPtr<FJsonValue> Quick;
	if (JsonQuickParser::Parse(Text.data(), (int64)Size, Quick))
	{
		TSharedPtr<FJsonValue> Careful;
		check(FJsonTextParser(Text.data(), (int64)Size).Parse(Careful));
		check(FJsonValue::CompareEqual(*Quick, *Careful));
	}
	return 0;
}
