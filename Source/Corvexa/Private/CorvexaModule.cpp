#include "CorvexaModule.h"

#include "Agent/Prompt/CVXPromptSources.h"
#include "Agent/Tasks/CVXTaskManager.h"
#include "Core/CVXApiKeysFile.h"
#include "Core/CVXLog.h"
#include "Core/CVXReservedNames.h"
#include "Diagnostics/CVXPerformanceCommands.h"
#include "Knowledge/CVXKnowledgeManager.h"
#include "Knowledge/CVXMultiLangKeywords.h"
#include "Knowledge/CVXPromptInjector.h"
#include "MCP/CVXMCPManager.h"
#include "Misc/Paths.h"
#include "Modules/ModuleManager.h"
#include "SemanticSearch/CVXAutoRAG.h"
#include "SemanticSearch/CVXBM25Index.h"
#include "Tools/CVXBuiltinTools.h"
#include "Tools/CVXToolRegistry.h"

IMPLEMENT_MODULE(FCorvexaModule, Corvexa)

namespace
{
/** Loads what the plug-in and the project know, and lets the prompts have of it what fits. */
void StartKnowledge()
{
	FCVXKnowledgeManager& Manager = FCVXKnowledgeManager::Get();
	const FString PluginDir = FCVXKnowledgeManager::GetPluginKnowledgeDir();
	Manager.RegisterSource(TEXT("UE Engine"), PluginDir, false);
	Manager.RegisterSource(TEXT("Project"), FCVXKnowledgeManager::GetProjectKnowledgeDir(), true);
	Manager.LoadAllModules();
	FCVXMultiLangKeywords::LoadTranslations(PluginDir);
	FCVXPromptSources::Get().Knowledge = [](const FCVXKnowledgeQuery& Query, TSet<FString>& InjectedIds)
	{
		return FCVXPromptInjector::BuildKnowledgeInjection(Query.RecentUserMessages, Query.AssistantContext,
			Query.ActiveTools, Query.AgentProfileName, Query.TokenBudget, InjectedIds);
	};
}

/** Takes up the stored index, if there is one, and lets the prompts have snippets of it. */
void StartSearch()
{
	(void)FCVXBM25Index::Get().Load();
	FCVXPromptSources::Get().CodeContext = &FCVXAutoRAG::GetCodeContext;
}

void StopSearch()
{
	FCVXPromptSources::Get().CodeContext = nullptr;
	FCVXBM25Index::Get().Clear();
}

void StopKnowledge()
{
	FCVXPromptSources::Get().Knowledge = nullptr;
	FCVXMultiLangKeywords::Reset();
	FCVXKnowledgeManager::Get().Reset();
}
} // namespace

void FCorvexaModule::StartupModule()
{
	UE_LOG(LogCorvexa, Log, TEXT("Corvexa: Starting up"));
	RegisterBuiltinTools();
	StartSearch();
	FCVXApiKeysFile::EnsureTemplate();
	CVXReservedNames::CleanUp(FPaths::ConvertRelativePathToFull(FPaths::ProjectDir()));
	StartKnowledge();
	FCVXMCPManager::Get().StartAll();
	FCVXTaskManager::Get().RestoreSessions();
	CVXPerformanceCommands::Register();
	UE_LOG(LogCorvexa, Log, TEXT("Corvexa: Startup complete"));
}

void FCorvexaModule::ShutdownModule()
{
	UE_LOG(LogCorvexa, Log, TEXT("Corvexa: Shutting down"));
	FCVXTaskManager::Get().SaveAllCheckpoints();
	CVXPerformanceCommands::Unregister();
	FCVXTaskManager::Get().ReleaseTasks();
	FCVXMCPManager::Get().Shutdown();
	FCVXToolRegistry::Get().Clear();
	StopKnowledge();
	StopSearch();
}
