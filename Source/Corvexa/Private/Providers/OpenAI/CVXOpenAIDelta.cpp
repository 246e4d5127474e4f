#include "Providers/OpenAI/CVXOpenAIDelta.h"

#include "Core/CVXJsonCursor.h"

namespace
{
bool ReadText(FCVXJsonCursor& Json, FString& Out)
{
	return Json.IsAtString() ? Json.ReadString(Out) : Json.SkipValue();
}

bool ReadCount(FCVXJsonCursor& Json, TOptional<int32>& Out)
{
	return Json.IsAtNumber() ? Json.ReadInteger(Out.Emplace()) : Json.SkipValue();
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
	Size = Data.Len();
	FCVXJsonCursor Json(Data);
	return Json.ReadObject([&](FStringView Name) { return ReadMember(Json, Name); }) && Json.IsAtEnd();
}

bool FCVXOpenAIDelta::IsPlain() const
{
	return Calls.IsEmpty() && FinishReason.IsEmpty() && !PromptTokens.IsSet() && !CompletionTokens.IsSet();
}

bool FCVXOpenAIDelta::ReadMember(FCVXJsonCursor& Json, FStringView Name)
{
	if (Name == TEXTVIEW("choices") && Json.IsAtArray())
	{
		return ReadChoices(Json);
	}
	return Name == TEXTVIEW("usage") && Json.IsAtObject() ? ReadUsage(Json) : Json.SkipValue();
}

bool FCVXOpenAIDelta::ReadUsage(FCVXJsonCursor& Json)
{
	return Json.ReadObject(
		[&](FStringView Name)
		{
			if (Name == TEXTVIEW("prompt_tokens"))
			{
				return ReadCount(Json, PromptTokens);
			}
			return Name == TEXTVIEW("completion_tokens") ? ReadCount(Json, CompletionTokens) : Json.SkipValue();
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
			if (Name == TEXTVIEW("delta") && Json.IsAtObject())
			{
				return ReadDelta(Json);
			}
			return Name == TEXTVIEW("finish_reason") ? ReadText(Json, FinishReason) : Json.SkipValue();
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
		return ReadString(Json, Content);
	}
	if (Name == TEXTVIEW("reasoning_content"))
	{
		return ReadString(Json, Reasoning);
	}
	if (Name == TEXTVIEW("tool_calls") && Json.IsAtArray())
	{
		return Json.ReadArray([&] { return Json.IsAtObject() ? ReadCall(Json) : Json.SkipValue(); });
	}
	return Json.SkipValue();
}

bool FCVXOpenAIDelta::ReadString(FCVXJsonCursor& Json, FCVXOpenAIString& Out) const
{
	if (!Json.IsAtString())
	{
		return Json.SkipValue();
	}
	Out.Start = Size - Json.GetRest().Len();
	const bool bRead = Json.ReadString(Out.Text);
	Out.End = Size - Json.GetRest().Len();
	return bRead;
}

bool FCVXOpenAIDelta::ReadCall(FCVXJsonCursor& Json)
{
	FCVXOpenAICallDelta& Call = Calls.AddDefaulted_GetRef();
	return Json.ReadObject([&](FStringView Name) { return ReadCallMember(Json, Name, Call); });
}
