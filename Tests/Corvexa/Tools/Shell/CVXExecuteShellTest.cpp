#include "Tools/Shell/CVXExecuteShellTool.h"

#include "../ToolCalls.h"
#include "../ToolFixture.h"
#include "Corvexa/Support/ClockOfFile.h"
#include "Misc/Paths.h"
#include "Tools/Shell/CVXCommandRun.h"
#include "Tools/Shell/CVXShellCommandRules.h"

#include <filesystem>
#include <sys/resource.h>

namespace
{
namespace fs = std::filesystem;

class CVXExecuteShell : public FToolFixture
{
protected:
	static FString Run(const TCHAR* Command, const TCHAR* WorkingDir = TEXT(""))
	{
		return RunTool(
			FCVXExecuteShellTool(), ToolArguments({{TEXT("command"), Command}, {TEXT("working_dir"), WorkingDir}}));
	}

	int32 TemporaryFiles() const
	{
		int32 Count = 0;
		for (const fs::directory_entry& Entry : fs::directory_iterator(TCHAR_TO_UTF8(*Project.Path("Saved/CVX/Temp"))))
		{
			EXPECT_EQ(Entry.path().filename().string().rfind("shell_std", 0), 0u);
			++Count;
		}
		return Count;
	}

	/** Whether all processes whose ids are in the file end soon. */
	void ExpectAllGone(const std::string& File, int32 Count) const
	{
		TArray<FString> Pids;
		FString(Project.Read(File).c_str()).ParseIntoArrayWS(Pids);
		EXPECT_EQ(Pids.Num(), Count);
		for (const FString& Pid : Pids)
		{
			WaitUntil([&] { return !IsAlive(FCString::Atoi(*Pid)); });
		}
	}
};

TEST_F(CVXExecuteShell, ReportsCodeAndBothStreams)
{
	EXPECT_EQ(Run(TEXT("echo out; echo; echo err >&2; exit 3")),
		TEXT("ERROR Exit code: 3\n\n--- stdout ---\nout\n--- stderr ---\nerr"));
	EXPECT_EQ(Run(TEXT("printf 'a\\n b'")), TEXT("Exit code: 0\n\n--- stdout ---\na\n b"));
	EXPECT_EQ(Run(TEXT("true")), TEXT("Exit code: 0\n(no output)"));
	EXPECT_EQ(Run(TEXT("exit 4")), TEXT("ERROR Exit code: 4\n(no output)"));
	EXPECT_EQ(Run(TEXT("kill -9 $$")), TEXT("ERROR Exit code: 137\n(no output)"));
	EXPECT_EQ(Run(TEXT("pwd")) + TEXT("/"), TEXT("Exit code: 0\n\n--- stdout ---\n") + Project.Dir());
	EXPECT_EQ(Run(TEXT("pwd"), TEXT("/")), TEXT("Exit code: 0\n\n--- stdout ---\n/"));
	EXPECT_TRUE(Run(TEXT("if")).Contains(TEXT("--- stderr ---"))) << "a syntax error is told";
	EXPECT_EQ(TemporaryFiles(), 0);
}

TEST_F(CVXExecuteShell, GivesTheShellTheCommandAsItIs)
{
	const TCHAR* const Literals[] = {TEXT(R"(a "b" \"c\" \\ $HOME `x` $(y) ; | & é)"), TEXT(R"(ends in a backslash \)"),
		TEXT(R"(\\)"), TEXT("two\nlines\ttab"), TEXT("\""), TEXT("%s %d *")};
	for (const TCHAR* Literal : Literals)
	{
		EXPECT_EQ(Run(*FString::Printf(TEXT("printf '%%s' '%s'"), Literal)),
			FString(TEXT("Exit code: 0\n\n--- stdout ---\n")) + Literal);
	}
	EXPECT_EQ(Run(TEXT("A=\"x y\"; echo \"$A\" | tr xy ab && echo $((1+2)) # comment")),
		TEXT("Exit code: 0\n\n--- stdout ---\na b\n3"));
	EXPECT_EQ(Run(TEXT("echo a\\")), TEXT("Exit code: 0\n\n--- stdout ---\na\\"));
	EXPECT_EQ(Run(TEXT("mkdir -p a/b && ls a")), TEXT("Exit code: 0\n\n--- stdout ---\nb"));
}

TEST_F(CVXExecuteShell, RefusesWhatItCannotOrShallNotRun)
{
	const TCHAR* const Blocked[] = {TEXT("rm -rf /"), TEXT("RM -FR x"), TEXT("Format c:"), TEXT("a && mkfs.ext4 x"),
		TEXT(":(){:|:&};:"), TEXT("dd if=/dev/zero of=x")};
	for (const TCHAR* Command : Blocked)
	{
		EXPECT_EQ(Run(Command), FString(TEXT("ERROR Command blocked by safety policy: ")) + Command);
	}
	EXPECT_FALSE(FCVXExecuteShellTool::IsCommandBlocked(TEXT("formatter.bat")));
	EXPECT_EQ(Run(TEXT("")), TEXT("ERROR Missing required field: command"));
	EXPECT_EQ(Run(TEXT("pwd"), TEXT("none/here")),
		FString::Printf(TEXT("ERROR Failed to launch process: /bin/sh\nDirectory not found: %s"),
			*FPaths::ConvertRelativePathToFull(TEXT("none/here"))));
	EXPECT_EQ(Run(*FString::ChrN(5'000'000, u'x')), TEXT("ERROR Failed to launch process: /bin/sh"));
	const auto RunText = [](const TCHAR* Json) { return RunTool(FCVXExecuteShellTool(), Json); };
	EXPECT_EQ(RunText(TEXT("")), TEXT("ERROR Empty JSON input."));
	EXPECT_EQ(RunText(TEXT("[1]")), TEXT("ERROR Invalid JSON input."));
	EXPECT_EQ(RunText(TEXT("{}")), TEXT("ERROR Missing required field: command"));
	EXPECT_EQ(RunText(TEXT(R"({"command":["ls"]})")), TEXT("ERROR 'command' must be a string."));
	EXPECT_EQ(RunText(TEXT(R"({"command":"touch a\u0000b"})")),
		TEXT("ERROR 'command' and 'working_dir' can't contain NUL characters; no shell takes them."));
}

TEST_F(CVXExecuteShell, TakesOutNullDevicesAndWhatTheyLeaveBehind)
{
	const auto Strip = [](const TCHAR* Command) { return CVXShellCommandRules::StripNullDevice(Command); };
	EXPECT_EQ(Strip(TEXT("git status 2>NUL")), TEXT("git status "));
	EXPECT_EQ(Strip(TEXT("a > nul 2> /dev/NULL | b >/dev/null 2>&1")), TEXT("a   | b  2>&1"));
	EXPECT_EQ(Strip(TEXT("cat /dev/null annul")), TEXT("cat /dev/null annul"));
	Project.Write("Source/NUL", "x");
	Project.Write("Source/COM4", "x");
	Project.Write("Source/COM5", "x");
	EXPECT_EQ(Run(TEXT("true"), *Project.Path("Source")), TEXT("Exit code: 0\n(no output)"));
	EXPECT_FALSE(Project.Exists("Source/NUL") || Project.Exists("Source/COM4"));
	EXPECT_TRUE(Project.Exists("Source/COM5"));
}

TEST_F(CVXExecuteShell, EndsACommandAtItsLimitWithAllThatItStarted)
{
	const TCHAR* const Stubborn =
		TEXT("trap '' TERM INT HUP QUIT; loop() { while :; do sleep 1; done; }; cd Saved; echo $$ > pids; "
			 "(trap '' TERM; exec >&- 2>&-; loop) & echo $! >> pids; (loop) & echo $! >> pids; "
			 "setsid sh -c 'trap \"\" TERM; echo $$ >> pids; touch ready; while :; do sleep 1; done' & "
			 "exec >&- 2>&-; loop");
	const FClockOfFile Clock(Project.Path("Saved/ready"));
	const auto Limit = [&](const TCHAR* Seconds)
	{
		const FString Arguments = ToolArguments({{TEXT("command"), Stubborn}}).LeftChop(1) +
			TEXT(",\"timeout_seconds\":") + Seconds + TEXT("}");
		return RunTool(FCVXExecuteShellTool(), Arguments);
	};
	EXPECT_EQ(Limit(TEXT("0")), FString(TEXT("ERROR Command timed out after 1 seconds: ")) + Stubborn);
	ExpectAllGone("Saved/pids", 4);
	EXPECT_EQ(TemporaryFiles(), 2) << "what it wrote stays for who wants to see how far it came";
	fs::remove(TCHAR_TO_UTF8(*Project.Path("Saved/ready")));
	EXPECT_TRUE(Limit(TEXT("1000")).StartsWith(TEXT("ERROR Command timed out after 300 seconds: ")));
	ExpectAllGone("Saved/pids", 4);
}

TEST_F(CVXExecuteShell, LeavesNothingRunningBehindACommandThatHasEnded)
{
	EXPECT_EQ(Run(TEXT("sleep 1000 & echo $! > Saved/pids; echo done")), TEXT("Exit code: 0\n\n--- stdout ---\ndone"));
	ExpectAllGone("Saved/pids", 1);
}

TEST_F(CVXExecuteShell, BoundsWhatAFloodTakes)
{
	const FString Answer = Run(TEXT("yes é | head -c 200000000; echo end >&2"));
	EXPECT_TRUE(Answer.StartsWith(TEXT("Exit code: 0\n\n--- stdout ---\né\né\n")));
	EXPECT_TRUE(Answer.EndsWith(TEXT("\n\n--- stderr ---\nend")) || Answer.EndsWith(TEXT("é\n--- stderr ---\nend")))
		<< TCHAR_TO_UTF8(*Answer.Right(40));
	EXPECT_LT(Answer.Len(), 1024 * 1024);
	FCVXCommand Command;
	Command.CommandLine = MakeShellCommandLine(TEXT("echo $$ > Saved/pids; yes"));
	Command.WorkingDir = Project.Dir();
	Command.OutputFile = TEXT("shell_stdout_%s.txt");
	Command.ErrorFile = TEXT("shell_stderr_%s.txt");
	Command.MaxOutputBytes = 1000;
	const FCVXCommandResult Result = RunCommand(Command);
	EXPECT_EQ(Result.End, ECVXCommandEnd::Flooded);
	EXPECT_LE(Result.Output.Len(), FCVXCommandResult::MaxLoadedBytes);
	ExpectAllGone("Saved/pids", 1);
	EXPECT_EQ(TemporaryFiles(), 0);
	rusage Usage = {};
	ASSERT_EQ(::getrusage(RUSAGE_SELF, &Usage), 0);
	// Sanitizers take a multiple of what the program does, but a flood of 200 MB, which is 400 as text, wouldn't fit.
	EXPECT_LT(Usage.ru_maxrss, 300 * 1024) << "KiB at the most at any time";
}
} // namespace
