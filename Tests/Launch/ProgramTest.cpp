#include "Launch/Support/Sample.h"
#include "Loopback/LoopbackServer.h"

#include <gtest/gtest.h>
#include <sstream>

namespace
{
/** The lines that tell of calls and their ends, without times. */
std::string ListCalls(const std::string& Output)
{
	std::istringstream Lines(Output);
	std::string Calls;
	for (std::string Line; std::getline(Lines, Line);)
	{
		const std::size_t Start = Line.find_first_not_of(' ');
		const std::string Rest = Start == std::string::npos ? std::string() : Line.substr(Start);
		if (Rest.starts_with("* ") || Rest.starts_with("done ") || Rest.starts_with("failed ") || Rest.starts_with("["))
		{
			Calls += Rest.substr(0, Rest.find(',')) + "\n";
		}
	}
	return Calls;
}

std::string SettingsWithVendor(const std::string& Url)
{
	return "[/Script/Corvexa.CVXSettings]\nSettingsVersion=5\n+ProviderProfiles=(ProfileName=\"Vendor\",BaseURL=\"" +
		Url + "\",ApiKeyEnvVar=\"VENDOR_KEY\")\n";
}
} // namespace

TEST(Program, TheDemoModelFindsAndFixesTheSamplesFaultOverRealHttp)
{
	const FSample Sample;
	ASSERT_TRUE(Holds(Sample.Weapon(), Fault));
	const FProgramResult Result = Sample.Run("run", {"--agent", "Coder", "--approve", "all", "fix", "it"}).Run();
	EXPECT_EQ(Result.Status, 0) << Result.Errors;
	EXPECT_EQ(Result.Errors, "");
	EXPECT_TRUE(Holds(Result.Output, "No API key was found"));
	EXPECT_TRUE(Holds(Result.Output, "demo model"));
	EXPECT_TRUE(Holds(Result.Output, "== Result =="));
	EXPECT_TRUE(Holds(Result.Output, "tokens in"));
	EXPECT_EQ(Result.Output.find('\x1b'), std::string::npos) << "no terminal, no escape sequences";
	EXPECT_TRUE(Holds(Sample.Weapon(), Fixed));
	EXPECT_EQ(Sample.Project.Read("Config/DefaultEditor.ini").find("Demo"), std::string::npos)
		<< "what holds for the run isn't saved";

	const FProgramResult Again = Sample.Run("run", {"--agent", "Coder", "--json", "-"}).Run("fix it\n");
	EXPECT_EQ(Again.Status, 0) << Again.Errors;
	EXPECT_TRUE(Holds(Again.Output, "{\"event\":\"result\",\"text\":\"I searched"))
		<< "it says what it found, not what the script hoped for";
}

TEST(Program, TheDemoModelPlaysItsScenariosAlikeInEachDialect)
{
	struct FPlay
	{
		std::string Agent;
		/** Whether the change is allowed. */
		bool bAllow;
	};
	for (const FPlay& Play : {FPlay{"Coder", true}, {"Coder", false}, {"Orchestrator", true}})
	{
		std::string Usual;
		for (const char* Dialect : {"demo", "demo-openai", "demo-gemini"})
		{
			const FSample Sample;
			const FProgramResult Result = Sample.Run("chat", {"--agent", Play.Agent, "--provider", Dialect})
											  .Run(Play.bAllow ? "fix it\ny\ny\n/exit\n" : "fix it\nn\n/exit\n");
			EXPECT_EQ(Result.Status, 0) << Dialect << Result.Errors << Result.Output;
			EXPECT_TRUE(Holds(Sample.Weapon(), Play.bAllow ? Fixed : Fault)) << Dialect;
			EXPECT_EQ(Result.Output.find(" 0 tokens in"), std::string::npos) << Dialect << " tells no usage";
			const std::string Calls = ListCalls(Result.Output);
			EXPECT_TRUE(Holds(Calls, "Edit File"));
			Usual = Usual.empty() ? Calls : Usual;
			EXPECT_EQ(Calls, Usual) << Dialect;
		}
	}
}

