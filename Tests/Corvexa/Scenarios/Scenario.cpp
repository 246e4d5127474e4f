#include "Corvexa/Scenarios/Scenario.h"

#include "Core/CVXSettings.h"
#include "Policies/CondensedJsonPrintPolicy.h"
#include "Serialization/JsonWriter.h"
#include "Tools/CVXBuiltinTools.h"
#include "Tools/CVXToolRegistry.h"

#include <gtest/gtest.h>

namespace
{
using FWriter = TJsonWriter<TCHAR, TCondensedJsonPrintPolicy<TCHAR>>;

std::string Quote(const FString& Text)
{
	FString Json;
	FWriter Writer(Json);
	Writer.WriteArrayStart();
	Writer.WriteValue(Text);
	Writer.WriteArrayEnd();
	Writer.Close();
	return std::string(TCHAR_TO_UTF8(*Json.Mid(1, Json.Len() - 2)));
}

std::string Event(const std::string& Type, const std::string& Data)
{
	return "event: " + Type + "\ndata: {\"type\":\"" + Type + "\"" + Data + "}\n\n";
}

std::string Block(int32 Index, const std::string& Start, const std::string& Delta)
{
	const std::string At = ",\"index\":" + std::to_string(Index);
	return Event("content_block_start", At + ",\"content_block\":{" + Start + "}") +
		Event("content_block_delta", At + ",\"delta\":{" + Delta + "}") + Event("content_block_stop", At);
}
} // namespace

FScenario::FScenario()
{
	RegisterBuiltinTools();
	UCVXSettings* Settings = UCVXSettings::Get();
	FCVXProviderProfile& Profile = Settings->ProviderProfiles[0];
	Profile.BaseURL = FString(Server.Url("").c_str());
	Profile.ApiKeyEnvVar = TEXT("sk-test-s3cret");
	for (FCVXAgentProfile& Agent : Settings->AgentProfiles)
	{
		Agent.ApprovalMode = ECVXApprovalMode::FullyAutonomous;
	}
	Settings->ActiveAgentProfile = TEXT("Coder");
	Task = FCVXTaskManager::Get().CreateNewTask(TEXT("Scenario"));
	Loop().OnComplete.AddLambda([this](const FString& Text) { Ends.Add(TEXT("complete ") + Text); });
	Loop().OnError.AddLambda([this](const FString& Text) { Ends.Add(TEXT("error ") + Text); });
}

FScenario::~FScenario()
{
	FCVXTaskManager::Get().RemoveTask(Task->GetTaskId());
	Task.Reset();
	FCVXToolRegistry::Get().Clear();
}

std::string FScenario::ToEvents(const FScriptedAnswer& Answer)
{
	std::string Stream = Event("message_start", ",\"message\":{\"usage\":{\"input_tokens\":10,\"output_tokens\":1}}");
	int32 Index = 0;
	if (!Answer.Text.IsEmpty())
	{
		Stream +=
			Block(Index++, "\"type\":\"text\",\"text\":\"\"", "\"type\":\"text_delta\",\"text\":" + Quote(Answer.Text));
	}
	for (const FCVXToolCall& Call : Answer.Calls)
	{
		Stream += Block(Index++,
			"\"type\":\"tool_use\",\"id\":" + Quote(Call.Id) + ",\"name\":" + Quote(Call.Name) + ",\"input\":{}",
			"\"type\":\"input_json_delta\",\"partial_json\":" + Quote(Call.Arguments));
	}
	const char* Reason = Answer.Usage.bTruncated ? "max_tokens" : Answer.Calls.IsEmpty() ? "end_turn" : "tool_use";
	Stream += Event("message_delta",
		std::string(",\"delta\":{\"stop_reason\":\"") + Reason + "\"},\"usage\":{\"output_tokens\":20}");
	return Stream + Event("message_stop", "");
}

FScenario& FScenario::Answer(const FScriptedAnswer& Answer)
{
	return this->Answer(FLoopbackReply::Events({ToEvents(Answer)}));
}

FScenario& FScenario::Answer(FLoopbackReply Reply)
{
	Server.Enqueue(std::move(Reply));
	return *this;
}

void FScenario::Submit(const FString& Text)
{
	Loop().SubmitUserMessage(Text);
	EXPECT_TRUE(Pump.Until(
		[this]
		{
			const double RetryTime = Loop().GetRetryTime();
			if (RetryTime > 0.0)
			{
				Clock.Advance(FMath::Max(0.0, RetryTime - Clock.GetSeconds()) + 0.01);
				return false;
			}
			return !Loop().IsBusy();
		}));
}

FString FScenario::DescribeHistory() const
{
	static const TCHAR* Roles[] = {TEXT("system"), TEXT("user"), TEXT("assistant"), TEXT("tool")};
	TArray<FString> Names;
	for (const FCVXMessage& Message : Loop().GetContextManager().GetHistory())
	{
		const bool bGuid = Message.MessageId.Len() == 32 && !Message.MessageId.Contains(TEXT("-"));
		Names.Add(bGuid ? FString(Roles[static_cast<int32>(Message.Role)]) : Message.MessageId);
	}
	return FString::Join(Names, TEXT(" "));
}

FString FScenario::LastToolResult() const
{
	const TArray<FCVXMessage>& History = Loop().GetContextManager().GetHistory();
	const int32 Index =
		History.FindLastByPredicate([](const FCVXMessage& Each) { return Each.Role == ECVXMessageRole::Tool; });
	return Index == INDEX_NONE ? FString() : History[Index].Content.Last().ToolResultContent;
}
