#include "Providers/OpenAI/CVXOpenAIDelta.h"

namespace
{
/** What differs from chunk to chunk. */
enum ERole : int32
{
	PromptRole = 1,
	CompletionRole,
	ReasoningRole,
	ContentRole
};

bool ReadText(FCVXJsonCursor& Json, FString& Out, int32 Role = FCVXJsonHole::Ignored)
{
	return Json.IsAtString() ? Json.ReadString(Out, Role) : Json.SkipValue();
}

bool ReadCount(FCVXJsonCursor& Json, TOptional<int32>& Out, int32 Role)
{
	return Json.IsAtNumber() ? Json.ReadInteger(Out.Emplace(), Role) : Json.SkipValue();
}

bool ReadFunction(FCVXJsonCursor& Json, FCVXOpenAICallDelta& Call)
{
	return Json.ReadObject(
		[&](FStringView Name)
		{
			if (Name == TEXTVIEW("name"))
			{
				return ReadText(Json, Call.Name);
			}
			return Name == TEXTVIEW("arguments") ? ReadText(Json, Call.Arguments) : Json.SkipValue();
		});
}

bool ReadCallMember(FCVXJsonCursor& Json, FStringView Name, FCVXOpenAICallDelta& Call)
{
	if (Name == TEXTVIEW("index") && Json.IsAtNumber())
	{
		return Json.ReadInteger(Call.Index);
	}
	if (Name == TEXTVIEW("id"))
	{
		return ReadText(Json, Call.Id);
	}
	return Name == TEXTVIEW("function") && Json.IsAtObject() ? ReadFunction(Json, Call) : Json.SkipValue();
}
} // namespace

bool FCVXOpenAIDelta::Read(const FString& Data)
{
	if (Frame.Read(Data, [this](int32 Role, FCVXJsonCursor& Value) { return ReadHole(Role, Value); }))
	{
		return true;
	}
	const bool bRead = ReadWhole(Data);
	const bool bLikeTheNext = bRead && bHasDelta && Calls.IsEmpty() && FinishReason.IsEmpty();
	bLikeTheNext ? Frame.Keep(Data, Holes) : Frame.Forget();
	return bRead;
}

bool FCVXOpenAIDelta::ReadHole(int32 Role, FCVXJsonCursor& Value)
{
	switch (Role)
	{
	case PromptRole:
		return Value.ReadInteger(PromptTokens.Emplace());
	case CompletionRole:
		return Value.ReadInteger(CompletionTokens.Emplace());
	case ReasoningRole:
		return Value.ReadString(Reasoning);
	default:
		return Value.ReadString(Content);
	}
}

bool FCVXOpenAIDelta::ReadWhole(const FString& Data)
{
	Reset();
	FCVXJsonCursor Json(Data);
	Json.NoteHoles(Holes);
	return Json.ReadObject([&](FStringView Name) { return ReadMember(Json, Name); }) && Json.IsAtEnd();
}

void FCVXOpenAIDelta::Reset()
{
	PromptTokens.Reset();
	CompletionTokens.Reset();
	bHasDelta = false;
	Reasoning.Reset();
	Content.Reset();
	Calls.Reset();
	FinishReason.Reset();
	Holes.Reset();
}

bool FCVXOpenAIDelta::ReadMember(FCVXJsonCursor& Json, FStringView Name)
{
	if (Name == TEXTVIEW("choices"))
	{
		return Json.IsAtArray() ? ReadChoices(Json) : Json.SkipValue();
	}
	if (Name == TEXTVIEW("usage"))
	{
		return Json.IsAtObject() ? ReadUsage(Json) : Json.SkipValue();
	}
	return Json.IgnoreValue();
}

bool FCVXOpenAIDelta::ReadUsage(FCVXJsonCursor& Json)
{
	return Json.ReadObject(
		[&](FStringView Name)
		{
			if (Name == TEXTVIEW("prompt_tokens"))
			{
				return ReadCount(Json, PromptTokens, PromptRole);
			}
			return Name == TEXTVIEW("completion_tokens") ? ReadCount(Json, CompletionTokens, CompletionRole)
														 : Json.IgnoreValue();
		});
}

bool FCVXOpenAIDelta::ReadChoices(FCVXJsonCursor& Json)
{
	bool bFirst = true;
	return Json.ReadArray(
		[&]
		{
			const bool bCounts = bFirst && Json.IsAtObject();
			bFirst = false;
			return bCounts ? ReadChoice(Json) : Json.SkipValue();
		});
}

bool FCVXOpenAIDelta::ReadChoice(FCVXJsonCursor& Json)
{
	return Json.ReadObject(
		[&](FStringView Name)
		{
			if (Name == TEXTVIEW("delta"))
			{
				return Json.IsAtObject() ? ReadDelta(Json) : Json.SkipValue();
			}
			return Name == TEXTVIEW("finish_reason") ? ReadText(Json, FinishReason) : Json.IgnoreValue();
		});
}

bool FCVXOpenAIDelta::ReadDelta(FCVXJsonCursor& Json)
{
	bHasDelta = true;
	return Json.ReadObject([&](FStringView Name) { return ReadDeltaMember(Json, Name); });
}

bool FCVXOpenAIDelta::ReadDeltaMember(FCVXJsonCursor& Json, FStringView Name)
{
	if (Name == TEXTVIEW("content"))
	{
		return ReadText(Json, Content, ContentRole);
	}
	if (Name == TEXTVIEW("reasoning_content"))
	{
		return ReadText(Json, Reasoning, ReasoningRole);
	}
	if (Name != TEXTVIEW("tool_calls"))
	{
		return Json.IgnoreValue();
	}
	return Json.IsAtArray() ? Json.ReadArray([&] { return Json.IsAtObject() ? ReadCall(Json) : Json.SkipValue(); })
							: Json.SkipValue();
}

bool FCVXOpenAIDelta::ReadCall(FCVXJsonCursor& Json)
{
	FCVXOpenAICallDelta& Call = Calls.AddDefaulted_GetRef();
	return Json.ReadObject([&](FStringView Name) { return ReadCallMember(Json, Name, Call); });
}
