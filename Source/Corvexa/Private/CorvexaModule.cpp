#include "CorvexaModule.h"

#include "Agent/Tasks/CVXTaskManager.h"
#include "Core/CVXApiKeysFile.h"
#include "Core/CVXLog.h"
#include "Core/CVXReservedNames.h"
#include "Diagnostics/CVXPerformanceCommands.h"
#include "Misc/Paths.h"
#include "Modules/ModuleManager.h"
#include "Tools/CVXBuiltinTools.h"
#include "Tools/CVXToolRegistry.h"

IMPLEMENT_MODULE(FCorvexaModule, Corvexa)

void FCorvexaModule::StartupModule()
{
	UE_LOG(LogCorvexa, Log, TEXT("Corvexa: Starting up"));
	RegisterBuiltinTools();
	FCVXApiKeysFile::EnsureTemplate();
	CVXReservedNames::CleanUp(FPaths::ConvertRelativePathToFull(FPaths::ProjectDir()));
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
	FCVXToolRegistry::Get().Clear();
}
