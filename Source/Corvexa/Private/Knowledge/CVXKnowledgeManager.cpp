#include "Knowledge/CVXKnowledgeManager.h"

#include "HAL/FileManager.h"
#include "Interfaces/IPluginManager.h"
#include "Knowledge/CVXKnowledgeManifest.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"

DEFINE_LOG_CATEGORY(LogCVXKnowledge);

namespace
{
constexpr const TCHAR* PluginName = TEXT("Corvexa");
constexpr const TCHAR* KnowledgeFolder = TEXT("Content/CVX/Knowledge");

FString GetKnowledgeDirUnder(const FString& PluginsDir)
{
	return FPaths::ConvertRelativePathToFull(FPaths::Combine(PluginsDir, PluginName, KnowledgeFolder));
}
} // namespace

FCVXKnowledgeManager& FCVXKnowledgeManager::Get()
{
	static FCVXKnowledgeManager Manager;
	return Manager;
}

FString FCVXKnowledgeManager::GetPluginKnowledgeDir()
{
	if (const TSharedPtr<IPlugin> Plugin = IPluginManager::Get().FindPlugin(PluginName))
	{
		const FString Own = FPaths::Combine(Plugin->GetBaseDir(), KnowledgeFolder);
		if (FPaths::DirectoryExists(Own))
		{
			return Own;
		}
	}
	const FString OfProject = GetKnowledgeDirUnder(FPaths::ProjectPluginsDir());
	const FString OfEngine = GetKnowledgeDirUnder(FPaths::EnginePluginsDir());
	return !FPaths::DirectoryExists(OfProject) && FPaths::DirectoryExists(OfEngine) ? OfEngine : OfProject;
}

FString FCVXKnowledgeManager::GetProjectKnowledgeDir()
{
	return FPaths::ConvertRelativePathToFull(FPaths::Combine(FPaths::ProjectSavedDir(), TEXT("CVX/ProjectKnowledge")));
}

void FCVXKnowledgeManager::RegisterSource(const FString& Label, const FString& Directory, bool bWritable)
{
	if (Directory.IsEmpty())
	{
		UE_LOG(LogCVXKnowledge, Warning, TEXT("RegisterSource: Empty directory for source '%s' — ignored"), *Label);
		return;
	}
	if (Label.IsEmpty())
	{
		UE_LOG(LogCVXKnowledge, Warning, TEXT("RegisterSource: Empty label for directory '%s' — ignored"), *Directory);
		return;
	}
	if (!Sources.ContainsByPredicate([&](const FCVXKnowledgeSource& Source) { return Source.Directory == Directory; }))
	{
		Sources.Add({Label, Directory, bWritable});
	}
}

void FCVXKnowledgeManager::LoadAllModules()
{
	Modules.Empty();
	for (const FCVXKnowledgeSource& Source : Sources)
	{
		Modules.Append(FCVXKnowledgeManifest::LoadModules(Source));
	}
	bLoaded = true;
	UE_LOG(LogCVXKnowledge, Log, TEXT("Loaded %d knowledge modules from %d sources"), Modules.Num(), Sources.Num());
}

const FCVXKnowledgeModule* FCVXKnowledgeManager::FindModuleById(const FString& Id) const
{
	return Modules.FindByPredicate([&](const FCVXKnowledgeModule& Module) { return Module.Id == Id; });
}

TArray<TPair<FString, FString>> FCVXKnowledgeManager::GetModuleList() const
{
	TArray<TPair<FString, FString>> List;
	for (const FCVXKnowledgeModule& Module : Modules)
	{
		List.Emplace(Module.Id, Module.Title);
	}
	return List;
}

bool FCVXKnowledgeManager::SaveModuleEx(const FString& Id, const FString& Title, const FString& Content,
	const TArray<FString>& Keywords, const TArray<FString>& ToolTriggers, const TArray<FString>& ProfileTriggers,
	int32 Priority, bool bReload)
{
	const FCVXKnowledgeSource* Source =
		Sources.FindByPredicate([](const FCVXKnowledgeSource& Each) { return Each.bWritable; });
	if (!Source)
	{
		UE_LOG(LogCVXKnowledge, Error, TEXT("SaveModuleEx: No writable knowledge source registered."));
		return false;
	}
	IFileManager::Get().MakeDirectory(*Source->Directory, true);
	const FString DocumentName = Id + TEXT(".md");
	const FString DocumentPath = FPaths::Combine(Source->Directory, DocumentName);
	if (!FFileHelper::SaveStringToFile(Content, *DocumentPath))
	{
		UE_LOG(LogCVXKnowledge, Error, TEXT("SaveModuleEx: Failed to write %s"), *DocumentPath);
		return false;
	}
	FCVXKnowledgeModule Module;
	Module.Id = Id;
	Module.Title = Title;
	Module.Priority = Priority;
	Module.Keywords = Keywords;
	Module.ToolTriggers = ToolTriggers;
	Module.ProfileTriggers = ProfileTriggers;
	FCVXKnowledgeManifest Manifest = FCVXKnowledgeManifest::Open(Source->Directory);
	Manifest.Put(Module, DocumentName);
	if (!Manifest.Save())
	{
		UE_LOG(LogCVXKnowledge, Error, TEXT("SaveModuleEx: Failed to write manifest %s"), *Manifest.GetPath());
		return false;
	}
	if (bReload)
	{
		LoadAllModules();
	}
	return true;
}

bool FCVXKnowledgeManager::SaveModule(const FString& Id, const FString& Title, const FString& Content,
	const TArray<FString>& Keywords, int32 Priority, bool bReload)
{
	return SaveModuleEx(Id, Title, Content, Keywords, {}, {}, Priority, bReload);
}

bool FCVXKnowledgeManager::DeleteModule(const FString& Id)
{
	for (const FCVXKnowledgeSource& Source : Sources)
	{
		FString Document;
		FCVXKnowledgeManifest Manifest = FCVXKnowledgeManifest::Open(Source.Directory);
		if (!Source.bWritable || !Manifest.Remove(Id, Document))
		{
			continue;
		}
		if (!Manifest.Save())
		{
			UE_LOG(LogCVXKnowledge, Error, TEXT("DeleteModule: Failed to write manifest %s"), *Manifest.GetPath());
			return false;
		}
		if (!Document.IsEmpty())
		{
			IFileManager::Get().Delete(*FPaths::Combine(Source.Directory, Document));
		}
		LoadAllModules();
		return true;
	}
	UE_LOG(LogCVXKnowledge, Warning, TEXT("DeleteModule: Module '%s' not found in any writable source."), *Id);
	return false;
}

void FCVXKnowledgeManager::Reset()
{
	Modules.Empty();
	Sources.Empty();
	bLoaded = false;
}
