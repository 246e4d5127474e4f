#include "Providers/Gemini/CVXGeminiDelta.h"

#include "Core/CVXJsonObject.h"
#include "Providers/CVXProviderJson.h"

namespace
{
/** What differs from chunk to chunk. */
enum ERole : int32
{
	PromptRole = 1,
	CandidatesRole,
	TextRole
};

bool ReadText(FCVXJsonCursor& Json, FString& Out, int32 Role = FCVXJsonHole::Ignored)
{
	return Json.IsAtString() ? Json.ReadString(Out, Role) : Json.SkipValue();
}

bool ReadCount(FCVXJsonCursor& Json, TOptional<int32>& Out, int32 Role)
{
	return Json.IsAtNumber() ? Json.ReadInteger(Out.Emplace(), Role) : Json.SkipValue();
}

/** @return the text without the blanks between its tokens; "{}" when it holds no object. */
FString Compact(FStringView Json)
{
	const TSharedPtr<FJsonObject> Object = CVXJsonObject::Parse(FString(Json));
	if (!Object)
	{
		return TEXT("{}");
	}
	FString Text;
	CVXProviderJson::FWriter Writer(Text);
	Writer.WriteValue(*Object);
	return Writer.Close() ? Text : TEXT("{}");
}

bool ReadArguments(FCVXJsonCursor& Json, FString& Out)
{
	const bool bObject = Json.IsAtObject();
	const FStringView Rest = Json.GetRest();
	if (!Json.SkipValue())
	{
		return false;
	}
	Out = bObject ? Compact(Rest.LeftChop(Json.GetRest().Len())) : FString(TEXT("{}"));
	return true;
}

bool ReadCall(FCVXJsonCursor& Json, FCVXGeminiPart& Part)
{
	Part.bIsCall = true;
	Part.CallArguments = TEXT("{}");
	return Json.ReadObject(
		[&](FStringView Name)
		{
			if (Name == TEXTVIEW("name"))
			{
				return ReadText(Json, Part.CallName);
			}
			return Name == TEXTVIEW("args") ? ReadArguments(Json, Part.CallArguments) : Json.SkipValue();
		});
}
} // namespace

bool FCVXGeminiDelta::Read(const FString& Data)
{
	if (Frame.Read(Data, [this](int32 Role, FCVXJsonCursor& Value) { return ReadHole(Role, Value); }))
	{
		return true;
	}
	const bool bRead = ReadWhole(Data);
	const bool bLikeTheNext = bRead && Parts.Num() == 1 && !Parts[0].bIsCall && FinishReason.IsEmpty();
	bLikeTheNext ? Frame.Keep(Data, Holes) : Frame.Forget();
	return bRead;
}

bool FCVXGeminiDelta::ReadHole(int32 Role, FCVXJsonCursor& Value)
{
	switch (Role)
	{
	case PromptRole:
		return Value.ReadInteger(PromptTokens.Emplace());
	case CandidatesRole:
		return Value.ReadInteger(CandidatesTokens.Emplace());
	default:
		return Value.ReadString(Parts[0].Text);
	}
}

bool FCVXGeminiDelta::ReadWhole(const FString& Data)
{
	PromptTokens.Reset();
	CandidatesTokens.Reset();
	Parts.Reset();
	FinishReason.Reset();
	Holes.Reset();
	FCVXJsonCursor Json(Data);
	Json.NoteHoles(Holes);
	return Json.ReadObject([&](FStringView Name) { return ReadMember(Json, Name); }) && Json.IsAtEnd();
}

bool FCVXGeminiDelta::ReadMember(FCVXJsonCursor& Json, FStringView Name)
{
	if (Name == TEXTVIEW("candidates"))
	{
		return Json.IsAtArray() ? ReadCandidates(Json) : Json.SkipValue();
	}
	if (Name == TEXTVIEW("usageMetadata"))
	{
		return Json.IsAtObject() ? ReadUsage(Json) : Json.SkipValue();
	}
	return Json.IgnoreValue();
}

bool FCVXGeminiDelta::ReadUsage(FCVXJsonCursor& Json)
{
	return Json.ReadObject(
		[&](FStringView Name)
		{
			if (Name == TEXTVIEW("promptTokenCount"))
			{
				return ReadCount(Json, PromptTokens, PromptRole);
			}
			return Name == TEXTVIEW("candidatesTokenCount") ? ReadCount(Json, CandidatesTokens, CandidatesRole)
															: Json.IgnoreValue();
		});
}

bool FCVXGeminiDelta::ReadCandidates(FCVXJsonCursor& Json)
{
	bool bFirst = true;
	return Json.ReadArray(
		[&]
		{
			const bool bCounts = bFirst && Json.IsAtObject();
			bFirst = false;
			return bCounts ? ReadCandidate(Json) : Json.SkipValue();
		});
}

bool FCVXGeminiDelta::ReadCandidate(FCVXJsonCursor& Json)
{
	return Json.ReadObject(
		[&](FStringView Name)
		{
			if (Name == TEXTVIEW("content"))
			{
				return Json.IsAtObject() ? ReadContent(Json) : Json.SkipValue();
			}
			return Name == TEXTVIEW("finishReason") ? ReadText(Json, FinishReason) : Json.IgnoreValue();
		});
}

bool FCVXGeminiDelta::ReadContent(FCVXJsonCursor& Json)
{
	return Json.ReadObject(
		[&](FStringView Name)
		{
			if (Name != TEXTVIEW("parts"))
			{
				return Json.IgnoreValue();
			}
			return Json.IsAtArray()
				? Json.ReadArray([&] { return Json.IsAtObject() ? ReadPart(Json) : Json.SkipValue(); })
				: Json.SkipValue();
		});
}

bool FCVXGeminiDelta::ReadPart(FCVXJsonCursor& Json)
{
	FCVXGeminiPart& Part = Parts.AddDefaulted_GetRef();
	return Json.ReadObject(
		[&](FStringView Name)
		{
			if (Name == TEXTVIEW("text"))
			{
				return ReadText(Json, Part.Text, TextRole);
			}
			if (Name != TEXTVIEW("functionCall"))
			{
				return Json.IgnoreValue();
			}
			return Json.IsAtObject() ? ReadCall(Json, Part) : Json.SkipValue();
		});
}
