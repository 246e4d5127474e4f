#pragma once

#include "Misc/ConfigCacheIni.h"
#include "Support/TempProject.h"
#include "UObject/UObjectGlobals.h"

/** A project of its own with a config that reads its files, for tests of settings objects. */
class FConfigProject : public FTempProject
{
public:
	FConfigProject() { GConfig = Config.Get(); }
	~FConfigProject()
	{
		ShutdownUObjects();
		GConfig = nullptr;
	}

	/** What a new start of the program finds: the files, and nothing in memory. */
	void Restart()
	{
		ShutdownUObjects();
		Config = MakeUnique<FConfigCacheIni>();
		GConfig = Config.Get();
	}

private:
	TUniquePtr<FConfigCacheIni> Config = MakeUnique<FConfigCacheIni>();
};
