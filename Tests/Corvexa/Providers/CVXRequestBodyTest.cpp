#include "Providers/Anthropic/CVXAnthropicBody.h"
#include "Providers/Gemini/CVXGeminiBody.h"
#include "Providers/OpenAI/CVXOpenAIBody.h"
#include "Providers/OpenAI/CVXOpenAIMessages.h"
#include "Support/GoldenText.h"
#include "Support/HostTypePrinting.h"
#include "Support/LogCapture.h"

#include <gtest/gtest.h>

#include <random>

namespace
{
FCVXMessage Say(ECVXMessageRole Role, std::initializer_list<FCVXContentBlock> Blocks)
{
	FCVXMessage Message;
	Message.Role = Role;
	Message.Content = Blocks;
	return Message;
}

FCVXMessage User(std::initializer_list<FCVXContentBlock> Blocks)
{
	return Say(ECVXMessageRole::User, Blocks);
}

FCVXMessage Assistant(std::initializer_list<FCVXContentBlock> Blocks, const TCHAR* Reasoning = TEXT(""))
{
	FCVXMessage Message = Say(ECVXMessageRole::Assistant, Blocks);
	Message.ReasoningContent = Reasoning;
	return Message;
}

FCVXMessage Tool(std::initializer_list<FCVXContentBlock> Blocks)
{
	return Say(ECVXMessageRole::Tool, Blocks);
}

FCVXContentBlock Text(const TCHAR* Value)
{
	FCVXContentBlock Block;
	Block.Type = TEXT("text");
	Block.Text = Value;
	return Block;
}

FCVXContentBlock Use(const TCHAR* Id, const TCHAR* Name, const TCHAR* Input)
{
	FCVXContentBlock Block;
	Block.Type = TEXT("tool_use");
	Block.ToolUseId = Id;
	Block.ToolName = Name;
	Block.InputJson = Input;
	return Block;
}

FCVXContentBlock Result(const TCHAR* Id, const TCHAR* Name, const TCHAR* Content, bool bIsError = false)
{
	FCVXContentBlock Block;
	Block.Type = TEXT("tool_result");
	Block.ToolUseId = Id;
	Block.ToolName = Name;
	Block.ToolResultContent = Content;
	Block.bIsError = bIsError;
	return Block;
}

FCVXContentBlock Image(const TCHAR* Base64, const TCHAR* MediaType = TEXT(""))
{
	FCVXContentBlock Block;
	Block.Type = TEXT("image");
	Block.ImageBase64 = Base64;
	Block.ImageMediaType = MediaType;
	return Block;
}

FCVXContentBlock Renamed(FCVXContentBlock Block, const TCHAR* Type)
{
	Block.Type = Type;
	return Block;
}

struct FCase
{
	const char* Name;
	FCVXProviderRequest Request;
};

FCVXProviderRequest WithTools()
{
	FCVXProviderRequest Request;
	Request.SystemPrompt = TEXT("Use tools.");
	Request.Tools.Add({TEXT("read_file"), TEXT("Reads \"a\" file."),
		TEXT("{\"type\": \"object\", \"properties\": {\"z\": {\"type\": \"string\"}, \"a\": {\"minimum\": 0.5}}}")});
	Request.Tools.Add({TEXT("no_schema"), TEXT(""), TEXT("not json")});
	Request.Tools.Add({TEXT("list_schema"), TEXT("Has a list."), TEXT("[1]")});
	Request.Messages = {
		User({Text(TEXT("Go"))}),
		Assistant({Text(TEXT("First ")), Use(TEXT("c1"), TEXT("read_file"), TEXT("{\"z\": 1, \"a\": [1.5, null]}")),
					  Text(TEXT("second")), Renamed(Use(TEXT("c2"), TEXT("odd"), TEXT("not json")), TEXT("TOOL_USE"))},
			TEXT("I think")),
		Tool({Result(TEXT("c1"), TEXT("read_file"), TEXT("line\nline")),
			Result(TEXT("c2"), TEXT("odd"), TEXT("bad"), true), Text(TEXT("beside")), Image(TEXT("QUJD"))}),
		Assistant({Use(TEXT("c3"), TEXT("odd"), TEXT("[1]")), Use(TEXT("c4"), TEXT("odd"), TEXT(""))}),
		Tool({Result(TEXT("c3"), TEXT("odd"), TEXT(""))}),
		Tool({Result(TEXT("c4"), TEXT("odd"), TEXT("{}"))}),
	};
	return Request;
}

TArray<FCase> MakeCases()
{
	TArray<FCase> Cases;
	Cases.Add({"empty", {}});
	Cases.Add({"talk", {}});
	Cases.Last().Request.SystemPrompt = TEXT("Be brief.\tÄ 😀");
	Cases.Last().Request.Messages = {
		Say(ECVXMessageRole::System, {Text(TEXT("never sent"))}),
		User({Text(TEXT("hä\n\"x\" \\ /"))}),
		Assistant({Text(TEXT("one")), Text(TEXT("two"))}, TEXT("hm")),
		User({}),
		User({Renamed(Text(TEXT("upper")), TEXT("TEXT"))}),
		Tool({Text(TEXT("as a user"))}),
		Assistant({Renamed(Text(TEXT("?")), TEXT("unheard_of"))}),
	};
	Cases.Add({"tools", WithTools()});
	Cases.Add({"images", {}});
	Cases.Last().Request.Messages = {
		User({Text(TEXT("see")), Image(TEXT("QUJD")), Text(TEXT("")), Image(TEXT("")),
			Image(TEXT("RA=="), TEXT("image/jpeg"))}),
		Assistant({Renamed(Image(TEXT("RQ==")), TEXT("Image"))}, TEXT("seen")),
		User({Image(TEXT(""))}),
		User({Use(TEXT("c1"), TEXT("of_a_user"), TEXT("{}")), Text(TEXT("not a call"))}),
	};
	Cases.Add({"orphans", {}});
	Cases.Last().Request.Messages = {
		User({Text(TEXT("Go"))}),
		Assistant({Text(TEXT("gone with its calls")), Use(TEXT("c1"), TEXT("t"), TEXT("{}")),
			Use(TEXT("c2"), TEXT("t"), TEXT("{}"))}),
		Tool({Result(TEXT("c1"), TEXT("t"), TEXT("gone too"))}),
		Tool({Result(TEXT("stray"), TEXT("t"), TEXT("gone as well"))}),
		Assistant({Use(TEXT("c3"), TEXT("t"), TEXT("{}"))}),
		Tool({Result(TEXT("c3"), TEXT("t"), TEXT("kept"))}),
	};
	Cases.Add({"places", {}});
	Cases.Last().Request.Messages = {
		Tool({Result(TEXT("early"), TEXT("t"), TEXT("before its call"))}),
		Assistant({Use(TEXT("c1"), TEXT("t"), TEXT("{}")), Use(TEXT("c2"), TEXT("t"), TEXT("{}"))}),
		User({Text(TEXT("between"))}),
		Tool({Result(TEXT("c2"), TEXT("t"), TEXT("second")), Result(TEXT("stray"), TEXT("t"), TEXT("stays"))}),
		Assistant({Use(TEXT("early"), TEXT("t"), TEXT("{}")), Use(TEXT("c3"), TEXT("t"), TEXT("{}"))}),
		Tool({Result(TEXT("c3"), TEXT("t"), TEXT("older"))}),
		Tool({Result(TEXT("c3"), TEXT("t"), TEXT("newer"))}),
		Tool({Result(TEXT("c1"), TEXT("t"), TEXT("first"))}),
	};
	return Cases;
}

std::string ToUtf8(const FString& Value)
{
	return TCHAR_TO_UTF8(*Value);
}
} // namespace

