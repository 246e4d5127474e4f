#include "Tools/CVXToolExecutor.h"

#include "Async/Async.h"
#include "CoreGlobals.h"
#include "HAL/Event.h"
#include "Support/TestClock.h"
#include "ToolFixture.h"

#include <algorithm>
#include <atomic>
#include <random>
#include <stdexcept>
#include <unordered_map>

namespace
{
class CVXToolExecutor : public FToolFixture
{
protected:
	CVXToolExecutor()
	{
		Free.ApprovalMode = ECVXApprovalMode::FullyAutonomous;
		Asking.ApprovalMode = ECVXApprovalMode::AlwaysAsk;
		Settings.AgentProfiles = {Free, Asking};
	}

	FCVXOnToolComplete Done()
	{
		return FCVXOnToolComplete::CreateLambda(
			[this](const FString& Id, const FCVXToolExecutionResult& Result)
			{
				EXPECT_TRUE(IsInGameThread());
				Told.Add(Id + (Result.bIsError ? TEXT(" error: ") : TEXT(": ")) + Result.Output);
			});
	}

	FCVXOnToolApprovalNeeded Asked()
	{
		return FCVXOnToolApprovalNeeded::CreateLambda([this](const FString& Id, const FCVXApprovalRequest& Request)
			{ Told.Add(Id + TEXT(" asks: ") + Request.Description); });
	}

	/** Calls a tool and waits for its end. @return what was told. */
	FString Call(const TCHAR* Name, const FString& Arguments = TEXT("{}"))
	{
		const int32 Before = Told.Num();
		Executor->ExecuteToolCall({TEXT("id"), Name, Arguments}, Free, Done(), Asked());
		EXPECT_TRUE(Pump.Until([&] { return Told.Num() > Before; }));
		return Told.Last();
	}

	/** A tool that counts its runs and answers with the count. */
	FFakeTool Counter(const TCHAR* Name)
	{
		return FFakeTool(
			Name, [this](const FString&) { return FCVXToolExecutionResult::MakeSuccess(FString::FromInt(++Runs)); });
	}

