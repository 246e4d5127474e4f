#include "Tools/Files/CVXSearchFilesTool.h"

#include "HAL/FileManager.h"
#include "Misc/Paths.h"
#include "Tools/CVXToolArguments.h"
#include "Tools/Files/CVXFileListing.h"

namespace
{
constexpr int32 MaxResults = 2000;

TArray<FString> FindFiles(const FString& Directory, const FString& Pattern, bool bRecursive)
{
	IFileManager& Files = IFileManager::Get();
	TArray<FString> Paths;
	if (bRecursive)
	{
		Files.FindFilesRecursive(Paths, *Directory, *Pattern, true, false);
		return Paths;
	}
	Files.FindFiles(Paths, *FPaths::Combine(Directory, Pattern), true, false);
	for (FString& Path : Paths)
	{
		Path = FPaths::Combine(Directory, Path);
	}
	return Paths;
}
} // namespace

FString FCVXSearchFilesTool::GetName() const
{
	return TEXT("search_files");
}

FString FCVXSearchFilesTool::GetDescription() const
{
	return TEXT("Find files matching a glob pattern within the project directory. Returns relative paths. Understands "
				"/Game/ content paths (auto-translates to Content/).");
}

FString FCVXSearchFilesTool::GetInputSchemaJson() const
{
	return TEXT(R"({"type":"object","properties":{)"
				R"("path":{"type":"string",)"
				R"__("description":"Directory to search in (relative to project root or absolute)"},)__"
				R"("pattern":{"type":"string",)"
				R"("description":"File glob pattern (e.g. *.cpp **/*.h BP_*). Default *."},)"
				R"("recursive":{"type":"boolean",)"
				R"("description":"Search recursively. Default true."}},)"
				R"("required":["path"]})");
}

FCVXToolExecutionResult FCVXSearchFilesTool::Execute(const FString& ArgumentsJson, const FCVXAgentProfile&)
{
	FCVXToolExecutionResult Error;
	TSharedPtr<FJsonObject> Arguments;
	FCVXListingDirectory Directory;
	if (!ParseToolArguments(ArgumentsJson, Arguments, Error) || !Directory.Resolve(*Arguments, Error))
	{
		return Error;
	}
	FString Pattern = TEXT("*");
	if (!GetFilePattern(*Arguments, TEXT("pattern"), Pattern, Error))
	{
		return Error;
	}
	TArray<FString> Paths =
		FindFiles(Directory.Absolute, Pattern, GetBoolArgument(*Arguments, TEXT("recursive"), true));
	const int32 TotalCount = Paths.Num();
	if (TotalCount == 0)
	{
		return FCVXToolExecutionResult::MakeSuccess(Directory.Note +
			FString::Printf(TEXT("No files matching '%s' found in '%s'."), *Pattern, *Directory.Shown));
	}
	MakeProjectRelative(Paths, Directory.ProjectDir);
	KeepFirstSorted(Paths, MaxResults);
	FString Output = FString::Join(Paths, TEXT("\n"));
	if (TotalCount > MaxResults)
	{
		Output.Appendf(TEXT("\n\n[Showing %d of %d results. Use a more specific pattern to narrow results.]"),
			MaxResults, TotalCount);
	}
	return FCVXToolExecutionResult::MakeSuccess(Directory.Note + Output);
}
