#include "Core/CVXReservedNames.h"

#include "Core/CVXLog.h"
#include "HAL/FileManager.h"
#include "Misc/Paths.h"

namespace
{
constexpr const TCHAR* DeviceNames[] = {
	TEXT("NUL"), TEXT("CON"), TEXT("PRN"), TEXT("AUX"), TEXT("COM1"), TEXT("COM2"), TEXT("COM3"), TEXT("LPT1")};
constexpr const TCHAR* OptionNames[] = {TEXT("-p"), TEXT("-m"), TEXT("-v")};

/** A path under which the system takes a device's name for a file's. */
FString ToExtendedPath(const FString& Path)
{
#if PLATFORM_WINDOWS
	FString Platform = Path;
	FPaths::MakePlatformFilename(Platform);
	return FString::Printf(TEXT("\\\\?\\%s"), *Platform);
#else
	return Path;
#endif
}
} // namespace

void CVXReservedNames::CleanUp(const FString& Directory)
{
	IFileManager& Files = IFileManager::Get();
	for (const TCHAR* Name : DeviceNames)
	{
		const FString Path = ToExtendedPath(FPaths::Combine(Directory, Name));
		if (Files.FileExists(*Path) && Files.Delete(*Path, false, true))
		{
			UE_LOG(LogCorvexa, Warning, TEXT("Cleaned up reserved-name file from project root: %s"), *Path);
		}
	}
	for (const TCHAR* Name : OptionNames)
	{
		const FString Path = FPaths::Combine(Directory, Name);
		if (Files.DirectoryExists(*Path) && Files.DeleteDirectory(*Path, false, true))
		{
			UE_LOG(LogCorvexa, Warning, TEXT("Cleaned up stray directory from project root: %s"), *Path);
		}
	}
}
