#include "Diagnostics/CVXPerformanceMonitor.h"

#include "Diagnostics/CVXPerformanceCommands.h"
#include "HAL/IConsoleManager.h"
#include "Support/HostTypePrinting.h"
#include "Support/LogCapture.h"
#include "Support/TestClock.h"

#include <gtest/gtest.h>

namespace
{
class CVXPerformanceMonitor : public testing::Test
{
protected:
	CVXPerformanceMonitor() { Monitor.ResetStats(); }
	~CVXPerformanceMonitor() override { Monitor.ResetStats(); }

	void RunTool(const TCHAR* Name, double Seconds, int32 OutputChars, bool bCacheHit = false)
	{
		const int32 Id = Monitor.OnToolStart(Name, TEXT("{}"), false);
		Clock.Advance(Seconds);
		Monitor.OnToolEnd(Id, Name, OutputChars, false, bCacheHit, false);
	}
	void RunTurn(int32 Turn, int32 InputTokens)
	{
		Monitor.OnTurnStart(Turn);
		Monitor.OnStreamEnd(InputTokens, 0);
		Monitor.OnTurnEnd(0, 0.0);
	}

	FTestClock Clock;
	FLogCapture Log;
	FCVXPerformanceMonitor& Monitor = FCVXPerformanceMonitor::Get();
};
} // namespace

TEST_F(CVXPerformanceMonitor, AFreshMonitorSaysThatNothingWasRecorded)
{
	EXPECT_TRUE(Monitor.DumpStats().Equals(
		TEXT("=== CVX Performance Summary ===\n  (no tool calls recorded)\n  (no turns recorded)\n")));
}

TEST_F(CVXPerformanceMonitor, ToolsAreListedByTheirTotalTime)
{
	RunTool(TEXT("read_file"), 0.5, 999);
	RunTool(TEXT("read_file"), 0.25, 999, true);
	RunTool(TEXT("READ_FILE"), 0.0, 999);
	RunTool(TEXT("execute_shell"), 2.0, 1500, true);
	RunTool(TEXT("execute_shell"), 0.0, 1500);
	Monitor.OnToolEnd(12345, TEXT("never_started"), 0, true, false, true);
	EXPECT_TRUE(Monitor.DumpStats().Contains(TEXT("Tools (by total time):\n"
												  "  execute_shell            2 calls, total 2.0s, avg 1.00s, max "
												  "2.0s, cache 50%, errors 0, output avg 1K chars\n"
												  "  read_file                3 calls, total 0.8s, avg 0.25s, max "
												  "0.5s, cache 33%, errors 0, output avg 999 chars\n"
												  "  never_started            1 calls, total 0.0s, avg 0.00s, max "
												  "0.0s, cache 0%, errors 1, output avg 0 chars\n"),
		ESearchCase::CaseSensitive));
	EXPECT_EQ(Log.Count(TEXT("Tool 'execute_shell' took 2.00s (output: 1500 chars, cache: hit, thread: GT)"),
				  ELogVerbosity::Warning),
		1);
	EXPECT_FALSE(Log.Contains(TEXT("Tool 'read_file'")));
}

TEST_F(CVXPerformanceMonitor, ATurnKeepsItsFirstTokenAndItsTokens)
{
	Monitor.OnTurnStart(7);
	Monitor.OnStreamStart();
	Clock.Advance(1.5);
	Monitor.OnFirstToken();
	Clock.Advance(1.5);
	Monitor.OnFirstToken();
	Monitor.OnStreamEnd(1000, 999);
	Monitor.OnTurnEnd(4, 2.5);
	EXPECT_EQ(Log.Count(TEXT("Turn 7: stream 3.0s (first token 1.5s), 4 tools (2.5s total), 1000->999 tokens"),
				  ELogVerbosity::Log),
		1);
	EXPECT_TRUE(Monitor.DumpStats().EndsWith(TEXT("Turns (last 1):\n"
												  "  avg stream: 3.0s, first token: 1.5s, tools/turn: 4.0\n"
												  "  total: 1.0K in / 999 out tokens\n"),
		ESearchCase::CaseSensitive));
	RunTurn(8, 999000);
	EXPECT_TRUE(Monitor.DumpStats().Contains(TEXT("avg stream: 1.5s, first token: 0.8s, tools/turn: 2.0")));
	EXPECT_TRUE(Monitor.DumpStats().Contains(TEXT("total: 1.0M in")));
}

TEST_F(CVXPerformanceMonitor, TheFiftyFirstTurnTakesTheOldestsPlace)
{
	RunTurn(0, 1000000);
	for (int32 Turn = 1; Turn < FCVXPerformanceMonitor::MaxTurnRecords; ++Turn)
	{
		RunTurn(Turn, 1);
	}
	EXPECT_TRUE(Monitor.DumpStats().Contains(TEXT("Turns (last 50):\n")));
	EXPECT_TRUE(Monitor.DumpStats().Contains(TEXT("total: 1.0M in")));
	RunTurn(50, 1);
	EXPECT_TRUE(Monitor.DumpStats().Contains(TEXT("Turns (last 50):\n")));
	EXPECT_TRUE(Monitor.DumpStats().Contains(TEXT("total: 50 in")));
}

TEST_F(CVXPerformanceMonitor, IdsRunOnOverAResetAndSlowScopesAreLogged)
{
	const int32 First = Monitor.OnToolStart(TEXT("t"), TEXT(""), true);
	Monitor.ResetStats();
	EXPECT_EQ(Monitor.OnToolStart(TEXT("t"), TEXT(""), true), First + 1);
	EXPECT_GE(Log.Count(TEXT("Performance counters reset."), ELogVerbosity::Log), 1);
	{
		const FCVXScopeTimer Quick = Monitor.ScopeTimer(TEXT("Quick"), 50.0);
		Clock.Advance(0.03);
	}
	{
		const FCVXScopeTimer Slow = Monitor.ScopeTimer(TEXT("Slow(3)"), 50.0);
		Clock.Advance(0.08);
	}
	EXPECT_FALSE(Log.Contains(TEXT("[Quick]")));
	EXPECT_EQ(Log.Count(TEXT("[Slow(3)] took 80ms (threshold: 50ms)"), ELogVerbosity::Warning), 1);
}

TEST_F(CVXPerformanceMonitor, TheConsoleShowsAndResetsTheCounters)
{
	IConsoleManager& Console = IConsoleManager::Get();
	CVXPerformanceCommands::Register();
	RunTool(TEXT("read_file"), 0.5, 10);
	EXPECT_TRUE(Console.ProcessUserConsoleInput(TEXT("cvx.perfstats"), Log));
	EXPECT_EQ(Log.Count(TEXT("\n") + Monitor.DumpStats(), ELogVerbosity::Log), 1);
	EXPECT_TRUE(Console.ProcessUserConsoleInput(TEXT("cvx.perfreset"), Log));
	EXPECT_TRUE(Monitor.DumpStats().Contains(TEXT("(no tool calls recorded)")));
	CVXPerformanceCommands::Unregister();
	CVXPerformanceCommands::Unregister();
	EXPECT_FALSE(Console.ProcessUserConsoleInput(TEXT("cvx.perfstats"), Log));
}
