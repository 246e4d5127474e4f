#pragma once

#include "Containers/Map.h"
#include "Modules/ModuleInterface.h"
#include "Templates/UniquePtr.h"
#include "UObject/NameTypes.h"

/** The modules that are linked into the program, by name, and those of them that run. Game thread. */
class FModuleManager
{
public:
	using FMaker = TUniquePtr<IModuleInterface> (*)();

	static FModuleManager& Get();

	/** Makes a module known, before `main` as a rule. See IMPLEMENT_MODULE. */
	void RegisterModule(const TCHAR* Name, FMaker Maker);

	/** Starts a module unless it runs. @return null when no module of that name is linked in. */
	IModuleInterface* LoadModule(FName Name);
	/** As `LoadModule`, for a name that is known to be there. */
	IModuleInterface& LoadModuleChecked(FName Name);

	bool IsModuleLoaded(FName Name) const { return Loaded.Contains(Name); }
	/** Null when it doesn't run. */
	IModuleInterface* GetModule(FName Name) const;
	template <typename ModuleType>
	static ModuleType* GetModulePtr(FName Name)
	{
		return static_cast<ModuleType*>(Get().GetModule(Name));
	}

	/** Shuts a module down and lets go of it. @return false when it doesn't run. */
	bool UnloadModule(FName Name);

private:
	FModuleManager() = default;

	/** By name in the case given; names that can't be in use before `main` aren't used here. */
	TArray<TPair<const TCHAR*, FMaker>> Known;
	TMap<FName, TUniquePtr<IModuleInterface>> Loaded;
};

/** Makes the class known as a module. The symbol keeps a linker from leaving it out of a static library. */
#define IMPLEMENT_MODULE(ModuleClass, ModuleName)                                                            \
	extern "C" bool CorvexaModule_##ModuleName;                                                              \
	bool CorvexaModule_##ModuleName =                                                                        \
		(FModuleManager::Get().RegisterModule(                                                               \
			 TEXT(#ModuleName), []() -> TUniquePtr<IModuleInterface> { return MakeUnique<ModuleClass>(); }), \
			true);
