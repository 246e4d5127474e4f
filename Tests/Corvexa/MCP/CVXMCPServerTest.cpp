#include "MCP/CVXMCPServer.h"

#include "Async/Async.h"
#include "Corvexa/MCP/MCPFixture.h"
#include "HAL/PlatformMisc.h"
#include "MCP/CVXMCPResults.h"
#include "Support/FaultPlan.h"
#include "Support/ProcessProbe.h"
#include "Support/TestClock.h"

#include <filesystem>
#include <iterator>

namespace
{
class CVXMCPServer : public FMCPFixture
{
protected:
	FString Call(const TCHAR* Tool, const TCHAR* Arguments = TEXT(""))
	{
		bool bIsError = false;
		const FString Output = Server.CallTool(Tool, Arguments, bIsError);
		return (bIsError ? TEXT("ERROR ") : TEXT("")) + Output;
	}

	/** A call that runs into its limit, without waiting for it. */
	FString CallInVain(const TCHAR* Tool)
	{
		const FTestClock Clock;
		return Call(Tool);
	}

	FCVXMCPServer Server;
};

int64 CountDescriptors()
{
	return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), std::filesystem::directory_iterator());
}

TEST_F(CVXMCPServer, GreetsListsAndCallsInTheWordsOfTheProtocol)
{
	ASSERT_TRUE(Server.Start(MakeConfig()));
	TArray<FCVXMCPToolInfo> Tools;
	ASSERT_TRUE(Server.ListTools(Tools));
	ASSERT_EQ(Tools.Num(), 3) << "what has no name is no tool";
	EXPECT_EQ(Tools[0].OriginalName, TEXT("echo"));
	EXPECT_EQ(Tools[0].PrefixedName, TEXT("mcp__srv__echo"));
	EXPECT_EQ(Tools[0].Description, TEXT("Says it again."));
	EXPECT_EQ(Tools[0].InputSchemaJson, TEXT("{\"type\":\"object\"}"));
	EXPECT_EQ(Tools[1].InputSchemaJson, TEXT("{\"type\":\"object\",\"properties\":{},\"required\":[]}"));

	EXPECT_EQ(Call(TEXT("echo"), TEXT("{\"b\": \"é\",\n\"a\": 1}")), TEXT("{\"b\": \"\\u00e9\", \"a\": 1}"));
	EXPECT_EQ(Call(TEXT("echo"), TEXT("{cut")), TEXT("{}"));
	EXPECT_EQ(Call(TEXT("echo"), TEXT("[1]")), TEXT("{}"));
	Server.Stop();
	EXPECT_EQ(Received(),
		"{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"initialize\",\"params\":{\"protocolVersion\":\"2024-11-05\","
		"\"clientInfo\":{\"name\":\"Corvexa\",\"version\":\"1.0\"},\"capabilities\":{}}}\n"
		"{\"jsonrpc\":\"2.0\",\"method\":\"notifications/initialized\",\"params\":{}}\n"
		"{\"jsonrpc\":\"2.0\",\"id\":2,\"method\":\"tools/list\",\"params\":{}}\n"
		"{\"jsonrpc\":\"2.0\",\"id\":3,\"method\":\"tools/call\",\"params\":{\"name\":\"echo\",\"arguments\":"
		"{\"b\":\"é\",\"a\":1}}}\n"
		"{\"jsonrpc\":\"2.0\",\"id\":4,\"method\":\"tools/call\",\"params\":{\"name\":\"echo\",\"arguments\":{}}}\n"
		"{\"jsonrpc\":\"2.0\",\"id\":5,\"method\":\"tools/call\",\"params\":{\"name\":\"echo\",\"arguments\":{}}}\n");
}