TEST(Program, ModelsAreListedWithWhereKeysComeFromAndNeverAKey)
{
	const FSample Sample;
	Sample.Project.Write("Config/DefaultEditor.ini",
		"[/Script/Corvexa.CVXSettings]\nSettingsVersion=5\n+ProviderProfiles=(ProfileName=\"Default\")\n"
		"+ProviderProfiles=(ProfileName=\"Mine\",ProviderType=OpenAICompat,BaseURL=\"http://here/v1\",ModelId=\"m-1\","
		"MaxContextTokens=4321,ApiKeyEnvVar=\"sk-pasted-key\")\n");
	Sample.Project.Write("Saved/CVX/apikeys.cfg", "GEMINI_API_KEY=sk-filed-key\n");
	const auto List = [&](std::vector<std::string> More)
	{ return Sample.Run("models", std::move(More)).With("OPENAI_API_KEY=sk-exported-key").Run(); };
	const std::string All = List({}).Output;
	const std::string Json = List({"--json"}).Output;
	for (const char* Line : {"Anthropic (anthropic): no key; ANTHROPIC_API_KEY would hold it\n",
			 "OpenAI (openai): key found in the environment, OPENAI_API_KEY\n",
			 "Google Gemini (gemini): key found in Saved/CVX/apikeys.cfg, GEMINI_API_KEY\n",
			 "Ollama (ollama): local, no key needed\n", "Custom (custom): key found in a profile\n",
			 "<- Default (active)", "<- Mine\n"})
	{
		EXPECT_TRUE(Holds(All, Line));
	}
	EXPECT_TRUE(Holds(Json, "\"id\":\"m-1\",\"name\":\"m-1\",\"context_tokens\":4321,"));
	EXPECT_TRUE(Holds(Json, "\"key\":\"key_file\",\"key_variable\":\"GEMINI_API_KEY\"}"));
	EXPECT_EQ((All + Json).find("sk-"), std::string::npos);

	const std::string One = List({"OpenAI"}).Output;
	EXPECT_TRUE(Holds(One, "gpt-4.1-nano"));
	EXPECT_EQ(One.find("claude"), std::string::npos);
	const FProgramResult Unknown = List({"opnai"});
	EXPECT_EQ(Unknown.Status, 2);
	EXPECT_TRUE(Holds(Unknown.Errors, "no vendor is named 'opnai'; did you mean 'openai'?"));
}

TEST(Program, ARunThatNeedsAPersonSaysForWhatAndChangesNothing)
{
	const FSample Sample;
	const std::string Before = Sample.Weapon();
	const FProgramResult Result = Sample.Run("run", {"--agent", "Coder", "--provider", "demo"}).Run("fix it");
	EXPECT_EQ(Result.Status, 3);
	EXPECT_TRUE(Holds(Result.Errors, "corvexa: this needs a person: approval of "));
	EXPECT_TRUE(Holds(Result.Errors, "SkirmishWeapon.cpp"));
	EXPECT_EQ(Sample.Weapon(), Before);
}

TEST(Program, WrongUsageIsToldInOneLineWithStatusTwo)
{
	const FSample Sample;
	struct FCase
	{
		std::vector<std::string> Arguments;
		const char* Error;
	};
	const FCase Cases[] = {
		{{}, "no command given"},
		{{"rnu"}, "unknown command 'rnu'; did you mean 'run'?"},
		{{"run", "--prject", "x"}, "unknown option '--prject'; did you mean '--project'?"},
		{{"run", "--project", Sample.Root()}, "'run' needs a request"},
		{{"run", "--project", Sample.Root() + "none", "x"}, "no project at"},
		{{"run", "--project", Sample.Root(), "--agent", "Codr", "x"},
			"no agent profile is named 'Codr'; did you mean 'Coder'?"},
		{{"run", "--project", Sample.Root(), "--provider", "Other", "x"},
			"no provider profile is named 'Other'; there are: Default, demo"},
	};
	for (const FCase& Case : Cases)
	{
		const FProgramResult Result = FProgramRun(Case.Arguments).Run();
		EXPECT_EQ(Result.Status, 2);
		EXPECT_TRUE(Holds(Result.Errors, Case.Error));
		EXPECT_EQ(Result.Output, "");
	}
	EXPECT_EQ(FProgramRun({"--help"}).Run().Status, 0);
	EXPECT_TRUE(Holds(FProgramRun({"run", "--help"}).Run().Output, "Usage: corvexa run REQUEST | - [OPTIONS]"));
	EXPECT_TRUE(Holds(FProgramRun({"--version"}).Run().Output, "corvexa "));
}