TEST(CVXRequestBody, IsWhatWasRecordedInEveryDialect)
{
	using FBuild = FString (*)(const FCVXProviderProfile&, const FCVXProviderRequest&);
	const std::pair<const char*, FBuild> Dialects[] = {
		{"Anthropic", CVXAnthropic::BuildBody},
		{"OpenAI", CVXOpenAI::BuildBody},
		{"Gemini", CVXGemini::BuildBody},
	};
	FCVXProviderProfile Profile;
	Profile.ModelId = TEXT("model-1");
	Profile.Temperature = 0.7f;
	Profile.MaxTokens = 4096;
	const FGoldenText Golden(CORVEXA_TEST_DATA_DIR);
	for (const FCase& Case : MakeCases())
	{
		for (const auto& [Dialect, Build] : Dialects)
		{
			const std::string Name = std::string("Providers/Golden/") + Dialect + "/" + Case.Name + ".json";
			EXPECT_TRUE(Golden.Matches(Name, FGoldenText::JsonLines(ToUtf8(Build(Profile, Case.Request)))));
		}
	}
}

TEST(CVXRequestBody, TheOutputLimitIsNamedAsTheServerKnowsIt)
{
	const std::pair<const TCHAR*, const TCHAR*> Cases[] = {
		{TEXT(""), TEXT("\"max_completion_tokens\":4096,")},
		{TEXT("https://API.OpenAI.com/v1"), TEXT("\"max_completion_tokens\":4096,")},
		{TEXT("http://localhost:1234/v1"), TEXT("\"max_tokens\":4096,")},
		{TEXT("https://openrouter.ai/api/v1"), TEXT("\"max_tokens\":4096,")},
	};
	for (const auto& [BaseURL, Member] : Cases)
	{
		FCVXProviderProfile Profile;
		Profile.BaseURL = BaseURL;
		Profile.MaxTokens = 4096;
		EXPECT_TRUE(CVXOpenAI::BuildBody(Profile, {}).Contains(Member, ESearchCase::CaseSensitive))
			<< ToUtf8(Profile.BaseURL);
	}
}

