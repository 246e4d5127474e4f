#include "Providers/Anthropic/CVXAnthropicDelta.h"
#include "Providers/Gemini/CVXGeminiDelta.h"
#include "Providers/OpenAI/CVXOpenAIDelta.h"
#include "Support/HostTypePrinting.h"

#include <gtest/gtest.h>

namespace
{
FString Describe(const FCVXAnthropicDelta& Delta)
{
	return FString::Printf(TEXT("%d %d %s|%s|%s"), Delta.Index, (int32)Delta.Type, *Delta.Text.Get(TEXT("-")),
		*Delta.PartialJson.Get(TEXT("-")), *Delta.Thinking.Get(TEXT("-")));
}

FString Describe(const FCVXOpenAIDelta& Delta)
{
	return FString::Printf(TEXT("%d %d %d %s|%s|%d %s"), Delta.PromptTokens.Get(-1), Delta.CompletionTokens.Get(-1),
		Delta.bHasDelta ? 1 : 0, *Delta.Reasoning, *Delta.Content, Delta.Calls.Num(), *Delta.FinishReason);
}

FString Describe(const FCVXGeminiDelta& Delta)
{
	FString Text = FString::Printf(
		TEXT("%d %d %s"), Delta.PromptTokens.Get(-1), Delta.CandidatesTokens.Get(-1), *Delta.FinishReason);
	for (const FCVXGeminiPart& Part : Delta.Parts)
	{
		Text += TEXT("|") + Part.Text + TEXT(" ") + Part.CallName + TEXT(" ") + Part.CallArguments;
	}
	return Text;
}

/** Reads every ordered pair of the events with one reader, whose second event must tell what it tells alone. */
template <typename DeltaType>
void ExpectNothingLeftOfTheLast(const TArray<FString>& Events)
{
	for (const FString& First : Events)
	{
		for (const FString& Second : Events)
		{
			DeltaType Used;
			DeltaType Fresh;
			Used.Read(First);
			const bool bReads = Fresh.Read(Second);
			ASSERT_EQ(Used.Read(Second), bReads) << TCHAR_TO_UTF8(*(First + TEXT(" then ") + Second));
			if (bReads)
			{
				EXPECT_EQ(Describe(Used), Describe(Fresh)) << TCHAR_TO_UTF8(*(First + TEXT(" then ") + Second));
			}
		}
	}
}
} // namespace