TEST_F(CVXMCPServer, MakesAnOutputOfEveryKindOfAnswer)
{
	ASSERT_TRUE(Server.Start(MakeConfig()));
	const struct
	{
		const TCHAR* Tool;
		const TCHAR* Output;
	} Cases[] = {
		{TEXT("two"), TEXT("first\nsecond")},
		{TEXT("fails"), TEXT("ERROR it went wrong")},
		{TEXT("nothing"), TEXT("(empty response)")},
		{TEXT("words"), TEXT("ERROR Failed to parse tools/call result JSON")},
		{TEXT("void"), TEXT("ERROR MCP tool call failed: ")},
		{TEXT("refused"), TEXT("ERROR MCP tool call failed: no such tool")},
		{TEXT("grumbles"), TEXT("ERROR MCP tool call failed: Server returned error")},
		{TEXT("empty"), TEXT("ERROR MCP tool call failed: Response missing 'result' field")},
		{TEXT("chatter"), TEXT("this")},
		{TEXT("garbage9"), TEXT("after garbage")},
		{TEXT("garbage10"),
			TEXT("ERROR MCP tool call failed: Aborting: 10 consecutive malformed responses from server")},
		{TEXT("last_words"), TEXT("goodbye")},
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(Call(Case.Tool), FString(Case.Output)) << TCHAR_TO_UTF8(Case.Tool);
	}
	ASSERT_TRUE(WaitUntil([this] { return !Server.IsRunning(); }));
	EXPECT_EQ(Call(TEXT("echo")), TEXT("ERROR MCP tool call failed: Server process is not running"));
}

TEST_F(CVXMCPServer, NeverTakesWhatCameTooLateForTheNextAnswer)
{
	ASSERT_TRUE(Server.Start(MakeConfig()));
	EXPECT_EQ(CallInVain(TEXT("late")),
		TEXT("ERROR MCP tool call failed: Timed out waiting for response to 'tools/call' (id=2)"));
	EXPECT_EQ(Call(TEXT("echo"), TEXT("{\"n\":1}")), TEXT("{\"n\": 1}"));
	EXPECT_EQ(Call(TEXT("leftover")), TEXT("ok"));
	EXPECT_EQ(Call(TEXT("two")), TEXT("first\nsecond"));
	EXPECT_TRUE(Log.Contains(TEXT("[srv] Discarding 3 stale bytes in LineBuffer")));
}

TEST_F(CVXMCPServer, FailsToStartWithAReasonAndLeavesNothing)
{
	const int64 DescriptorsBefore = CountDescriptors();
	FCVXMCPServerConfig Config;
	Config.Name = TEXT("srv");
	EXPECT_FALSE(Server.Start(Config));
	EXPECT_TRUE(Log.Contains(TEXT("[srv] Command is empty")));
	Config.Command = TEXT("/no/such program");
	Config.Args = {TEXT("a b"), TEXT("c")};
	EXPECT_FALSE(Server.Start(Config));
	EXPECT_TRUE(Log.Contains(TEXT("[srv] Failed to launch: /no/such program \"a b\" c")));
	EXPECT_FALSE(Server.Start(MakeConfig(TEXT("ends"))));
	{
		const FTestClock Clock;
		EXPECT_FALSE(Server.Start(MakeConfig(TEXT("mute"))));
	}
	EXPECT_EQ(
		Log.Count(TEXT("[srv] Initialize handshake failed: Timed out waiting for response to 'initialize' (id=1)"),
			ELogVerbosity::Error),
		2);
	for (int32 Nth = 1; Nth <= 4; ++Nth)
	{
		const FFaultPlan Plan(EHostFault::Process, Nth);
		EXPECT_FALSE(Server.Start(MakeConfig())) << Nth;
	}
	EXPECT_TRUE(Log.Contains(TEXT("[srv] Failed to create stdout pipe")));
	EXPECT_TRUE(Log.Contains(TEXT("[srv] Failed to create stdin pipe")));
	EXPECT_FALSE(Server.IsRunning());
	EXPECT_EQ(CountDescriptors(), DescriptorsBefore);
	EXPECT_TRUE(Server.Start(MakeConfig())) << "a failure doesn't stay";
}

