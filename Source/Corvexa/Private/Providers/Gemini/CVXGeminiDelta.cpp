#include "Providers/Gemini/CVXGeminiDelta.h"

#include "Core/CVXJsonCursor.h"
#include "Core/CVXJsonObject.h"
#include "Providers/CVXProviderJson.h"

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
	FCVXJsonCursor Json(Data);
	return Json.ReadObject([&](FStringView Name) { return ReadMember(Json, Name); }) && Json.IsAtEnd();
}

bool FCVXGeminiDelta::ReadMember(FCVXJsonCursor& Json, FStringView Name)
{
	if (Name == TEXTVIEW("candidates") && Json.IsAtArray())
	{
		return ReadCandidates(Json);
	}
	return Name == TEXTVIEW("usageMetadata") && Json.IsAtObject() ? ReadUsage(Json) : Json.SkipValue();
}

bool FCVXGeminiDelta::ReadUsage(FCVXJsonCursor& Json)
{
	return Json.ReadObject(
		[&](FStringView Name)
		{
			if (Name == TEXTVIEW("promptTokenCount"))
			{
				return ReadCount(Json, PromptTokens);
			}
			return Name == TEXTVIEW("candidatesTokenCount") ? ReadCount(Json, CandidatesTokens) : Json.SkipValue();
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
			if (Name == TEXTVIEW("content") && Json.IsAtObject())
			{
				return ReadContent(Json);
			}
			return Name == TEXTVIEW("finishReason") ? ReadText(Json, FinishReason) : Json.SkipValue();
		});
}

bool FCVXGeminiDelta::ReadContent(FCVXJsonCursor& Json)
{
	return Json.ReadObject(
		[&](FStringView Name)
		{
			if (Name != TEXTVIEW("parts") || !Json.IsAtArray())
			{
				return Json.SkipValue();
			}
			return Json.ReadArray([&] { return Json.IsAtObject() ? ReadPart(Json) : Json.SkipValue(); });
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
				return ReadText(Json, Part.Text);
			}
			return Name == TEXTVIEW("functionCall") && Json.IsAtObject() ? ReadCall(Json, Part) : Json.SkipValue();
		});
}