TEST(CVXDelta, AnEventTellsTheSameWhateverCameBeforeIt)
{
	ExpectNothingLeftOfTheLast<FCVXAnthropicDelta>({
		TEXT("{\"index\":0,\"delta\":{\"type\":\"text_delta\",\"text\":\"a\"}}"),
		TEXT("{\"index\":0,\"delta\":{\"type\":\"text_delta\",\"text\":\"b\\n\"}}"),
		TEXT("{\"index\":1,\"delta\":{\"type\":\"text_delta\",\"text\":\"b\"}}"),
		TEXT("{\"index\":0,\"delta\":{\"type\":\"text_delta\",\"text\":null}}"),
		TEXT("{\"index\":0,\"delta\":{\"type\":\"other_delta\",\"text\":\"a\"}}"),
		TEXT("{\"index\":0,\"delta\":{\"type\":\"input_json_delta\",\"partial_json\":\"{\"}}"),
		TEXT("{\"index\":0,\"delta\":{\"type\":\"input_json_delta\",\"partial_json\":\"}\"}}"),
		TEXT("{\"index\":0,\"delta\":{\"type\":\"thinking_delta\",\"thinking\":\"x\",\"sig\":1}}"),
		TEXT("{\"index\":0,\"delta\":{\"type\":\"thinking_delta\",\"thinking\":\"y\",\"sig\":[{}]}}"),
		TEXT("{\"index\":0,\"delta\":\"none\"}"),
		TEXT("{\"index\":0,\"delta\":{\"type\":\"text_delta\",\"text\":\"a\"}"),
		TEXT("[]"),
	});
	ExpectNothingLeftOfTheLast<FCVXOpenAIDelta>({
		TEXT("{\"choices\":[{\"delta\":{\"content\":\"a\"},\"finish_reason\":null}],\"pad\":\"x\"}"),
		TEXT("{\"choices\":[{\"delta\":{\"content\":\"b\"},\"finish_reason\":null}],\"pad\":\"xyz\"}"),
		TEXT("{\"choices\":[{\"delta\":{\"content\":\"b\"},\"finish_reason\":\"stop\"}],\"pad\":\"xyz\"}"),
		TEXT("{\"choices\":[{\"delta\":{\"content\":\"b\"},\"finish_reason\":\"\"}],\"pad\":\"xyz\"}"),
		TEXT("{\"choices\":[{\"delta\":{\"content\":null},\"finish_reason\":null}],\"pad\":\"x\"}"),
		TEXT("{\"choices\":[{\"delta\":{\"content\":\"\",\"reasoning_content\":\"r\"}}]}"),
		TEXT("{\"choices\":[{\"delta\":{\"content\":\"c\",\"reasoning_content\":\"\"}}]}"),
		TEXT("{\"choices\":[{\"delta\":{\"content\":\"a\",\"content\":\"b\"}}]}"),
		TEXT("{\"choices\":[{\"delta\":{\"content\":\"c\",\"content\":\"d\"}}]}"),
		TEXT("{\"choices\":[{\"delta\":{\"content\":\"a\"}},{\"delta\":{\"content\":\"other\"}}]}"),
		TEXT("{\"choices\":[{\"delta\":{\"content\":\"a\"}},null]}"),
		TEXT("{\"choices\":[{\"delta\":{\"content\":\"a\"}}],\"usage\":{\"prompt_tokens\":1,\"total\":1}}"),
		TEXT("{\"choices\":[{\"delta\":{\"content\":\"a\"}}],\"usage\":{\"prompt_tokens\":12,\"total\":3}}"),
		TEXT("{\"choices\":[{\"delta\":{\"tool_calls\":[{\"index\":1,\"function\":{\"arguments\":\"x\"}}]}}]}"),
		TEXT("{\"choices\":[]}"),
		TEXT("{\"choices\":[null]}"),
		TEXT("no"),
	});
	ExpectNothingLeftOfTheLast<FCVXGeminiDelta>({
		TEXT("{\"candidates\":[{\"content\":{\"parts\":[{\"text\":\"a\"}]}}],\"usageMetadata\":"
			 "{\"promptTokenCount\":1,\"candidatesTokenCount\":9,\"total\":10}}"),
		TEXT("{\"candidates\":[{\"content\":{\"parts\":[{\"text\":\"bc\"}]}}],\"usageMetadata\":"
			 "{\"promptTokenCount\":1,\"candidatesTokenCount\":10,\"total\":11}}"),
		TEXT("{\"candidates\":[{\"content\":{\"parts\":[{\"text\":\"a\"}]},\"finishReason\":\"STOP\"}]}"),
		TEXT("{\"candidates\":[{\"content\":{\"parts\":[{\"text\":\"a\"}]},\"finishReason\":\"\"}]}"),
		TEXT("{\"candidates\":[{\"content\":{\"parts\":[{\"text\":\"a\"},{\"text\":\"b\"}]}}]}"),
		TEXT("{\"candidates\":[{\"content\":{\"parts\":[{\"text\":\"a\"},null]}}]}"),
		TEXT("{\"candidates\":[{\"content\":{\"parts\":[{\"text\":\"a\"},{\"text\":5}]}}]}"),
		TEXT("{\"candidates\":[{\"content\":{\"parts\":[{\"text\":\"a\",\"functionCall\":null}]}}]}"),
		TEXT("{\"candidates\":[{\"content\":{\"parts\":[{\"text\":\"a\",\"functionCall\":{\"name\":\"n\"}}]}}]}"),
		TEXT("{\"candidates\":[{\"content\":{\"parts\":[]}}]}"),
		TEXT("{}"),
		TEXT("{"),
	});
}
