#include "Providers/Anthropic/CVXAnthropicDelta.h"

#include "Core/CVXJsonCursor.h"

bool FCVXAnthropicDelta::Read(const FString& Data)
{
	Size = Data.Len();
	FCVXJsonCursor Json(Data);
	return Json.ReadObject([this, &Json](FStringView Name) { return ReadMember(Json, Name); }) && Json.IsAtEnd();
}

bool FCVXAnthropicDelta::ReadMember(FCVXJsonCursor& Json, FStringView Name)
{
	if (Name == TEXTVIEW("index") && Json.IsAtNumber())
	{
		return Json.ReadInteger(Index);
	}
	if (Name == TEXTVIEW("delta") && Json.IsAtObject())
	{
		return ReadDelta(Json);
	}
	return Json.SkipValue();
}

bool FCVXAnthropicDelta::ReadDelta(FCVXJsonCursor& Json)
{
	return Json.ReadObject([this, &Json](FStringView Name) { return ReadDeltaMember(Json, Name); });
}

bool FCVXAnthropicDelta::ReadDeltaMember(FCVXJsonCursor& Json, FStringView Name)
{
	if (!Json.IsAtString())
	{
		return Json.SkipValue();
	}
	if (Name == TEXTVIEW("text"))
	{
		return ReadText(Json);
	}
	if (Name == TEXTVIEW("partial_json"))
	{
		return Json.ReadString(PartialJson.Emplace());
	}
	if (Name == TEXTVIEW("thinking"))
	{
		return Json.ReadString(Thinking.Emplace());
	}
	return Name == TEXTVIEW("type") ? ReadType(Json) : Json.SkipValue();
}

bool FCVXAnthropicDelta::ReadText(FCVXJsonCursor& Json)
{
	TextStart = Size - Json.GetRest().Len();
	const bool bRead = Json.ReadString(Text.Emplace());
	TextEnd = Size - Json.GetRest().Len();
	return bRead;
}

bool FCVXAnthropicDelta::ReadType(FCVXJsonCursor& Json)
{
	FStringView Name;
	if (!Json.ReadString(Name))
	{
		return false;
	}
	Type = Name == TEXTVIEW("text_delta")      ? ECVXAnthropicDeltaType::Text
		: Name == TEXTVIEW("input_json_delta") ? ECVXAnthropicDeltaType::InputJson
		: Name == TEXTVIEW("thinking_delta")   ? ECVXAnthropicDeltaType::Thinking
											   : ECVXAnthropicDeltaType::Other;
	return true;
}