	FCVXAgentProfile Free;
	FCVXAgentProfile Asking;
	TArray<FString> Told;
	std::atomic<int32> Runs{0};
	TUniquePtr<FCVXToolExecutor> Executor = MakeUnique<FCVXToolExecutor>();
};

FCVXToolExecutionResult Say(const FString& Text)
{
	return FCVXToolExecutionResult::MakeSuccess(Text);
}

TEST_F(CVXToolExecutor, ParksACallUntilItIsDecided)
{
	Counter(TEXT("write_x")).Register();
	const auto Park = [&](const TCHAR* Id) {
		Executor->ExecuteToolCall({Id, TEXT("write_x"), TEXT("{}")}, Asking, Done(), Asked());
	};

	Park(TEXT("a"));
	EXPECT_EQ(Told.Last(), TEXT("a asks: Execute 'Write X' with input: {}"));
	Executor->ResolveApproval(TEXT("other"), ECVXApprovalState::Approved, false);
	EXPECT_EQ(Told.Num(), 1);
	Executor->ResolveApproval(TEXT("a"), ECVXApprovalState::Approved, true);
	EXPECT_EQ(Told.Last(), TEXT("a: 1"));
	Executor->ResolveApproval(TEXT("a"), ECVXApprovalState::Approved, false);
	EXPECT_EQ(Runs, 1);

	Park(TEXT("b"));
	Executor->ResolveApproval(TEXT("b"), ECVXApprovalState::Denied, true);
	EXPECT_EQ(Told.Last(), TEXT("b error: Tool execution was denied by user."));
	EXPECT_TRUE(Settings.AutoApprovalRules.IsEmpty()) << "only an always decision is remembered";

	Park(TEXT("c"));
	FCVXToolRegistry::Get().UnregisterTool(TEXT("write_x"));
	Executor->ResolveApproval(TEXT("c"), ECVXApprovalState::Approved, false);
	EXPECT_EQ(Told.Last(), TEXT("c error: Tool no longer available."));
	Park(TEXT("d"));
	EXPECT_EQ(Told.Last(), TEXT("d error: Tool 'write_x' not found."));
}

TEST_F(CVXToolExecutor, RemembersAlwaysDecisions)
{
	Counter(TEXT("write_x")).Register();
	Executor->ExecuteToolCall({TEXT("a"), TEXT("write_x"), TEXT("{}")}, Asking, Done(), Asked());
	Executor->ResolveApproval(TEXT("a"), ECVXApprovalState::AlwaysAllow, true);
	Executor->ExecuteToolCall({TEXT("b"), TEXT("write_x"), TEXT("{}")}, Asking, Done(), Asked());
	EXPECT_EQ(Told.Last(), TEXT("b: 2"));
	Settings.AutoApprovalRules[0].bAutoApprove = false;
	Executor->ExecuteToolCall({TEXT("c"), TEXT("write_x"), TEXT("{}")}, Asking, Done(), Asked());
	EXPECT_EQ(Told.Last(), TEXT("c error: Tool 'write_x' was denied by auto-approval rules."));
	EXPECT_EQ(Runs, 2);
}

TEST_F(CVXToolExecutor, KeepsResultsOfReadingToolsForAMinuteFromTheirLastUse)
{
	FTestClock Clock;
	for (const bool bThreadSafe : {false, true})
	{
		FFakeTool Read = Counter(TEXT("read_x")).ReadOnly();
		(bThreadSafe ? Read.ThreadSafe() : Read).Register();
		Counter(TEXT("write_x")).Register();
		FFakeTool(TEXT("fail_x"), [](const FString&) { return FCVXToolExecutionResult::MakeError(TEXT("no")); })
			.Register();
		Executor = MakeUnique<FCVXToolExecutor>();
		Runs = 0;
		EXPECT_EQ(Call(TEXT("read_x"), TEXT("{\"path\":\"a\"}")), TEXT("id: 1"));
		Clock.Advance(59);
		EXPECT_EQ(Call(TEXT("READ_X"), TEXT("{\"Path\":\"A\"}")), TEXT("id: 1")) << "case makes no difference";
		Clock.Advance(59);
		EXPECT_EQ(Call(TEXT("read_x"), TEXT("{\"path\":\"a\"}")), TEXT("id: 1")) << "use makes it last";
		Clock.Advance(60);
		EXPECT_EQ(Call(TEXT("read_x"), TEXT("{\"path\":\"a\"}")), TEXT("id: 2"));
		Call(TEXT("fail_x"));
		EXPECT_EQ(Call(TEXT("read_x"), TEXT("{\"path\":\"a\"}")), TEXT("id: 3")) << "a failed write empties it too";
	}
}

TEST_F(CVXToolExecutor, NeverKeepsErrorsOrCaptures)
{
	FFakeTool(
		TEXT("read_x"), [this](const FString&) { return FCVXToolExecutionResult::MakeError(FString::FromInt(++Runs)); })
		.ReadOnly()
		.Register();
	EXPECT_EQ(Call(TEXT("read_x")), TEXT("id error: 1"));
	EXPECT_EQ(Call(TEXT("read_x")), TEXT("id error: 2"));
	Counter(TEXT("capture_viewport")).ReadOnly().Register();
	Call(TEXT("capture_viewport"));
	EXPECT_EQ(Call(TEXT("capture_viewport")), TEXT("id: 4"));
}

TEST_F(CVXToolExecutor, GivesUpTheOldestOfSixtyFourResults)
{
	FTestClock Clock;
	Counter(TEXT("read_x")).ReadOnly().Register();
	for (int32 Index = 0; Index < 64; ++Index)
	{
		Call(TEXT("read_x"), FString::FromInt(Index));
		Clock.Advance(0.1);
	}
	Call(TEXT("read_x"), TEXT("0"));
	EXPECT_EQ(Runs, 64);
	Call(TEXT("read_x"), TEXT("64"));
	Call(TEXT("read_x"), TEXT("0"));
	EXPECT_EQ(Runs, 65);
	Call(TEXT("read_x"), TEXT("1"));
	EXPECT_EQ(Runs, 66) << "the one whose use lay back longest is gone";
}

/** Two texts that differ and hash alike; there is a pair among some hundred thousand. */
std::pair<FString, FString> FindCollision()
{
	std::unordered_map<uint32, int32> Seen;
	for (int32 Index = 0;; ++Index)
	{
		const FString Text = FString::Printf(TEXT("argument %d"), Index);
		const auto [Place, bNew] = Seen.emplace(GetTypeHash(Text), Index);
		if (!bNew)
		{
			return {FString::Printf(TEXT("argument %d"), Place->second), Text};
		}
	}
}

TEST_F(CVXToolExecutor, TellsCallsWithOneKeyApart)
{
	FFakeTool(TEXT("echo"), &Say).ReadOnly().Register();
	const auto [First, Second] = FindCollision();
	EXPECT_EQ(Call(TEXT("echo"), First), TEXT("id: ") + First);
	EXPECT_EQ(Call(TEXT("echo"), Second), TEXT("id: ") + Second);
	EXPECT_EQ(Call(TEXT("echo"), First), TEXT("id: ") + First);
}

TEST_F(CVXToolExecutor, CutsOutputsThatAreTooLong)
{
	const auto Repeat = [](const FString& Count) { return Say(FString::ChrN(FCString::Atoi(*Count), u'x')); };
	FFakeTool(TEXT("here"), Repeat).Register();
	FFakeTool(TEXT("pool"), Repeat).ThreadSafe().Register();
	const int32 Prefix = 4;
	for (const TCHAR* Name : {TEXT("here"), TEXT("pool")})
	{
		EXPECT_EQ(Call(Name, TEXT("100000")).Len() - Prefix, 100000);
		const FString Cut = Call(Name, TEXT("100001"));
		EXPECT_EQ(Cut.Len() - Prefix, 100097);
		EXPECT_TRUE(Cut.EndsWith(TEXT("or pagination) to see more.]")));
		EXPECT_EQ(FCVXToolExecutor::ExecuteToolDirect({TEXT("id"), Name, TEXT("100001")}, Free).Output.Len(), 100097);
	}
}

TEST_F(CVXToolExecutor, MakesExceptionsErrorResults)
{
	const auto Throw = [](const FString& What) -> FCVXToolExecutionResult
	{
		if (What.IsEmpty())
		{
			throw 1;
		}
		throw std::runtime_error(TCHAR_TO_UTF8(*What));
	};
	FFakeTool(TEXT("here"), Throw).Register();
	FFakeTool(TEXT("pool"), Throw).ThreadSafe().Register();
	EXPECT_EQ(Call(TEXT("here"), TEXT("é")), TEXT("id error: Tool threw exception: é"));
	EXPECT_EQ(Call(TEXT("here"), TEXT("")), TEXT("id error: Tool threw unknown exception."));
	EXPECT_EQ(Call(TEXT("pool"), TEXT("x")), TEXT("id error: Background execution exception: x"));
	EXPECT_EQ(Call(TEXT("pool"), TEXT("")), TEXT("id error: Unknown background execution exception."));
	const FCVXToolCall Direct{TEXT("id"), TEXT("pool"), TEXT("x")};
	EXPECT_EQ(FCVXToolExecutor::ExecuteToolDirect(Direct, Free).Output, TEXT("Tool threw exception: x"));
	EXPECT_EQ(FCVXToolExecutor::ExecuteToolDirect({TEXT("id"), TEXT("none"), FString()}, Free).Output,
		TEXT("Tool 'none' not found."));
}

TEST_F(CVXToolExecutor, KeepsDialogsFromBlockingAllButScripts)
{
	const auto Tell = [](const FString&) { return Say(GIsRunningUnattendedScript ? TEXT("quiet") : TEXT("open")); };
	FFakeTool(TEXT("write_x"), Tell).Register();
	FFakeTool(TEXT("execute_python"), Tell).Register();
	EXPECT_EQ(Call(TEXT("write_x")), TEXT("id: quiet"));
	EXPECT_EQ(Call(TEXT("Execute_Python")), TEXT("id: open"));
	EXPECT_FALSE(GIsRunningUnattendedScript);
}

TEST_F(CVXToolExecutor, OffersOnlyApprovedReadsOfSafeToolsForTheBatch)
{
	Counter(TEXT("read_safe")).ReadOnly().ThreadSafe().Register();
	Counter(TEXT("read_here")).ReadOnly().Register();
	Counter(TEXT("write_safe")).ThreadSafe().Register();
	const auto May = [&](const TCHAR* Name, const FCVXAgentProfile& Profile) {
		return Executor->CanExecuteOnBackgroundThread({TEXT("id"), Name, TEXT("{}")}, Profile);
	};
	EXPECT_TRUE(May(TEXT("read_safe"), Free));
	EXPECT_FALSE(May(TEXT("read_safe"), Asking));
	EXPECT_FALSE(May(TEXT("read_here"), Free));
	EXPECT_FALSE(May(TEXT("write_safe"), Free));
	EXPECT_FALSE(May(TEXT("none"), Free));
}

TEST_F(CVXToolExecutor, SaysThatAToolWentBeforeThePoolGotToIt)
{
	FEvent Gate(EEventMode::ManualReset);
	FFakeTool(TEXT("wait"), [&](const FString&) { return Say(Gate.Wait(20000) ? TEXT("on") : TEXT("late")); })
		.ThreadSafe()
		.Register();
	Counter(TEXT("pool")).ThreadSafe().Register();
	constexpr int32 MoreThanThePoolHas = 64;
	for (int32 Index = 0; Index < MoreThanThePoolHas; ++Index)
	{
		Executor->ExecuteToolCall({TEXT("w"), TEXT("wait"), TEXT("{}")}, Free, Done(), Asked());
	}
	Executor->ExecuteToolCall({TEXT("id"), TEXT("pool"), TEXT("{}")}, Free, Done(), Asked());
	FCVXToolRegistry::Get().UnregisterTool(TEXT("pool"));
	Gate.Trigger();
	ASSERT_TRUE(Pump.Until([&] { return Told.Num() == MoreThanThePoolHas + 1; }));
	EXPECT_TRUE(Told.Contains(TEXT("id error: Tool 'pool' no longer available.")));
}

TEST_F(CVXToolExecutor, EndsQuietlyWhenItIsDestroyedDuringACall)
{
	FEvent Gate(EEventMode::ManualReset);
	std::atomic<bool> bRan{false};
	FFakeTool(TEXT("pool"),
		[&](const FString&)
		{
			(void)Gate.Wait(20000);
			bRan = true;
			return Say(TEXT("late"));
		})
		.ReadOnly()
		.ThreadSafe()
		.Register();
	Executor->ExecuteToolCall({TEXT("id"), TEXT("pool"), TEXT("{}")}, Free, Done(), Asked());
	Executor->ExecuteToolCall({TEXT("parked"), TEXT("pool"), TEXT("{}")}, Asking, Done(), {});
	Executor.Reset();
	Gate.Trigger();
	ASSERT_TRUE(Pump.Until([&] { return bRan.load(); }));
	Pump.Tick();

	FFakeTool(TEXT("self"),
		[&](const FString&)
		{
			FCVXToolRegistry::Get().UnregisterTool(TEXT("self"));
			Executor.Reset();
			return Say(TEXT("gone"));
		})
		.ReadOnly()
		.Register();
	Executor = MakeUnique<FCVXToolExecutor>();
	Executor->ExecuteToolCall({TEXT("id"), TEXT("self"), TEXT("{}")}, Free, Done(), Asked());
	EXPECT_TRUE(Told.IsEmpty());

	Counter(TEXT("here")).Register();
	Executor = MakeUnique<FCVXToolExecutor>();
	const auto DestroyIt = [&](const FString&, const FCVXToolExecutionResult&) { Executor.Reset(); };
	Executor->ExecuteToolCall(
		{TEXT("id"), TEXT("here"), TEXT("{}")}, Free, FCVXOnToolComplete::CreateLambda(DestroyIt), Asked());
	EXPECT_FALSE(Executor.IsValid());
}

/** Random calls, decisions, removals and destructions, with all that may have been told of each call. */
class FChaos
{
public:
	explicit FChaos(uint32 Seed)
		: Random(Seed)
	{
		Profiles[0].ApprovalMode = ECVXApprovalMode::FullyAutonomous;
		Profiles[1].ApprovalMode = ECVXApprovalMode::AlwaysAsk;
		for (TUniquePtr<FCVXToolExecutor>& Each : Executors)
		{
			Each = MakeUnique<FCVXToolExecutor>();
		}
	}

