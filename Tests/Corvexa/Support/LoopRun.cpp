#include "Corvexa/Support/LoopRun.h"

#include "Core/CVXSettings.h"
#include "Tools/CVXToolRegistry.h"

#include <gtest/gtest.h>

FScriptedTool::FScriptedTool(const FString& InName, bool bInReadOnly, FWork InWork, bool bInThreadSafe)
	: Name(InName)
	, bReadOnly(bInReadOnly)
	, bThreadSafe(bInThreadSafe)
	, Work(MoveTemp(InWork))
{
}

void FScriptedTool::Register(const FString& Name, const FString& Output, bool bIsError, bool bReadOnly)
{
	Register(
		Name, [Output, bIsError](const FString&) { return MakeToolResult(Output, bIsError); }, bReadOnly);
}

void FScriptedTool::Register(const FString& Name, FWork Work, bool bReadOnly, bool bThreadSafe)
{
	FCVXToolRegistry::Get().RegisterTool(MakeUnique<FScriptedTool>(Name, bReadOnly, MoveTemp(Work), bThreadSafe));
}

FCVXToolExecutionResult MakeToolResult(const FString& Output, bool bIsError)
{
	FCVXToolExecutionResult Result;
	Result.Output = Output;
	Result.bIsError = bIsError;
	return Result;
}

FLoopRun::FLoopRun()
{
	// Without provider profiles the loop keeps the provider that it was given.
	UCVXSettings::Get()->ProviderProfiles.Empty();
	FCVXToolRegistry::Get().Clear();
	Profile.ProfileName = TEXT("Tester");
	Profile.SystemPrompt = TEXT("You test.");
	Profile.ApprovalMode = ECVXApprovalMode::FullyAutonomous;
	FScriptedTool::Register(TEXT("attempt_completion"),
		[](const FString& Arguments)
		{
			FCVXToolExecutionResult Result = MakeToolResult(Arguments);
			Result.bIsCompletion = true;
			return Result;
		});
	MakeLoop();
}

FLoopRun::~FLoopRun()
{
	Loop.Reset();
	FCVXToolRegistry::Get().Clear();
}

void FLoopRun::MakeLoop()
{
	Loop = MakeShared<FCVXAgentLoop>(MakeUnique<FScriptedProvider>(Model), Profile);
	Loop->OnStateChanged.AddLambda(
		[this](ECVXTaskState State) { Told.Add(FString::Printf(TEXT("state %d"), static_cast<int32>(State))); });
	Loop->OnTextDelta.AddLambda([this](const FString& Text) { Texts.Add(Text); });
	Loop->OnComplete.AddLambda([this](const FString& Text) { Told.Add(TEXT("complete ") + Text); });
	Loop->OnError.AddLambda([this](const FString& Text) { Told.Add(TEXT("error ") + Text); });
	Loop->OnMessageComplete.AddLambda([this](const FCVXMessage& Message)
		{ Told.Add(FString::Printf(TEXT("message %d"), static_cast<int32>(Message.Role))); });
	Loop->OnApprovalNeeded.AddLambda(
		[this](const FString& Id, const FCVXApprovalRequest& Request)
		{
			Approvals.Add(Request);
			Approvals.Last().ToolUseId = Id;
		});
	Loop->OnClarificationNeeded.AddLambda(
		[this](const FString&, const FCVXClarificationRequest& Request) { Clarifications.Add(Request); });
}

void FLoopRun::Submit(const FString& Text)
{
	Loop->SubmitUserMessage(Text);
	Settle();
}

void FLoopRun::Settle()
{
	EXPECT_TRUE(Pump.Until(
		[this]
		{
			const ECVXTaskState State = Loop->GetState();
			return State != ECVXTaskState::Streaming && State != ECVXTaskState::ExecutingTool &&
				Loop->GetRetryTime() == 0.0;
		}));
}

FString FLoopRun::DescribeHistory() const
{
	TArray<FString> Ids;
	for (const FCVXMessage& Message : History())
	{
		const bool bGuid = Message.MessageId.Len() == 32 && !Message.MessageId.Contains(TEXT("-"));
		const TCHAR* Roles[] = {TEXT("system"), TEXT("user"), TEXT("assistant"), TEXT("tool")};
		Ids.Add(bGuid ? FString(Roles[static_cast<int32>(Message.Role)]) : Message.MessageId);
	}
	return FString::Join(Ids, TEXT(" "));
}

FString FLoopRun::TextOf(const FString& MessageId) const
{
	const FCVXMessage* Message =
		History().FindByPredicate([&](const FCVXMessage& Each) { return Each.MessageId == MessageId; });
	return Message ? Message->GetFirstTextContent() : FString();
}
