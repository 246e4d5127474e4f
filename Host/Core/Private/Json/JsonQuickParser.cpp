#include "Json/JsonQuickParser.h"

#include "Json/JsonMemory.h"
#include "Json/JsonTreeBuilder.h"

#include <simdjson.h>

static_assert(JsonQuickParser::Padding >= simdjson::SIMDJSON_PADDING);

namespace
{
/** simdjson counts elements up to this only. */
constexpr SIZE_T CountLimit = 0xFFFFFF;

/** Documents up to this size are parsed in buffers that the thread keeps. */
constexpr int64 KeptBytes = 256 * 1024;

class FTreeWalk
{
public:
	explicit FTreeWalk(int64 Bytes)
		: Builder((SIZE_T)Bytes)
	{
	}

	/** @return null when the element is nested too deeply. */
	TSharedPtr<FJsonValue> Build(simdjson::dom::element Element, int32 Depth)
	{
		using simdjson::dom::element_type;
		switch (Element.type())
		{
		case element_type::STRING:
			return Builder.MakeString(Element.get_string().value_unsafe());
		case element_type::INT64:
			return Builder.Make((int64)Element.get_int64().value_unsafe());
		case element_type::UINT64:
			return Builder.Make((uint64)Element.get_uint64().value_unsafe());
		case element_type::DOUBLE:
			return Builder.Make(Element.get_double().value_unsafe());
		case element_type::BOOL:
			return Builder.Make(Element.get_bool().value_unsafe());
		case element_type::ARRAY:
			return BuildArray(Element.get_array().value_unsafe(), Depth);
		case element_type::OBJECT:
			return BuildObject(Element.get_object().value_unsafe(), Depth);
		default:
			return Builder.Make(EJson::Null);
		}
	}

private:
	TSharedPtr<FJsonValue> BuildArray(simdjson::dom::array Elements, int32 Depth)
	{
		TArray<TSharedPtr<FJsonValue>> Array;
		Array.Reserve((int32)Elements.size());
		for (const simdjson::dom::element Element : Elements)
		{
			TSharedPtr<FJsonValue> Value = Depth < JsonMaxDepth ? Build(Element, Depth + 1) : nullptr;
			if (!Value)
			{
				return nullptr;
			}
			Array.Add(MoveTemp(Value));
		}
		return Builder.Make(MoveTemp(Array));
	}

	TSharedPtr<FJsonValue> BuildObject(simdjson::dom::object Members, int32 Depth)
	{
		const SIZE_T Count = Members.size();
		// Past the limit the count isn't known; the object then grows as it is filled.
		TSharedPtr<FJsonObject> Object = Builder.MakeObject(Count < CountLimit ? (int32)Count : 0);
		for (const simdjson::dom::key_value_pair Member : Members)
		{
			TSharedPtr<FJsonValue> Value = Depth < JsonMaxDepth ? Build(Member.value, Depth + 1) : nullptr;
			if (!Value)
			{
				return nullptr;
			}
			Builder.SetMember(*Object, Member.key, MoveTemp(Value));
		}
		return Builder.Make(MoveTemp(Object));
	}

	FJsonTreeBuilder Builder;
};

bool ParseWith(simdjson::dom::parser& Parser, const ANSICHAR* Utf8, int64 Bytes, TSharedPtr<FJsonValue>& OutValue)
{
	simdjson::dom::element Root;
	if (Parser.parse(Utf8, (SIZE_T)Bytes, false).get(Root) != simdjson::SUCCESS)
	{
		return false;
	}
	TSharedPtr<FJsonValue> Value = FTreeWalk(Bytes).Build(Root, 1);
	if (!Value)
	{
		return false;
	}
	OutValue = MoveTemp(Value);
	return true;
}
}

bool JsonQuickParser::Parse(const ANSICHAR* Utf8, int64 Bytes, TSharedPtr<FJsonValue>& OutValue)
{
	if (Bytes <= KeptBytes)
	{
		static thread_local simdjson::dom::parser Kept;
		return ParseWith(Kept, Utf8, Bytes, OutValue);
	}
	simdjson::dom::parser Own;
	if (Own.allocate((SIZE_T)Bytes) != simdjson::SUCCESS)
	{
		return false;
	}
	// The parser makes room for the worst case, of which a document fills a part: about one word of tape and one index
	// for each 8 bytes.
	JsonMemory::PreferHugePages(Own.doc.tape.get(), (SIZE_T)Bytes);
	JsonMemory::PreferHugePages(Own.doc.string_buf.get(), (SIZE_T)Bytes);
	JsonMemory::PreferHugePages(Own.implementation->structural_indexes.get(), (SIZE_T)Bytes);
	return ParseWith(Own, Utf8, Bytes, OutValue);
}