	void Step(FLoopPump& Pump)
	{
		switch (Pick(8))
		{
		case 0:
			Toggle(Pick(4));
			break;
		case 1:
			Replace(Pick(2));
			break;
		case 2:
			Executors[Pick(2)]->ResolveApproval(FString::FromInt(Pick(FMath::Max(Ends.Num(), 1))),
				Pick(2) == 0 ? ECVXApprovalState::Approved : ECVXApprovalState::Denied, false);
			break;
		case 3:
			Pump.Tick();
			break;
		default:
			Start();
		}
	}

	/** Whether every call that needs no decision, of an executor that lives, has ended. */
	bool HasSettled() const
	{
		const auto HasEnded = [this](int32 Number) { return Ends[Number] > 0; };
		return std::ranges::all_of(Running[0], HasEnded) && std::ranges::all_of(Running[1], HasEnded);
	}

	/** How often each call has ended. */
	TArray<int32> Ends;

private:
	void Replace(int32 Index)
	{
		Executors[Index] = MakeUnique<FCVXToolExecutor>();
		Running[Index].Reset();
	}

	int32 Pick(int32 Count) { return (int32)(Random() % (uint32)Count); }

	/** Even tools only read; the upper two run on the pool. */
	void Toggle(int32 Tool)
	{
		const FString Name = FString::Printf(TEXT("tool%d"), Tool);
		if (FCVXToolRegistry::Get().FindTool(Name))
		{
			FCVXToolRegistry::Get().UnregisterTool(Name);
			return;
		}
		FFakeTool Made(Name, [](const FString& Arguments) { return Say(Arguments); });
		Tool % 2 == 0 ? (void)Made.ReadOnly() : (void)0;
		Tool >= 2 ? (void)Made.ThreadSafe() : (void)0;
		Made.Register();
	}

