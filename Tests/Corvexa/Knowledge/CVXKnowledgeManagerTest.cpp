#include "Corvexa/Knowledge/KnowledgeFixture.h"
#include "Knowledge/CVXKnowledgeSummary.h"
#include "Support/FaultPlan.h"
#include "Support/LogCapture.h"

namespace
{
class CVXKnowledgeManagerTest : public FKnowledgeFixture
{
protected:
	/** The ids chosen, those as a summary with a star. */
	FString Select(const TArray<FString>& Keywords, int32 Budget = 100000, const TSet<FString>& Tools = {},
		const FString& Profile = TEXT("Coder"), const TSet<FString>& Exclude = {}) const
	{
		TArray<FString> Ids;
		for (const FCVXKnowledgeSelection& Each : Manager.SelectModules(Keywords, Tools, Profile, Budget, Exclude))
		{
			Ids.Add(Each.ModuleId + (Each.bUseSummary ? TEXT("*") : TEXT("")));
		}
		return FString::Join(Ids, TEXT(" "));
	}
};

TEST_F(CVXKnowledgeManagerTest, ReadsWhatCanBeReadAndLeavesTheRestOut)
{
	Ship(R"({"id":"Doors","file":"doors.md","title":"Doors","priority":5,"keywords":["Door",7,"Hinge"]}, 3,
		{"id":"","file":"doors.md"}, {"id":"gone","file":"gone.md"}, {"id":"doors","file":"other.md"})");
	Project.Write("Shipped/doors.md", "# Doors\n");
	Project.Write("Shipped/other.md", "text");
	FLogCapture Log;
	Manager.LoadAllModules();
	ASSERT_EQ(Manager.GetModules().Num(), 2);
	const FCVXKnowledgeModule* Doors = Manager.FindModuleById(TEXT("DOORS"));
	ASSERT_TRUE(Doors);
	EXPECT_EQ(Doors->Content, TEXT("# Doors\n"));
	EXPECT_EQ(Doors->EstimatedTokens, 12);
	EXPECT_EQ(FString::Join(Doors->Keywords, TEXT(",")), TEXT("door,hinge"));
	EXPECT_EQ(Doors->SourceLabel, TEXT("UE Engine"));
	EXPECT_EQ(Manager.GetModules()[1].SummaryTokens, 0);
	EXPECT_TRUE(Log.Contains(TEXT("Skipping knowledge module with empty id or file in source 'UE Engine'")));
	EXPECT_TRUE(Log.Contains(TEXT("Failed to load knowledge file: ")));
	EXPECT_TRUE(Log.Contains(TEXT("Loaded 2 knowledge modules from 2 sources")));

	for (const char* Manifest : {"", "[]", "{\"modules\":{}}", "{\"modules\":["})
	{
		Project.Write("Shipped/manifest.json", Manifest);
		Manager.LoadAllModules();
		EXPECT_TRUE(Manager.IsEmpty()) << Manifest;
	}
}

TEST_F(CVXKnowledgeManagerTest, ASummaryIsTheMarkedPartOrTheSkeletonAndTheRules)
{
	const struct
	{
		const TCHAR* Content;
		const TCHAR* Summary;
	} Cases[] = {
		{TEXT("a\n<!-- summary -->\n  short \n<!-- END SUMMARY -->\nb"), TEXT("short")},
		{TEXT("<!-- END SUMMARY -->\n# Head\n<!-- SUMMARY -->\nrest"), TEXT("# Head\n")},
		{TEXT("plain\n  - **bold**\n| row |\nyou must never do\nNEVER do\n\n```cpp\n# no\n```\n# yes"),
			TEXT("  - **bold**\n| row |\nyou must never do\nNEVER do\n# yes\n")},
		{TEXT("nothing here"), TEXT("")},
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(CVXKnowledgeSummary::Make(Case.Content), Case.Summary);
	}
	const FString Long = CVXKnowledgeSummary::ExtractSummary(TEXT("# ") + FString::ChrN(3000, TEXT('x')));
	EXPECT_EQ(Long.Len(), 2000 + 15);
	EXPECT_TRUE(Long.EndsWith(TEXT("x\n...(truncated)")));
}

TEST_F(CVXKnowledgeManagerTest, ChoosesByKeywordsTriggersAndPriorityWithinTheBudget)
{
	Ship(R"({"id":"ai","file":"a.md","keywords":["ai_behavior","texture","class"]},
		{"id":"tool","file":"a.md","tool_triggers":["edit_file","write_file"]},
		{"id":"mine","file":"a.md","profile_triggers":["coder"]},
		{"id":"always","file":"a.md","priority":50},
		{"id":"never","file":"a.md","keywords":["texture"],"priority":-200})");
	Project.Write("Shipped/a.md", "text");
	Manager.LoadAllModules();
	EXPECT_EQ(Select({TEXT("behavior")}, 99, {}, TEXT("x")), TEXT("always"));
	EXPECT_EQ(Select({TEXT("behavior"), TEXT("AI")}, 99, {}, TEXT("x")), TEXT("ai always"));
	EXPECT_EQ(Select({TEXT("Textures")}, 99, {}, TEXT("x")), TEXT("ai always"));
	EXPECT_EQ(Select({TEXT("classs"), TEXT("clas")}, 99, {}, TEXT("x")), TEXT("always"));
	EXPECT_EQ(Select({}, 99, {TEXT("WRITE_FILE"), TEXT("edit_file")}), TEXT("tool mine always"));
	EXPECT_EQ(Select({}, 99, {}, TEXT("Coder"), {TEXT("ALWAYS")}), TEXT("mine"));
	EXPECT_EQ(Select({}, 10), TEXT("")) << "each takes eleven tokens";

	Ship(R"({"id":"large","file":"large.md","priority":3},{"id":"plain","file":"plain.md","priority":2},
		{"id":"small","file":"a.md","priority":1})");
	Project.Write("Shipped/large.md", "# Short\n" + std::string(4000, 'x'));
	Project.Write("Shipped/plain.md", std::string(4000, 'x'));
	Manager.LoadAllModules();
	EXPECT_EQ(Select({}, 23), TEXT("large* small"));
	EXPECT_EQ(Select({}, 1100), TEXT("large small"));
}

TEST_F(CVXKnowledgeManagerTest, SavesAndDeletesInTheFirstWritableSource)
{
	Ship(R"({"id":"shipped","file":"a.md"})");
	Project.Write("Shipped/a.md", "text");
	ASSERT_TRUE(Manager.SaveModuleEx(
		TEXT("notes"), TEXT("Notes"), TEXT("one"), {TEXT("Door")}, {TEXT("read_file")}, {TEXT("Coder")}, 7, true));
	ASSERT_TRUE(Manager.FindModuleById(TEXT("notes")));
	ASSERT_TRUE(Manager.SaveModule(TEXT("NOTES"), TEXT("Notes 2"), TEXT("two"), {}, 1, false));
	EXPECT_EQ(Manager.FindModuleById(TEXT("notes"))->Content, TEXT("one")) << "not loaded again yet";
	Manager.LoadAllModules();
	EXPECT_EQ(Manager.GetModules().Num(), 2);
	EXPECT_EQ(Manager.FindModuleById(TEXT("notes"))->Content, TEXT("two"));
	const std::string Manifest = Project.Read("Saved/CVX/ProjectKnowledge/manifest.json");
	EXPECT_NE(Manifest.find("\"notes\""), std::string::npos) << "the id stays as it was written";
	EXPECT_NE(Manifest.find("\"NOTES.md\""), std::string::npos);

	EXPECT_FALSE(Manager.DeleteModule(TEXT("shipped")));
	EXPECT_TRUE(Manager.DeleteModule(TEXT("Notes")));
	EXPECT_FALSE(FPaths::FileExists(Project.Path("Saved/CVX/ProjectKnowledge/NOTES.md")));
	EXPECT_FALSE(Manager.FindModuleById(TEXT("notes")));
	EXPECT_FALSE(Manager.DeleteModule(TEXT("notes")));
}

TEST_F(CVXKnowledgeManagerTest, ADamagedManifestIsKeptBesideTheNewOne)
{
	Project.Write("Saved/CVX/ProjectKnowledge/manifest.json", "{ by hand");
	ASSERT_TRUE(Manager.SaveModule(TEXT("notes"), TEXT("Notes"), TEXT("one"), {}, 1, true));
	EXPECT_EQ(Project.Read("Saved/CVX/ProjectKnowledge/manifest.json.corrupted"), "{ by hand");
	EXPECT_TRUE(Manager.FindModuleById(TEXT("notes")));
}

TEST_F(CVXKnowledgeManagerTest, AFailureAnywhereInASaveIsToldAndLosesNothing)
{
	const int32 Calls = FFaultPlan::ForEach(EHostFault::File, FFaultPlan::EHow::Once,
		[&](int32)
		{
			Project.Write("Saved/CVX/ProjectKnowledge/manifest.json", R"({"modules":[{"id":"old","file":"old.md"}]})");
			const bool bSaved = Manager.SaveModule(TEXT("new"), TEXT("New"), TEXT("new text"), {}, 1, false);
			const std::string Now = Project.Read("Saved/CVX/ProjectKnowledge/manifest.json");
			EXPECT_EQ(bSaved, Now.find("\"new\"") != std::string::npos) << Now;
			if (Now.find("\"old\"") == std::string::npos)
			{
				EXPECT_NE(Project.Read("Saved/CVX/ProjectKnowledge/manifest.json.corrupted").find("\"old\""),
					std::string::npos);
			}
		});
	EXPECT_GE(Calls, 6);
}
} // namespace
