#include "Core/CVXJsonObject.h"
#include "Providers/Anthropic/CVXAnthropicDelta.h"
#include "Providers/Gemini/CVXGeminiDelta.h"
#include "Providers/OpenAI/CVXOpenAIDelta.h"

#include <cstddef>
#include <cstdint>

namespace
{
bool TellSame(const FCVXAnthropicDelta& A, const FCVXAnthropicDelta& B)
{
	return A.Index == B.Index && A.Type == B.Type && A.Text == B.Text && A.PartialJson == B.PartialJson &&
		A.Thinking == B.Thinking;
}

bool TellSame(const FCVXOpenAIDelta& A, const FCVXOpenAIDelta& B)
{
	return A.PromptTokens == B.PromptTokens && A.CompletionTokens == B.CompletionTokens && A.bHasDelta == B.bHasDelta &&
		A.Reasoning.Equals(B.Reasoning) && A.Content.Equals(B.Content) && A.Calls.Num() == B.Calls.Num() &&
		A.FinishReason.Equals(B.FinishReason);
}

bool TellSame(const FCVXGeminiDelta& A, const FCVXGeminiDelta& B)
{
	const bool bSameText = A.Parts.IsEmpty() || B.Parts.IsEmpty() || A.Parts[0].Text.Equals(B.Parts[0].Text);
	return A.PromptTokens == B.PromptTokens && A.CandidatesTokens == B.CandidatesTokens && bSameText &&
		A.Parts.Num() == B.Parts.Num() && A.FinishReason.Equals(B.FinishReason);
}

/** The reader takes what is an object for the tree's reader too, and tells the same whatever it has read before. */
template <typename DeltaType>
void CheckEvent(DeltaType& Reader, const FString& Event)
{
	DeltaType Fresh;
	const bool bReads = Fresh.Read(Event);
	check(bReads == (CVXJsonObject::Parse(Event) != nullptr));
	check(Reader.Read(Event) == bReads);
	check(!bReads || TellSame(Reader, Fresh));
}
} // namespace

/** Takes each line for an event of one stream. */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size)
{
	TArray<FString> Events;
	FString::FromUtf8((const ANSICHAR*)Data, (int64)Size).ParseIntoArrayLines(Events);
	FCVXAnthropicDelta Anthropic;
	FCVXOpenAIDelta OpenAI;
	FCVXGeminiDelta Gemini;
	for (const FString& Event : Events)
	{
		CheckEvent(Anthropic, Event);
		CheckEvent(OpenAI, Event);
		CheckEvent(Gemini, Event);
	}
	return 0;
}
