#include "Launch/Support/Sample.h"

#include <algorithm>
#include <gtest/gtest.h>

// Conversations that outlive the program that began them.

namespace
{
/** The value of the n-th member of this name in lines of JSON. */
std::string FindMember(const std::string& Json, const std::string& Name, int Nth = 0)
{
	const std::string Key = "\"" + Name + "\":\"";
	std::size_t Found = Json.find(Key);
	for (; Nth > 0 && Found != std::string::npos; --Nth)
	{
		Found = Json.find(Key, Found + 1);
	}
	const std::size_t From = Found + Key.size();
	return Found == std::string::npos ? std::string() : Json.substr(From, Json.find('"', From) - From);
}

int CountLines(const std::string& Text)
{
	return static_cast<int>(std::count(Text.begin(), Text.end(), '\n'));
}
} // namespace

TEST(StoredConversation, GoesOnByItsIdTheBeginningOfItOrAsTheLast)
{
	const FSample Sample;
	EXPECT_TRUE(Holds(Sample.Run("tasks", {}).Run().Output, "no stored conversation yet"));
	EXPECT_TRUE(Holds(Sample.Run("chat", {"--resume"}).Run().Errors, "this project has no stored conversation yet"));
	EXPECT_EQ(Sample.Run("chat", {"--agent", "Coder", "--approve", "all"}).Run("fix it\nand that\n").Status, 0);
	const std::string Id = FindMember(Sample.Run("tasks", {"--json"}).Run().Output, "id");
	ASSERT_EQ(Id.size(), 32U);
	const std::string Short = Id.substr(0, 6);
	for (const std::vector<std::string>& How :
		{std::vector<std::string>{"--resume"}, {"--resume", "last"}, {"--resume=" + Id}, {"--resume=" + Short}})
	{
		const FProgramResult Resumed = Sample.Run("chat", How).Run("And again\n");
		EXPECT_EQ(Resumed.Status, 0) << Resumed.Errors;
		EXPECT_TRUE(Holds(Resumed.Output, "Going on with 'fix it', "));
	}
	EXPECT_EQ(CountLines(Sample.Run("tasks", {"--json"}).Run().Output), 1) << "one, however often it went on";
	EXPECT_TRUE(Holds(Sample.Run("tasks", {}).Run().Output, "* " + Id.substr(0, 8) + "  complete"));

	const FProgramResult Ghost = Sample.Run("run", {"--resume=ghost", "go"}).Run();
	EXPECT_EQ(Ghost.Status, 2);
	EXPECT_TRUE(Holds(Ghost.Errors, "there is no stored conversation 'ghost'"));
	EXPECT_EQ(Sample.Run("tools", {"--resume"}).Run().Status, 2) << "nothing there to go on with";
}

TEST(StoredConversation, BranchesAndTheBranchStaysThoughNothingMoreIsSaid)
{
	const FSample Sample;
	EXPECT_EQ(Sample.Run("run", {"--agent", "Coder", "--approve", "all", "fix", "it"}).Run().Status, 0);
	const FProgramResult Branched = Sample.Run("chat", {"--fork", "last", "2"}).Run();
	EXPECT_EQ(Branched.Status, 0) << Branched.Errors;
	EXPECT_TRUE(Holds(Branched.Output, "'Fork of fix it' is a new conversation with 2 messages"));
	const std::string Json = Sample.Run("tasks", {"--json"}).Run().Output;
	EXPECT_TRUE(Holds(Json, "\"messages\":2}"));
	EXPECT_TRUE(Holds(Sample.Run("tasks", {}).Run().Output, "* " + FindMember(Json, "id", 1).substr(0, 8)))
		<< "the branch is the last one now";
	const FProgramResult Whole =
		Sample.Run("run", {"--fork", FindMember(Json, "id", 0), "--approve", "all", "once more"}).Run();
	EXPECT_EQ(Whole.Status, 0) << Whole.Errors;
	EXPECT_EQ(CountLines(Sample.Run("tasks", {"--json"}).Run().Output), 3);

	const auto Tasks = std::filesystem::path(Sample.Root()) / "Saved/CVX/Tasks";
	for (const char* Name : {"ABCD1111", "ABCD2222"})
	{
		std::filesystem::copy(Tasks / FindMember(Json, "id", 0), Tasks / Name);
	}
	const FProgramResult Unclear = Sample.Run("chat", {"--fork", "abcd"}).Run();
	EXPECT_EQ(Unclear.Status, 2);
	EXPECT_TRUE(Holds(Unclear.Errors, "'abcd' begins the ids of 2 stored conversations: "));
	EXPECT_EQ(Sample.Run("chat", {"--fork", "ABCD2"}).Run().Status, 0);
}

TEST(StoredConversation, ADelegationIsShownUnderTheSubAgentsNameAndItsResultIsAccepted)
{
	const FSample Sample;
	const FProgramResult Result = Sample.Run("run", {"--approve", "all", "fix", "it"}).Run();
	EXPECT_EQ(Result.Status, 0) << Result.Errors;
	std::size_t From = 0;
	for (const std::string Part : {"  [>] Look for the faulty check\n", "* Delegate To Agent\n", "  [Coder]\n",
			 "  * Edit File: Source/Skirmish/Weapons/SkirmishWeapon.cpp\n", "[Orchestrator]\n",
			 "[x] Have the Coder fix it\n", "done delegate_to_agent", "== Result ==\nThe Coder fixed"})
	{
		From = Result.Output.find(Part, From);
		ASSERT_NE(From, std::string::npos) << "no \"" << Part << "\" where it belongs in:\n" << Result.Output;
	}
	EXPECT_EQ(Result.Output.find("[Coder]"), Result.Output.rfind("[Coder]")) << "it speaks once, and is done";
	EXPECT_TRUE(Holds(Sample.Weapon(), Fixed));
	EXPECT_TRUE(Holds(Sample.Run("tasks", {}).Run().Output, "Coder             Fix the check in"))
		<< "below the conversation that asked for it";
}

TEST(StoredConversation, ADelegationThatWasKilledInTheMiddleIsFinishedByTheNextStart)
{
	const FSample Sample;
	const FProgramResult Killed = Sample.Run("run", {"--approve", "all", "fix", "it"})
									  .With("CORVEXA_DEMO_PAUSE_MS=5")
									  .RunAtTerminal({{"  [Coder]", ""}, {"classic", "", true}});
	EXPECT_EQ(Killed.Status, -9) << Killed.Output;
	EXPECT_TRUE(Holds(Sample.Weapon(), Fault));
	const FProgramResult Resumed = Sample.Run("run", {"--resume", "--approve", "all", "continue"}).Run();
	EXPECT_EQ(Resumed.Status, 0) << Resumed.Errors;
	EXPECT_TRUE(Holds(Resumed.Output, "Going on with 'fix it', "));
	EXPECT_TRUE(Holds(Resumed.Output, "== Result ==\nThe Coder fixed"));
	EXPECT_TRUE(Holds(Sample.Weapon(), Fixed));

	const FProgramResult Again = Sample.Run("run", {"--resume", "--approve", "all", "continue"}).Run();
	EXPECT_TRUE(Holds(Again.Output, "nothing was changed in this turn")) << "what is done isn't handed out again";
}
