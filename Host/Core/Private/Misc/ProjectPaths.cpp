#include "Misc/Paths.h"

#include "CoreGlobals.h"
#include "HAL/PlatformProcess.h"
#include "Misc/ScopeRWLock.h"

namespace
{
struct FPlaces
{
	FRWLock Lock;
	FString ProjectFile;
	/** Empty while nothing was set. */
	FString ProjectDir;
	FString EngineDir;
};

FPlaces& Places()
{
	static FPlaces* Instance = new FPlaces;
	return *Instance;
}

FString AsDirectory(const FString& Path)
{
	FString Full = FPaths::ConvertRelativePathToFull(Path);
	return Full.EndsWith(TEXT("/")) ? Full : Full + TEXT("/");
}

void SetProjectName(const FString& Name)
{
	const int32 Length = std::min(Name.Len(), (int32)UE_ARRAY_COUNT(GInternalProjectName) - 1);
	FMemory::Memcpy(GInternalProjectName, *Name, (SIZE_T)Length * sizeof(TCHAR));
	GInternalProjectName[Length] = 0;
}
} // namespace

FString FPaths::ProjectDir()
{
	const FReadScopeLock Guard(Places().Lock);
	return Places().ProjectDir.IsEmpty() ? AsDirectory(TEXT(".")) : Places().ProjectDir;
}

FString FPaths::EngineDir()
{
	const FReadScopeLock Guard(Places().Lock);
	const FString& Set = Places().EngineDir;
	return Set.IsEmpty() ? GetPath(FPlatformProcess::ExecutablePath()) + TEXT("/") : Set;
}

FString FPaths::GetProjectFilePath()
{
	const FReadScopeLock Guard(Places().Lock);
	return Places().ProjectFile;
}

void FPaths::SetProjectFilePath(const FString& NewFilePath)
{
	const FString Full = NewFilePath.IsEmpty() ? FString() : ConvertRelativePathToFull(NewFilePath);
	const FWriteScopeLock Guard(Places().Lock);
	Places().ProjectFile = Full;
	Places().ProjectDir = Full.IsEmpty() ? FString() : GetPath(Full) + TEXT("/");
	SetProjectName(GetBaseFilename(Full));
}

void FPaths::SetEngineDir(const FString& NewEngineDir)
{
	const FString Full = NewEngineDir.IsEmpty() ? FString() : AsDirectory(NewEngineDir);
	const FWriteScopeLock Guard(Places().Lock);
	Places().EngineDir = Full;
}