TEST(Program, AVendorsErrorEndsTheRunWithStatusOneAndTheKeyShowsNowhere)
{
	const FSample Sample;
	FLoopbackServer Vendor;
	Vendor.Route("/v1/messages", FLoopbackReply::Sized(400, "{\"error\":\"refused for sk-top-secret-key\"}"));
	Sample.Project.Write("Config/DefaultEditor.ini", SettingsWithVendor(Vendor.Url("")));
	const FProgramResult Result = Sample.Run("run", {"--provider", "vendor", "--model", "m1", "--verbose", "hello"})
									  .With("VENDOR_KEY=sk-top-secret-key")
									  .Run();
	EXPECT_EQ(Result.Status, 1);
	EXPECT_TRUE(Holds(Result.Errors, "corvexa: HTTP 400"));
	ASSERT_EQ(Vendor.RequestCount(), 1U);
	EXPECT_TRUE(Holds(Vendor.Requests()[0].Request.Body, "\"model\":\"m1\""));
	EXPECT_EQ(Vendor.Requests()[0].Request.Header("x-api-key"), "sk-top-secret-key");
	for (const std::string& Text : {Result.Output, Result.Errors, Sample.Log()})
	{
		EXPECT_EQ(Text.find("sk-top-secret-key"), std::string::npos) << Text;
	}
	EXPECT_EQ(Sample.Project.Read("Config/DefaultEditor.ini").find("m1"), std::string::npos);
}

TEST(Program, ADeltaIsShownWhileTheAnswerStillComesAndInterruptsEndTheRun)
{
	const FSample Sample;
	FLoopbackServer Vendor;
	FLoopbackReply Reply =
		FLoopbackReply::Events({"event: content_block_delta\ndata: "
								"{\"index\":0,\"delta\":{\"type\":\"text_delta\",\"text\":\"FirstWord\"}}\n\n",
			"event: message_stop\ndata: {}\n\n"});
	Reply.StallAt(Reply.WireSize() - 20);
	Vendor.Route("/v1/messages", Reply);
	Sample.Project.Write("Config/DefaultEditor.ini", SettingsWithVendor(Vendor.Url("")));
	const FProgramResult Run = Sample.Run("run", {"--provider", "Vendor", "hello"})
								   .With("VENDOR_KEY=sk-top-secret-key")
								   .RunAtTerminal({{"FirstWord", "\x03"}});
	EXPECT_EQ(Run.Status, 130) << Run.Errors << Run.Output;

	const FProgramResult Chat =
		Sample.Run("chat", {"--provider", "Vendor"})
			.With("VENDOR_KEY=sk-top-secret-key")
			.With("NO_COLOR=1")
			.RunAtTerminal({{"> ", "hello\n"}, {"FirstWord", "\x03"}, {"Type 'continue' to go on", ""},
				{"> ", "continue\n"}, {"FirstWord", "\x03"}, {"Ctrl-C again leaves", "\x03"}});
	EXPECT_EQ(Chat.Status, 130) << Chat.Errors << Chat.Output;
	EXPECT_EQ(Chat.Output.find("\x1b[3"), std::string::npos) << "no colour is wanted";
	ASSERT_EQ(Vendor.RequestCount(), 3U);
	EXPECT_TRUE(Holds(Vendor.Requests()[2].Request.Body, "hello")) << "the conversation is kept";
	EXPECT_TRUE(Holds(Vendor.Requests()[2].Request.Body, "continue"));
}

TEST(Program, AChatAsksBeforeItChangesAFileAndTakesTheAnswer)
{
	const FSample Sample;
	const FProgramResult Denied = Sample.Run("chat", {"--agent", "Coder"})
									  .RunAtTerminal({{"> ", "fix it\n"}, {"Allow it?", "what\n"},
										  {"Please type y, n, a or v", "n\n"}, {"== Result ==", ""}, {"> ", "\x04"}});
	EXPECT_EQ(Denied.Status, 0) << Denied.Errors << Denied.Output;
	EXPECT_TRUE(Holds(Sample.Weapon(), Fault));

	const FProgramResult Allowed = Sample.Run("chat", {"--agent", "Coder"}).Run("fix it\ny\n/exit\n");
	EXPECT_EQ(Allowed.Status, 0) << Allowed.Errors << Allowed.Output;
	EXPECT_TRUE(Holds(Sample.Weapon(), Fixed));
}

