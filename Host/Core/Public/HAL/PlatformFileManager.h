#pragma once

#include "GenericPlatform/GenericPlatformFile.h"

/** Gives the file system of the process. */
class FPlatformFileManager
{
public:
	static FPlatformFileManager& Get();
	IPlatformFile& GetPlatformFile() { return PlatformFile; }

private:
	IPlatformFile PlatformFile;
};
