#include "Agent/Prompt/CVXPromptSources.h"
#include "HAL/IConsoleManager.h"
#include "Modules/ModuleManager.h"
#include "SemanticSearch/CVXBM25Index.h"
#include "Support/LogCapture.h"
#include "Support/TempProject.h"
#include "Tools/CVXToolRegistry.h"

#include <gtest/gtest.h>

TEST(CorvexaModule, StartsToolsAndCommandsCleansTheProjectRootAndUndoesItAll)
{
	const FTempProject Project;
	Project.Write("NUL", "left by a redirection");
	Project.Write("nul.txt", "kept");
	Project.Write("-p/deep/file", "left by mkdir");
	Project.Write("-m", "a file of that name is kept");
	Project.Write("Saved/CVX/apikeys.cfg", "MINE=1\n");
	Project.Write("Saved/CVX/BM25Index/index.json", R"({"docs":[{"fp":"/a.h","tx":"Magazine\n","tc":1}],"avg":1})");
	const FLogCapture Log;
	FModuleManager& Modules = FModuleManager::Get();

	ASSERT_NE(Modules.LoadModule(TEXT("Corvexa")), nullptr);
	EXPECT_NE(FCVXToolRegistry::Get().FindTool(TEXT("read_file")), nullptr);
	EXPECT_NE(IConsoleManager::Get().FindConsoleObject(TEXT("cvx.perfstats")), nullptr);
	EXPECT_EQ(FCVXBM25Index::Get().GetDocCount(), 1) << "the stored index is taken up";
	EXPECT_TRUE(FCVXPromptSources::Get().CodeContext(TEXT("Magazine"), 5, 2000).Contains(TEXT("--- /a.h (lines")));
	EXPECT_FALSE(Project.Exists("NUL"));
	EXPECT_FALSE(Project.Exists("-p"));
	EXPECT_TRUE(Project.Exists("nul.txt"));
	EXPECT_TRUE(Project.Exists("-m"));
	EXPECT_EQ(Project.Read("Saved/CVX/apikeys.cfg"), "MINE=1\n") << "keys are never overwritten";
	EXPECT_EQ(Log.Count(TEXT("Cleaned up "), ELogVerbosity::Warning), 2);
	EXPECT_TRUE(Log.Contains(TEXT("Corvexa: Startup complete")));

	EXPECT_TRUE(Modules.UnloadModule(TEXT("Corvexa")));
	EXPECT_TRUE(FCVXToolRegistry::Get().GetAllTools().IsEmpty());
	EXPECT_TRUE(FCVXBM25Index::Get().IsEmpty());
	EXPECT_FALSE(FCVXPromptSources::Get().CodeContext);
	EXPECT_EQ(IConsoleManager::Get().FindConsoleObject(TEXT("cvx.perfstats")), nullptr);
	EXPECT_FALSE(Modules.UnloadModule(TEXT("Corvexa")));
	EXPECT_EQ(Modules.LoadModule(TEXT("NoSuchModule")), nullptr);
}
