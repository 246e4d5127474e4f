#include "Agent/CVXAgentLog.h"
#include "Core/CVXLog.h"
#include "Corvexa/Support/LoopRun.h"
#include "Support/TestClock.h"
#include "Tools/CVXToolRegistry.h"
#include "Tools/Conversation/CVXAskFollowupQuestionTool.h"
#include "Tools/Conversation/CVXAttemptCompletionTool.h"

#include <gtest/gtest.h>

#include <random>

namespace
{
/** How many model answers the run goes through. A sanitizer sees in fewer what there is to see. */
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int32 Answers = 5000;
#else
constexpr int32 Answers = 100000;
#endif

/** A model that answers anything, and a person who does anything. */
class FChaos
{
public:
	explicit FChaos(FLoopRun& InRun)
		: Run(InRun)
	{
	}

	FScriptedAnswer Answer(const FCVXProviderRequest& Request)
	{
		++AnswerCount;
		CheckPairs(Request.Messages);
		FScriptedAnswer Result;
		switch (Pick(12))
		{
		case 0:
			return FScriptedAnswer::Fail(TEXT("HTTP 429 [Retry-After: 5]"));
		case 1:
			return FScriptedAnswer::Fail(Pick(2) ? TEXT("Connection failed") : TEXT("HTTP 400: no"));
		case 2:
			return FScriptedAnswer::Stall();
		default:
			Result.Text = Pick(3) ? TEXT("I work.") : Pick(2) ? TEXT("Shall I?") : TEXT("");
			Result.Reasoning = Pick(2) ? TEXT("hm") : TEXT("");
			Result.Usage.bTruncated = Pick(10) == 0;
			for (int32 Calls = Pick(4); Calls > 0; --Calls)
			{
				AddCall(Result);
			}
			return Result;
		}
	}

	/** Something that a person might do now. */
	void Act()
	{
		FCVXAgentLoop& Loop = *Run.Loop;
		if (!Run.Approvals.IsEmpty() && Pick(2))
		{
			const FString Id = Run.Approvals.Pop().ToolUseId;
			Loop.ResolveApproval(Id, static_cast<ECVXApprovalState>(Pick(5)), false);
		}
		else if (!Run.Clarifications.IsEmpty() && Pick(2))
		{
			Loop.ResolveClarification(Run.Clarifications.Pop().ToolUseId, {TEXT("Red")});
		}
		else if (Pick(15) == 0)
		{
			Pick(2) ? Loop.Cancel() : Loop.Interrupt();
		}
		else if (!Loop.IsBusy())
		{
			Loop.SubmitUserMessage(TEXT("Go on"));
		}
	}

	/** Turns the loop a little, and lets so much time pass that every wait ends. */
	void Live(FTestClock& Clock)
	{
		Run.Pump.Tick();
		Clock.Advance(Pick(3) ? 0.1 : 700.0);
		if (++TicksSinceAnswer > 400)
		{
			// A stalled stream ends by its own time-out, which the scripted provider doesn't play.
			TicksSinceAnswer = 0;
			Run.Loop->Interrupt();
		}
		if (AnswerCount != AnswersBefore)
		{
			AnswersBefore = AnswerCount;
			TicksSinceAnswer = 0;
		}
	}

	int32 AnswerCount = 0;
	int32 Broken = 0;

private:
	int32 Pick(int32 Count) { return static_cast<int32>(Random() % static_cast<uint32>(Count)); }

	void AddCall(FScriptedAnswer& Result)
	{
		static const TCHAR* Names[] = {TEXT("look"), TEXT("write"), TEXT("execute_python"), TEXT("attempt_completion"),
			TEXT("ask_followup_question"), TEXT("unknown_tool"), TEXT("compile_blueprints"), TEXT("background")};
		static const TCHAR* Arguments[] = {TEXT("{}"), TEXT(""), TEXT("not json"), TEXT("[1]"),
			TEXT("{\"result\":\"Everything that was asked for is done.\"}"),
			TEXT("{\"question\":\"Which?\",\"options\":[\"Red\",\"Blue\"]}")};
		// Some models use one id for several calls.
		const FString Id = Pick(20) == 0 ? FString(TEXT("same")) : FString();
		Result.And(Names[Pick(8)], Arguments[Pick(6)], Id);
	}