TEST(Program, WhatWasTypedAheadIsNoAnswerToAnApproval)
{
	const FSample Sample;
	const FProgramResult Result =
		Sample.Run("chat", {"--agent", "Coder"})
			.RunAtTerminal({{"> ", "fix it\ny\n"}, {"Allow it?", "n\n"}, {"== Result ==", ""}, {"> ", "\x04"}});
	EXPECT_EQ(Result.Status, 0) << Result.Errors << Result.Output;
	EXPECT_TRUE(Holds(Sample.Weapon(), Fault));
}

TEST(Program, AChatWhoseInputEndsAheadOfAnAnswerNeedsAPerson)
{
	const FSample Sample;
	const FProgramResult Result = Sample.Run("chat", {"--agent", "Coder"}).Run("fix it\n");
	EXPECT_EQ(Result.Status, 3) << Result.Output;
	EXPECT_TRUE(Holds(Sample.Weapon(), Fault));
}

TEST(Program, TheDemoModelKeepsAPlanAsksAndIsHeldToItsEnd)
{
	const FSample Sample;
	const FProgramResult Result = Sample.Run("chat", {"--agent", "Coder", "--approve", "all"})
									  .Run("Make the magazine of the pistol larger\n2\n/exit\n");
	EXPECT_EQ(Result.Status, 0) << Result.Errors;
	EXPECT_TRUE(Holds(Result.Output, "  [>] Read the weapon table\n"));
	EXPECT_TRUE(Holds(Result.Output, "  2. 18 - "));
	EXPECT_TRUE(Holds(Result.Output, "The result isn't accepted yet"));
	EXPECT_TRUE(Holds(Result.Output, "  [x] Change the pistol's row\n"));
	EXPECT_TRUE(Holds(Sample.Project.Read("Content/Data/Weapons.csv"), "Pistol,24,3,18,60"));

	// The conversation is there for the next start, which doesn't save it anew.
	for (int Start = 0; Start < 2; ++Start)
	{
		const FProgramResult Tasks = Sample.Run("tasks", {}).Run();
		EXPECT_EQ(Tasks.Status, 0) << Tasks.Errors;
		EXPECT_TRUE(Holds(Tasks.Output, "complete"));
		EXPECT_TRUE(Holds(Tasks.Output, "Coder"));
	}
}

TEST(Program, OneToolRunsAsTheModelWouldRunIt)
{
	const FSample Sample;
	const FProgramResult List = Sample.Run("tools", {"--agent", "Architect"}).Run();
	EXPECT_EQ(List.Status, 0) << List.Errors;
	EXPECT_TRUE(Holds(List.Output, "read_file"));
	EXPECT_EQ(List.Output.find("write_file"), std::string::npos) << "this agent only reads";
	EXPECT_TRUE(Holds(Sample.Run("tools", {"--json"}).Run().Output, "\"input_schema\":{\"type\":\"object\""));

	const auto Call = [&](const std::string& Name, const std::string& Arguments, std::vector<std::string> More = {})
	{
		More.insert(More.begin(), {Name, Arguments, "--agent", "Coder"});
		return Sample.Run("tool", std::move(More)).Run("{\"path\":\"Config\"}");
	};
	EXPECT_TRUE(Holds(Call("read_file", "{\"path\":\"Content/Data/Weapons.csv\"}").Output, "Pistol,24,3,12"));
	EXPECT_TRUE(Holds(Call("list_files", "-").Output, "DefaultGame.ini"));
	EXPECT_EQ(Call("read_file", "not json").Status, 1);
	const std::string Write = "{\"path\":\"Content/Data/New.csv\",\"content\":\"a\"}";
	const FProgramResult Asked = Call("write_file", Write);
	EXPECT_EQ(Asked.Status, 3);
	EXPECT_TRUE(Holds(Asked.Errors, "this needs a person: approval of write_file"));
	EXPECT_FALSE(Sample.Project.Exists("Content/Data/New.csv"));
	EXPECT_EQ(Call("write_file", Write, {"--approve", "all"}).Status, 0);
	EXPECT_EQ(Sample.Project.Read("Content/Data/New.csv"), "a");
	const FProgramResult Unknown = Call("wite_file", Write);
	EXPECT_EQ(Unknown.Status, 2);
	EXPECT_TRUE(Holds(Unknown.Errors, "did you mean 'write_file'?"));
}