TEST(CVXRequestBody, WhatWasRepairedIsLogged)
{
	const FLogCapture Log;
	for (const FCase& Case : MakeCases())
	{
		CVXOpenAI::ArrangeMessages(Case.Request.Messages);
	}
	EXPECT_EQ(Log.Count(TEXT("Pairing guard: removing 1 assistant messages with orphaned tool_calls"),
				  ELogVerbosity::Warning),
		1);
	EXPECT_EQ(
		Log.Count(TEXT("Adjacency repair: relocated 4 tool messages to follow their assistant"), ELogVerbosity::Log),
		2);
}

TEST(CVXRequestBody, WhateverTheHistoryEveryCallIsAnsweredRightBehindItsMessage)
{
	std::mt19937 Random(5);
	for (int32 Round = 0; Round < 2000; ++Round)
	{
		const bool bUniqueIds = Round % 2 == 0;
		TArray<FCVXMessage> Messages;
		int32 NextCall = 0;
		int32 NextResult = 0;
		const auto Id = [&](int32& Next) { return FString::FromInt(bUniqueIds ? Next++ : (int32)(Random() % 6)); };
		for (uint32 Left = Random() % 12; Left > 0; --Left)
		{
			const bool bCalls = Random() % 2 == 0;
			FCVXMessage Message = bCalls ? Assistant({}) : Tool({});
			for (uint32 Blocks = Random() % 4; Blocks > 0; --Blocks)
			{
				Message.Content.Add(
					bCalls ? Use(*Id(NextCall), TEXT("t"), TEXT("{}")) : Result(*Id(NextResult), TEXT("t"), TEXT("r")));
			}
			Messages.Add(Message);
		}
		const TArray<FCVXOpenAIMessage> Arranged = CVXOpenAI::ArrangeMessages(Messages);
		TSet<FString> Answered;
		for (int32 Index = 0; Index < Arranged.Num(); ++Index)
		{
			if (Arranged[Index].Form != ECVXOpenAIForm::ToolCalls)
			{
				continue;
			}
			int32 Next = Index + 1;
			for (const FCVXContentBlock& Call : Arranged[Index].Source->Content)
			{
				if (Answered.Contains(Call.ToolUseId))
				{
					continue;
				}
				Answered.Add(Call.ToolUseId);
				ASSERT_LT(Next, Arranged.Num()) << "round " << Round;
				ASSERT_TRUE(Arranged[Next].Result) << "round " << Round;
				ASSERT_EQ(Arranged[Next++].Result->ToolUseId, Call.ToolUseId) << "round " << Round;
			}
		}
	}
}
