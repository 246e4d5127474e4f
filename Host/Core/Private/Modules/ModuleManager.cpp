#include "Modules/ModuleManager.h"

FModuleManager& FModuleManager::Get()
{
	static FModuleManager Manager;
	return Manager;
}

void FModuleManager::RegisterModule(const TCHAR* Name, FMaker Maker)
{
	Known.Emplace(Name, Maker);
}

IModuleInterface* FModuleManager::LoadModule(FName Name)
{
	if (IModuleInterface* Running = GetModule(Name))
	{
		return Running;
	}
	for (const TPair<const TCHAR*, FMaker>& Each : Known)
	{
		if (Name == FName(Each.Key))
		{
			IModuleInterface* Module = Loaded.Add(Name, Each.Value()).Get();
			Module->StartupModule();
			return Module;
		}
	}
	return nullptr;
}

IModuleInterface& FModuleManager::LoadModuleChecked(FName Name)
{
	IModuleInterface* Module = LoadModule(Name);
	check(Module);
	return *Module;
}

IModuleInterface* FModuleManager::GetModule(FName Name) const
{
	const TUniquePtr<IModuleInterface>* Module = Loaded.Find(Name);
	return Module ? Module->Get() : nullptr;
}

bool FModuleManager::UnloadModule(FName Name)
{
	TUniquePtr<IModuleInterface>* Found = Loaded.Find(Name);
	if (!Found)
	{
		return false;
	}
	const TUniquePtr<IModuleInterface> Module = MoveTemp(*Found);
	Module->ShutdownModule();
	Loaded.Remove(Name);
	return true;
}