	void Start()
	{
		const int32 Number = Ends.Add(0);
		const FString Name = FString::Printf(TEXT("tool%d"), Pick(4));
		const FString Arguments = FString::FromInt(Pick(5));
		const auto OnEnd = [this, Number, Arguments](const FString& Id, const FCVXToolExecutionResult& Result)
		{
			++Ends[Number];
			EXPECT_EQ(Id, FString::FromInt(Number));
			EXPECT_TRUE(Result.bIsError || Result.Output == Arguments) << "another call's result";
		};
		const int32 Index = Pick(2);
		const int32 Profile = Pick(2);
		if (Profile == 0)
		{
			Running[Index].Add(Number);
		}
		Executors[Index]->ExecuteToolCall({FString::FromInt(Number), Name, Arguments}, Profiles[Profile],
			FCVXOnToolComplete::CreateLambda(OnEnd), {});
	}

	std::minstd_rand Random;
	FCVXAgentProfile Profiles[2];
	TUniquePtr<FCVXToolExecutor> Executors[2];
	TArray<int32> Running[2];
};

TEST_F(CVXToolExecutor, SurvivesAThousandRandomInterleavings)
{
	for (uint32 Seed = 1; Seed <= 1000; ++Seed)
	{
		FChaos Chaos(Seed);
		for (int32 Index = 0; Index < 40; ++Index)
		{
			Chaos.Step(Pump);
		}
		// Every other run is torn down in the middle.
		ASSERT_TRUE(Seed % 2 == 0 || Pump.Until([&] { return Chaos.HasSettled(); })) << "seed " << Seed;
		for (int32 Number = 0; Number < Chaos.Ends.Num(); ++Number)
		{
			ASSERT_LE(Chaos.Ends[Number], 1) << "call " << Number << " of seed " << Seed;
		}
	}
}
} // namespace
