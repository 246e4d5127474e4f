#include "../ToolCalls.h"
#include "../ToolFixture.h"
#include "Corvexa/Support/ClockOfFile.h"
#include "Tools/Git/CVXGitCommitTool.h"
#include "Tools/Git/CVXGitProcess.h"
#include "Tools/Git/CVXGitStatusTool.h"

#include <filesystem>

namespace
{
class CVXGitTools : public FToolFixture
{
protected:
	CVXGitTools()
	{
		Git(TEXT("init -q -b main && git config user.name tester && git config user.email t@example.com && "
				 "echo Saved/ > .git/info/exclude"));
	}

	FString Git(const TCHAR* Command) const
	{
		return RunShell(TEXT("cd '") + Project.Dir() + TEXT("' && git ") + Command).TrimEnd();
	}

	static FString Query(const TCHAR* Operation, const TCHAR* Arguments = TEXT(""))
	{
		return RunTool(FCVXGitStatusTool(), ToolArguments({{TEXT("operation"), Operation}, {TEXT("args"), Arguments}}));
	}

	static FString Commit(const FString& Message, bool bAddAll = true)
	{
		const FString Arguments = ToolArguments({{TEXT("message"), Message}}).LeftChop(1) +
			(bAddAll ? TEXT(",\"add_all\":true}") : TEXT("}"));
		return RunTool(FCVXGitCommitTool(), Arguments);
	}
};

TEST_F(CVXGitTools, QueryGivesGitsOwnWords)
{
	EXPECT_EQ(Query(TEXT("log"), TEXT("-3")),
		TEXT("ERROR git log -3 failed:\nfatal: your current branch 'main' does not have any commits yet"));
	EXPECT_EQ(Query(TEXT("diff")), TEXT("git diff: (no output)"));
	Project.Write("a b.txt", "one\n");
	EXPECT_TRUE(Query(TEXT("status"), TEXT("--porcelain")).Contains(TEXT("?? \"a b.txt\"")));
	Git(TEXT("add -A && git commit -qm 'first one'"));
	EXPECT_EQ(Query(TEXT("log"), TEXT("--format='%s (%an)' -1")), TEXT("first one (tester)"));
	EXPECT_EQ(Query(TEXT("log"), TEXT("\"--format=%s #\" -1 -- \"a b.txt\"")), TEXT("first one #"));
	EXPECT_EQ(Query(TEXT("show"), TEXT("HEAD:'a b.txt'")), TEXT("one"));
	EXPECT_EQ(Query(TEXT("log"), TEXT("--oneline --author=O'Neil -- (x) *")),
		TEXT("git log --oneline --author=O'Neil -- (x) *: (no output)"))
		<< "no shell reads it";
	EXPECT_TRUE(Query(TEXT("LOG")).StartsWith(TEXT("ERROR git LOG failed:\n")));
}

TEST_F(CVXGitTools, QueryRefusesWhatCouldDoMore)
{
	EXPECT_EQ(Query(TEXT("push")), TEXT("ERROR Invalid operation 'push'. Allowed: status, diff, log, branch, show."));
	for (const TCHAR* Character :
		{TEXT("&"), TEXT("|"), TEXT(";"), TEXT("`"), TEXT("$"), TEXT(">"), TEXT("<"), TEXT("\n"), TEXT("\r")})
	{
		EXPECT_EQ(Query(TEXT("log"), *(FString(TEXT("-1 ")) + Character + TEXT(" |"))),
			FString::Printf(TEXT("ERROR Argument contains blocked character '%s'. Shell metacharacters are not allowed "
								 "in git_query args."),
				Character));
	}
	for (const TCHAR* Option : {TEXT("--output=x"), TEXT("--outpu x"), TEXT("\"--out\"'put'=x")})
	{
		EXPECT_EQ(Query(TEXT("diff"), Option),
			TEXT("ERROR Argument '--output' is not allowed in git_query args: a query writes no files."));
	}
	for (const TCHAR* Change :
		{TEXT("-D main"), TEXT("-vd main"), TEXT("--del main"), TEXT("new-branch"), TEXT("-m x")})
	{
		EXPECT_TRUE(Query(TEXT("branch"), Change).StartsWith(TEXT("ERROR These arguments change branches")))
			<< TCHAR_TO_UTF8(Change);
	}
	for (const TCHAR* List : {TEXT("-a -vv"), TEXT("--list main"), TEXT("--merged HEAD"), TEXT("--show-current")})
	{
		EXPECT_FALSE(Query(TEXT("branch"), List).Contains(TEXT("These arguments"))) << TCHAR_TO_UTF8(List);
	}
	const auto Run = [](const TCHAR* Json) { return RunTool(FCVXGitStatusTool(), Json); };
	EXPECT_EQ(Run(TEXT("")), TEXT("ERROR Empty JSON input."));
	EXPECT_EQ(Run(TEXT("7")), TEXT("ERROR Invalid JSON input."));
	EXPECT_EQ(Run(TEXT("{}")), TEXT("ERROR Missing required field: operation"));
	EXPECT_EQ(Run(TEXT(R"({"operation":"log","args":{}})")), TEXT("ERROR 'args' must be a string."));
	EXPECT_TRUE(Run(TEXT(R"({"operation":"log","args":"a\u0000b"})")).StartsWith(TEXT("ERROR Argument contains")));
	EXPECT_EQ(Query(TEXT("log"), *FString::ChrN(5'000'000, u'x')).Left(10), TEXT("ERROR git "));
	EXPECT_FALSE(Project.Exists("x"));
}

TEST_F(CVXGitTools, CommitTakesAnyMessageAsItIs)
{
	const TCHAR* const Messages[] = {TEXT(R"(says "quoted" and \"more\")"),
		TEXT(R"(`touch x` $(touch x) $HOME; touch x)"), TEXT("title\n\nbody with 'quotes'\n* and é"),
		TEXT(R"(ends in \\)"), TEXT(R"(ends in "\")")};
	for (const TCHAR* Message : Messages)
	{
		Project.Write("a.txt", TCHAR_TO_UTF8(Message));
		const FString Answer = Commit(Message);
		EXPECT_TRUE(Answer.StartsWith(TEXT("git add -A: OK\n[main "))) << TCHAR_TO_UTF8(*Answer);
		EXPECT_EQ(Git(TEXT("log -1 --format=%B")), FString(Message));
	}
	EXPECT_FALSE(Project.Exists("x"));
}

TEST_F(CVXGitTools, CommitTellsWhatHappened)
{
	Project.Write("a.txt", "x");
	EXPECT_TRUE(Commit(TEXT("m"), false).Contains(TEXT("untracked files present"))) << "nothing is staged: no error";
	EXPECT_TRUE(Commit(TEXT("m")).StartsWith(TEXT("git add -A: OK\n[main (root-commit) ")));
	const FString Nothing = Commit(TEXT("m"));
	EXPECT_TRUE(Nothing.StartsWith(TEXT("git add -A: OK\n")) && Nothing.Contains(TEXT("nothing to commit")));
	EXPECT_EQ(RunTool(FCVXGitCommitTool(), TEXT("{}")), TEXT("ERROR Missing required field: message"));
	EXPECT_EQ(Commit(TEXT("")), TEXT("ERROR Missing required field: message"));
	EXPECT_EQ(RunTool(FCVXGitCommitTool(), TEXT(R"({"message":"a\u0000"})")),
		TEXT("ERROR 'message' can't contain NUL characters."));
	EXPECT_EQ(RunTool(FCVXGitCommitTool(), TEXT(R"({"message":[]})")), TEXT("ERROR 'message' must be a string."));
	Project.Write(".git/index.lock", "");
	EXPECT_TRUE(Commit(TEXT("m")).StartsWith(TEXT("ERROR git add -A failed:\nfatal: ")));
	EXPECT_TRUE(Commit(TEXT("m"), false).StartsWith(TEXT("ERROR git commit failed:\nfatal: ")));
}

TEST_F(CVXGitTools, RunsThatLastTooLongGiveWhatTheyHaveWritten)
{
	Git(TEXT("config alias.slow '!echo begun; echo warned >&2; touch Saved/ready; sleep 1000'"));
	FString Error;
	{
		const FClockOfFile Clock(Project.Path("Saved/ready"));
		EXPECT_EQ(RunGit(TEXT("slow"), Project.Dir(), Error), TEXT("begun"));
	}
	EXPECT_EQ(RunGit(TEXT("status"), Project.Path("none"), Error), TEXT(""));
	EXPECT_EQ(Error, TEXT("Failed to launch git process."));
	const std::filesystem::path Temporary = TCHAR_TO_UTF8(*Project.Path("Saved/CVX/Temp"));
	EXPECT_TRUE(std::filesystem::is_empty(Temporary));
}
} // namespace