	/** Counts requests in which a call stands without its result, or the reverse. */
	void CheckPairs(const TArray<FCVXMessage>& Messages)
	{
		TSet<FString> Uses;
		TSet<FString> Results;
		for (const FCVXMessage& Message : Messages)
		{
			for (const FCVXContentBlock& Block : Message.Content)
			{
				if (Block.Type == TEXT("tool_use"))
				{
					Uses.Add(Block.ToolUseId);
				}
				else if (Block.Type == TEXT("tool_result"))
				{
					Results.Add(Block.ToolUseId);
				}
			}
		}
		const bool bWhole = Uses.Difference(Results).IsEmpty() && Results.Difference(Uses).IsEmpty();
		const bool bBegins = Messages.IsEmpty() || Messages[0].Role == ECVXMessageRole::User;
		Broken += bWhole && bBegins ? 0 : 1;
	}

	FLoopRun& Run;
	std::mt19937 Random{20260};
	int32 TicksSinceAnswer = 0;
	int32 AnswersBefore = 0;
};
} // namespace

TEST(CVXRandomRun, NoMixtureOfAnswersAndActionsBreaksOrStopsTheLoop)
{
	FLoopRun Run;
	FTestClock Clock;
	Run.Profile.ApprovalMode = ECVXApprovalMode::AutoApproveReads;
	Run.MakeLoop();
	Run.Loop->MaxTurns = 25;
	Run.Model->bKeepRequests = false;
	Run.Model->ContextTokens = 8000;
	FScriptedTool::Register(TEXT("look"), TEXT("seen"));
	FScriptedTool::Register(TEXT("write"), TEXT("written"), false, false);
	FScriptedTool::Register(TEXT("execute_python"), TEXT("TypeError: no"), false, false);
	FScriptedTool::Register(TEXT("compile_blueprints"), TEXT("broken"), true);
	FScriptedTool::Register(
		TEXT("background"), [](const FString&) { return MakeToolResult(TEXT("ran")); }, true, true);
	FCVXToolRegistry::Get().RegisterTool(MakeUnique<FCVXAttemptCompletionTool>());
	FCVXToolRegistry::Get().RegisterTool(MakeUnique<FCVXAskFollowupQuestionTool>());

	LogCVXAgentLoop.SetVerbosity(ELogVerbosity::NoLogging);
	LogCorvexa.SetVerbosity(ELogVerbosity::NoLogging);

	FChaos Chaos(Run);
	Run.Model->Otherwise = [&](const FCVXProviderRequest& Request) { return Chaos.Answer(Request); };
	for (int32 Step = 0; Chaos.AnswerCount < Answers; ++Step)
	{
		ASSERT_LT(Step, 100 * Answers) << "the run stands still in state " << static_cast<int32>(Run.Loop->GetState());
		Chaos.Act();
		Chaos.Live(Clock);
		if (Step % 100 == 0)
		{
			// A person begins anew now and then; what piles up beside the history would show in the memory.
			Run.Loop->Interrupt();
			Run.Loop->ClearHistory();
			Run.Approvals.Empty();
			Run.Clarifications.Empty();
			Run.Told.Empty();
			Run.Texts.Empty();
		}
	}
	EXPECT_EQ(Chaos.Broken, 0) << "requests held a call without its result, or began with another than the user";
	Run.Loop->Interrupt();
	Run.Model->Otherwise = nullptr;
	Run.Model->Then(FScriptedAnswer::Call(
		TEXT("attempt_completion"), TEXT("{\"result\":\"Everything that was asked for is done.\"}")));
	Run.Loop->ClearHistory();
	Run.Submit(TEXT("Finish"));
	EXPECT_FALSE(Run.Loop->IsBusy());
}
