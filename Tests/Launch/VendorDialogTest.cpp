#include "Launch/Support/ProgramRun.h"
#include "Loopback/LoopbackServer.h"
#include "Support/TempProject.h"

#include <gtest/gtest.h>

// Runs of the program against a vendor whose answers the test writes.

namespace
{
std::string Event(const std::string& Type, const std::string& Data)
{
	return "event: " + Type + "\ndata: " + Data + "\n\n";
}

FLoopbackReply Answer(const std::string& Content)
{
	return FLoopbackReply::Events({Content, Event("message_stop", "{}")});
}

std::string Text(const std::string& Words)
{
	return Event("content_block_delta", R"({"index":0,"delta":{"type":"text_delta","text":")" + Words + R"("}})");
}

/** @param Arguments JSON, already escaped as a text in JSON. */
std::string Call(const std::string& Tool, const std::string& Arguments)
{
	return Event("content_block_start",
			   R"({"index":1,"content_block":{"type":"tool_use","id":"call-)" + Tool + R"(","name":")" + Tool +
				   R"("}})") +
		Event("content_block_delta",
			R"({"index":1,"delta":{"type":"input_json_delta","partial_json":")" + Arguments + R"("}})") +
		Event("content_block_stop", R"({"index":1})");
}

std::string Complete()
{
	return Call("attempt_completion", R"({\"result\":\"All that was asked for is done.\"})");
}

struct FVendor
{
	FVendor()
	{
		Project.Write("Config/DefaultEditor.ini",
			"[/Script/Corvexa.CVXSettings]\nSettingsVersion=5\n+ProviderProfiles=(ProfileName=\"Vendor\",BaseURL=\"" +
				Server.Url("") + "\",ApiKeyEnvVar=\"VENDOR_KEY\")\n");
	}

	FProgramRun Start(const std::string& Command, std::vector<std::string> More = {}) const
	{
		const std::string Root = TCHAR_TO_UTF8(*Project.Dir());
		More.insert(More.begin(), {Command, "--project", Root, "--provider", "Vendor"});
		return FProgramRun(std::move(More)).With("VENDOR_KEY=sk-top-secret-key");
	}

	FTempProject Project;
	FLoopbackServer Server;
};

bool Contains(const std::string& Whole, const std::string& Part)
{
	return Whole.find(Part) != std::string::npos;
}

const std::string Question =
	R"({\"question\":\"Which one?\",\"options\":[{\"title\":\"Red\"},{\"title\":\"Blue\",\"description\":\"calm\"}]})";
} // namespace

TEST(VendorDialog, AQuestionIsAnsweredByNumberAndTheAnswerReachesTheModel)
{
	FVendor Vendor;
	Vendor.Server.Enqueue(Answer(Call("ask_followup_question", Question)));
	Vendor.Server.Enqueue(Answer(Complete()));
	const FProgramResult Result = Vendor.Start("chat").Run("go\n2\n/exit\n");
	EXPECT_EQ(Result.Status, 0) << Result.Errors;
	EXPECT_TRUE(Contains(Result.Output, "Question: Which one?\n  1. Red\n  2. Blue - calm\n")) << Result.Output;
	ASSERT_EQ(Vendor.Server.RequestCount(), 2U);
	EXPECT_TRUE(Contains(Vendor.Server.Requests()[1].Request.Body, R"(Selection 1: Blue\n)"));
	EXPECT_TRUE(Contains(Result.Output, "== Result ==\nAll that was asked for is done.\n"));
}

TEST(VendorDialog, ARunThatIsAskedSomethingNeedsAPersonHoweverItIsAsked)
{
	FVendor ByTool;
	ByTool.Server.Enqueue(Answer(Call("ask_followup_question", Question)));
	const FProgramResult Asked = ByTool.Start("run", {"go"}).Run();
	EXPECT_EQ(Asked.Status, 3);
	EXPECT_TRUE(Contains(Asked.Errors, "corvexa: this needs a person: an answer to: Which one?")) << Asked.Errors;

	FVendor InWords;
	InWords.Server.Route("/v1/messages", Answer(Text("Shall I go on?")));
	const FProgramResult Wondering = InWords.Start("run", {"go", "--json"}).Run();
	EXPECT_EQ(Wondering.Status, 3);
	EXPECT_TRUE(Contains(Wondering.Output, R"({"event":"needs_person","text":"an answer to the model's question"})"))
		<< Wondering.Output;
}

TEST(VendorDialog, ARefusedRequestIsTriedAgainAndThePlanIsShownAsItChanges)
{
	FVendor Vendor;
	Vendor.Server.Enqueue(FLoopbackReply::Sized(429, "{}", {{"Retry-After", "0.01"}}));
	Vendor.Server.Enqueue(Answer(
		Call("update_todo_list", R"({\"todos\":[{\"id\":\"1\",\"content\":\"Look\",\"status\":\"completed\"}]})")));
	Vendor.Server.Enqueue(Answer(Text("Nearly\x1b[31m there. ") + Complete()));
	const FProgramResult Result = Vendor.Start("run", {"go"}).Run();
	EXPECT_EQ(Result.Status, 0) << Result.Errors << Result.Output;
	EXPECT_TRUE(Contains(Result.Output, "Plan:\n  [x] Look\n")) << Result.Output;
	EXPECT_FALSE(Contains(Result.Output, "\x1b"));
	EXPECT_EQ(Vendor.Server.RequestCount(), 3U);
}

TEST(VendorDialog, AKeyThatTheModelSpeaksInPiecesIsHiddenAndTheRestOfItsWordsIsThere)
{
	FVendor Vendor;
	Vendor.Server.Enqueue(
		Answer(Text("It is sk-top-") + Text("secret-key, as") + Text(" I said: sk-top") + Complete()));
	const FProgramResult Result = Vendor.Start("run", {"go"}).Run();
	EXPECT_EQ(Result.Status, 0) << Result.Errors;
	EXPECT_TRUE(Contains(Result.Output, "It is [API key], as I said: sk-top\n")) << Result.Output;
}

TEST(VendorDialog, ASubAgentsWorkIsShownUnderItsNameAndItsCallsAreAskedAbout)
{
	FVendor Vendor;
	Vendor.Server.Enqueue(Answer(Call("delegate_to_agent",
		R"({\"agent_profile\":\"Coder\",\"task\":\"Write the notes file\",\"context\":\"none\"})")));
	Vendor.Server.Enqueue(
		Answer(Text("I write it.") + Call("write_file", R"({\"path\":\"Source/Notes.txt\",\"content\":\"hello\"})")));
	Vendor.Server.Enqueue(Answer(Complete()));
	Vendor.Server.Enqueue(Answer(Complete()));
	const FProgramResult Result = Vendor.Start("chat").Run("go\ny\ny\n/exit\n");
	EXPECT_EQ(Result.Status, 0) << Result.Errors << Result.Output;
	EXPECT_TRUE(Contains(Result.Output, "  [Coder]\n")) << Result.Output;
	EXPECT_TRUE(Contains(Result.Output, "  I write it.\n")) << Result.Output;
	EXPECT_TRUE(Contains(Result.Output, "  Approval needed: Write File: Source/Notes.txt\n")) << Result.Output;
	EXPECT_TRUE(Contains(Result.Output, "\n[Orchestrator]\n")) << Result.Output;
	EXPECT_EQ(Vendor.Project.Read("Source/Notes.txt"), "hello");
}
