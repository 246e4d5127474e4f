#include "Providers/Anthropic/CVXAnthropicDelta.h"

namespace
{
/** The strings that differ from event to event. */
enum ERole : int32
{
	TextRole = 1,
	PartialJsonRole,
	ThinkingRole
};
} // namespace

bool FCVXAnthropicDelta::Read(const FString& Data)
{
	const auto ReadHole = [this](int32 Role, FCVXJsonCursor& Value) { return Value.ReadString(*StringOf(Role)); };
	if (Frame.Read(Data, ReadHole))
	{
		return true;
	}
	const bool bRead = ReadWhole(Data);
	bRead ? Frame.Keep(Data, Holes) : Frame.Forget();
	return bRead;
}

bool FCVXAnthropicDelta::ReadWhole(const FString& Data)
{
	Index = INDEX_NONE;
	Type = ECVXAnthropicDeltaType::Other;
	Text.Reset();
	PartialJson.Reset();
	Thinking.Reset();
	Holes.Reset();
	FCVXJsonCursor Json(Data);
	Json.NoteHoles(Holes);
	return Json.ReadObject([this, &Json](FStringView Name) { return ReadMember(Json, Name); }) && Json.IsAtEnd();
}

bool FCVXAnthropicDelta::ReadMember(FCVXJsonCursor& Json, FStringView Name)
{
	if (Name == TEXTVIEW("index"))
	{
		return Json.IsAtNumber() ? Json.ReadInteger(Index) : Json.SkipValue();
	}
	if (Name == TEXTVIEW("delta"))
	{
		return Json.IsAtObject() ? ReadDelta(Json) : Json.SkipValue();
	}
	return Json.IgnoreValue();
}

bool FCVXAnthropicDelta::ReadDelta(FCVXJsonCursor& Json)
{
	return Json.ReadObject([this, &Json](FStringView Name) { return ReadDeltaMember(Json, Name); });
}

bool FCVXAnthropicDelta::ReadDeltaMember(FCVXJsonCursor& Json, FStringView Name)
{
	if (Name == TEXTVIEW("type"))
	{
		return Json.IsAtString() ? ReadType(Json) : Json.SkipValue();
	}
	const int32 Role = Name == TEXTVIEW("text") ? TextRole
		: Name == TEXTVIEW("partial_json")      ? PartialJsonRole
		: Name == TEXTVIEW("thinking")          ? ThinkingRole
												: FCVXJsonHole::Ignored;
	return Role == FCVXJsonHole::Ignored ? Json.IgnoreValue() : ReadString(Json, Role);
}

bool FCVXAnthropicDelta::ReadString(FCVXJsonCursor& Json, int32 Role)
{
	return Json.IsAtString() ? Json.ReadString(StringOf(Role).Emplace(), Role) : Json.SkipValue();
}

TOptional<FString>& FCVXAnthropicDelta::StringOf(int32 Role)
{
	return Role == TextRole ? Text : Role == PartialJsonRole ? PartialJson : Thinking;
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
