#include "Tools/Files/CVXFileListing.h"

#include "Tools/CVXToolArguments.h"
#include "Tools/Files/CVXProjectPaths.h"

#include <algorithm>

namespace
{
const TCHAR* const ContentPathNote =
	TEXT("NOTE: '/Game/' is a UE content path (used in load_asset/save_asset). Filesystem tools use disk paths — "
		 "translated '/Game/' to 'Content/' automatically. Use 'Content/' prefix for list_files/search_files, '/Game/' "
		 "only in Python unreal API.\n\n");
} // namespace

bool FCVXListingDirectory::Resolve(const FJsonObject& Arguments, FCVXToolExecutionResult& OutError)
{
	if (!ReadStringArgument(Arguments, TEXT("path"), Shown, OutError))
	{
		return false;
	}
	if (TranslateContentPath(Shown))
	{
		Note = ContentPathNote;
	}
	FString Message;
	if (!ResolveProjectPath(Shown, Absolute, ProjectDir, Message))
	{
		OutError = FCVXToolExecutionResult::MakeError(Message);
		return false;
	}
	return true;
}

bool GetFilePattern(
	const FJsonObject& Arguments, FStringView Name, FString& InOutPattern, FCVXToolExecutionResult& OutError)
{
	if (!ReadStringArgument(Arguments, Name, InOutPattern, OutError))
	{
		return false;
	}
	TArray<FString> Parts;
	const TCHAR* Slashes[] = {TEXT("/"), TEXT("\\")};
	InOutPattern.ParseIntoArray(Parts, Slashes, 2);
	if (!Parts.Contains(TEXT("..")))
	{
		return true;
	}
	OutError = FCVXToolExecutionResult::MakeError(
		FString::Printf(TEXT("Access denied: '%s' is outside the project directory."), *InOutPattern));
	return false;
}

void MakeProjectRelative(TArray<FString>& Paths, const FString& ProjectDir)
{
	for (FString& Path : Paths)
	{
		(void)Path.RemoveFromStart(ProjectDir);
	}
}

void KeepFirstSorted(TArray<FString>& Paths, int32 Count)
{
	if (Paths.Num() > Count)
	{
		std::nth_element(Paths.GetData(), Paths.GetData() + Count, Paths.GetData() + Paths.Num());
		Paths.SetNum(Count);
	}
	Paths.Sort();
}