TEST_F(CVXMCPServer, GetsItsArgumentsAndVariablesWhileOursStayAsTheyWere)
{
	FPlatformMisc::SetEnvironmentVar(TEXT("CVX_TEST_SET"), TEXT("ours"));
	FPlatformMisc::SetEnvironmentVar(TEXT("CVX_TEST_UNSET"), TEXT(""));
	FCVXMCPServerConfig Config = MakeConfig();
	Config.Args += {TEXT("two words"), TEXT("say \"hi\""), TEXT(""), TEXT("back\\slash dir\\"), TEXT("plain")};
	Config.Env = {TEXT("CVX_TEST_SET=first"), TEXT("CVX_TEST_SET=a=b"), TEXT("CVX_TEST_UNSET=theirs"),
		TEXT("no equals sign"), TEXT("=nameless")};
	ASSERT_TRUE(Server.Start(Config));
	EXPECT_EQ(FPlatformMisc::GetEnvironmentVariable(TEXT("CVX_TEST_SET")), TEXT("ours"));
	EXPECT_EQ(FPlatformMisc::GetEnvironmentVariable(TEXT("CVX_TEST_UNSET")), TEXT(""));
	EXPECT_EQ(
		Call(TEXT("argv")), TEXT("[\"two words\", \"say \\\"hi\\\"\", \"\", \"back\\\\slash dir\\\\\", \"plain\"]"));
	EXPECT_EQ(Call(TEXT("env"), TEXT("{\"name\":\"CVX_TEST_SET\"}")), TEXT("a=b"));
	EXPECT_EQ(Call(TEXT("env"), TEXT("{\"name\":\"CVX_TEST_UNSET\"}")), TEXT("theirs"));
	FPlatformMisc::SetEnvironmentVar(TEXT("CVX_TEST_SET"), TEXT(""));
}

TEST_F(CVXMCPServer, IsGivenItsSecretsWithoutTheLog)
{
	FCVXMCPServerConfig Config = MakeConfig();
	Config.Args += {TEXT("--api-key"), TEXT("s3cret-one"), TEXT("--token=s3cret-two"), TEXT("--depth"), TEXT("7")};
	ASSERT_TRUE(Server.Start(Config));
	EXPECT_EQ(Call(TEXT("argv")), TEXT("[\"--api-key\", \"s3cret-one\", \"--token=s3cret-two\", \"--depth\", \"7\"]"));
	EXPECT_TRUE(Log.Contains(TEXT("--api-key *** --token=*** --depth 7")));
	EXPECT_EQ(Log.Count(TEXT("s3cret"), ELogVerbosity::Log), 0);
}

TEST_F(CVXMCPServer, IsDoneWithAServerThatWritesALineWithoutEnd)
{
	ASSERT_TRUE(Server.Start(MakeConfig()));
	EXPECT_TRUE(Call(TEXT("flood")).StartsWith(TEXT("ERROR MCP tool call failed: Aborting: 10 consecutive")));
}

TEST_F(CVXMCPServer, EndsWithAllThatItHasStarted)
{
	ASSERT_TRUE(Server.Start(MakeConfig()));
	const int32 Child = FCString::Atoi(*Call(TEXT("child")));
	ASSERT_TRUE(IsAlive(Child));
	// The child still holds the pipe open; that the server has ended is to be noticed all the same.
	EXPECT_TRUE(Call(TEXT("crash")).StartsWith(TEXT("ERROR MCP tool call failed: Timed out")));
	EXPECT_FALSE(Server.IsRunning());
	EXPECT_TRUE(IsAlive(Child));
	Server.Stop();
	EXPECT_TRUE(WaitUntil([Child] { return !IsAlive(Child); }));
}

TEST_F(CVXMCPServer, AnswersEachOfSeveralThreadsAndLetsGoOfThemWhenStopped)
{
	ASSERT_TRUE(Server.Start(MakeConfig()));
	TArray<TFuture<FString>> Calls;
	for (int32 Index = 0; Index < 8; ++Index)
	{
		Calls.Add(Async(EAsyncExecution::ThreadPool,
			[this, Index] { return Call(TEXT("echo"), *FString::Printf(TEXT("{\"n\":%d}"), Index)); }));
	}
	for (int32 Index = 0; Index < Calls.Num(); ++Index)
	{
		EXPECT_EQ(Calls[Index].Get(), FString::Printf(TEXT("{\"n\": %d}"), Index));
	}
	const TFuture<FString> Waiting = Async(EAsyncExecution::ThreadPool, [this] { return Call(TEXT("silent")); });
	const TFuture<FString> Queued = Async(EAsyncExecution::ThreadPool, [this] { return Call(TEXT("silent")); });
	ASSERT_TRUE(WaitUntil([this] { return Received().find("silent") != std::string::npos; }));
	Server.Stop();
	EXPECT_TRUE(Waiting.Get().StartsWith(TEXT("ERROR MCP tool call failed: ")));
	EXPECT_EQ(Queued.Get().Left(28), TEXT("ERROR MCP tool call failed: "));
	EXPECT_FALSE(Server.IsRunning());
}
} // namespace
