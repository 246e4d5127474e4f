#include "Knowledge/CVXPromptInjector.h"

#include "Corvexa/Knowledge/KnowledgeFixture.h"
#include "Knowledge/CVXKeywordExtractor.h"
#include "Support/LogCapture.h"

namespace
{
FCVXMessage Say(const TCHAR* Text, const TCHAR* Id = TEXT("0123456789abcdef0123456789abcdef"))
{
	FCVXMessage Message = FCVXMessage::MakeUserText(Text);
	Message.MessageId = Id;
	return Message;
}

class CVXPromptInjectorTest : public FKnowledgeFixture
{
protected:
	FString Inject(const TArray<FCVXMessage>& Messages, const FString& AssistantContext = FString())
	{
		return FCVXPromptInjector::BuildKnowledgeInjection(
			Messages, AssistantContext, {}, TEXT("Coder"), Budget, InjectedIds);
	}

	int32 Budget = 1000;
	TSet<FString> InjectedIds;
};

TEST(CVXKeywordExtractor, KeepsWhatSaysWhatATextIsAbout)
{
	const struct
	{
		const TCHAR* Text;
		const TCHAR* Keywords;
	} Cases[] = {
		{TEXT("Please create the door, then spawn BP_Door and AI!"), TEXT("BP_Door door spawn AI")},
		{TEXT("ai up to Door door DOOR"), TEXT("Door")},
		{TEXT("fix /Game/Maps/Start a/b\\c Door.cpp ../x http:/y snake_case"), TEXT("snake_case Door cpp http")},
		{TEXT("deadbeef99 decade 12-34 блюпринт xблю UCVXAgentLoop cvxagentloop"), TEXT("UCVXAgentLoop decade")},
		{TEXT(""), TEXT("")},
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(CVXKeywordExtractor::ExtractKeywords(Case.Text), Case.Keywords) << TCHAR_TO_UTF8(Case.Text);
	}
	FString Many;
	for (TCHAR Letter = TEXT('A'); Letter <= TEXT('O'); ++Letter)
	{
		Many += FString::Printf(TEXT("My%cActor "), Letter);
	}
	const FString Kept = CVXKeywordExtractor::ExtractKeywords(Many);
	EXPECT_TRUE(Kept.StartsWith(TEXT("MyOActor MyNActor"))) << TCHAR_TO_UTF8(*Kept);
	EXPECT_TRUE(Kept.EndsWith(TEXT("MyDActor"))) << "the last twelve";
}

TEST_F(CVXPromptInjectorTest, ShowsWhatFitsTheWordsOnceWithTheProjectsOwnFirst)
{
	Ship(R"({"id":"bp","file":"bp.md","title":"Blueprints","keywords":["blueprint","graph"]},
		{"id":"big","file":"big.md","title":"Big","keywords":["blueprint"]},
		{"id":"other","file":"bp.md","title":"Other","keywords":["sound"]})");
	Project.Write("Shipped/bp.md", "About graphs.");
	Project.Write("Shipped/big.md", "# Big head\n" + std::string(8000, 'x'));
	ASSERT_TRUE(
		Manager.SaveModule(TEXT("doors"), TEXT("Our doors"), TEXT("They creak.\n"), {TEXT("blueprint")}, 50, true));
	FCVXMultiLangKeywords::LoadTranslations(FPaths::ProjectDir());

	FLogCapture Log;
	const FString Text = Inject({Say(TEXT("Где блюпринт?")), Say(TEXT("A graph, please."))});
	EXPECT_TRUE(Text.StartsWith(TEXT("\n\n[Auto-Injected Knowledge — Implementation Reference]\n")));
	EXPECT_TRUE(
		Text.EndsWith(TEXT("query_ue_api provides ACCURATE NAMES.\n\n[Project Knowledge]\n\n--- Our doors ---\n"
						   "They creak.\n\n[UE Engine Knowledge]\n\n--- Blueprints ---\nAbout graphs.\n\n--- Big "
						   "---\n# Big head\n\n(Summary — use list_project_knowledge for full detail)\n")))
		<< TCHAR_TO_UTF8(*Text);
	EXPECT_TRUE(Log.Contains(TEXT("Knowledge injection: 3 modules")));
	EXPECT_TRUE(Log.Contains(TEXT("  Project modules: doors")));
	EXPECT_TRUE(Log.Contains(TEXT("  UE Engine modules: bp, big")));
	EXPECT_EQ(InjectedIds.Num(), 3);
	EXPECT_TRUE(Inject({Say(TEXT("Где блюпринт?"))}).IsEmpty()) << "each is shown once";
	EXPECT_TRUE(Log.Contains(TEXT("  NO modules matched — agent has NO knowledge this turn!")));
	EXPECT_TRUE(Inject({Say(TEXT("Go on"))}, TEXT("I look at the sound now.")).Contains(TEXT("--- Other ---")));
}

TEST_F(CVXPromptInjectorTest, MessagesOfTheAgentsOwnSayNothingOfWhatTheUserWants)
{
	Ship(R"({"id":"bp","file":"bp.md","title":"Blueprints","keywords":["blueprint"],"priority":9})");
	Project.Write("Shipped/bp.md", "About graphs.");
	EXPECT_TRUE(Inject(
		{Say(TEXT("blueprint"), TEXT("auto-retry-2")), Say(TEXT("blueprint"), TEXT("Verify-Hint")), Say(TEXT(""))},
		TEXT("blueprint"))
					.IsEmpty());
	EXPECT_FALSE(Inject({Say(TEXT("hello"))}).IsEmpty()) << "by its priority alone";
}
} // namespace
