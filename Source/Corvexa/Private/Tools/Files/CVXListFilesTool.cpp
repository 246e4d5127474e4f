#include "Tools/Files/CVXListFilesTool.h"

#include "Core/CVXSettings.h"
#include "HAL/FileManager.h"
#include "Misc/Paths.h"
#include "Tools/CVXToolArguments.h"
#include "Tools/Files/CVXFileListing.h"

namespace
{
constexpr int32 DefaultResults = 2000;
constexpr int32 MostResults = 10000;

TArray<FString> Gather(const FString& Directory, bool bRecursive)
{
	IFileManager& Files = IFileManager::Get();
	TArray<FString> Paths;
	if (bRecursive)
	{
		Files.FindFilesRecursive(Paths, *Directory, TEXT("*"), true, true);
		return Paths;
	}
	const FString Everything = FPaths::Combine(Directory, TEXT("*"));
	TArray<FString> Names;
	Files.FindFiles(Names, *Everything, true, false);
	const int32 FileCount = Names.Num();
	Files.FindFiles(Names, *Everything, false, true);
	for (int32 Index = 0; Index < Names.Num(); ++Index)
	{
		Paths.Add(FPaths::Combine(Directory, Names[Index]) + (Index < FileCount ? TEXT("") : TEXT("/")));
	}
	return Paths;
}

void DropIgnored(TArray<FString>& Paths)
{
	const UCVXSettings* Settings = UCVXSettings::Get();
	if (!Settings || Settings->IgnorePatterns.IsEmpty())
	{
		return;
	}
	const auto IsIgnored = [&](const FString& Path)
	{
		return Settings->IgnorePatterns.ContainsByPredicate(
			[&](const FString& Pattern) { return Path.MatchesWildcard(Pattern); });
	};
	Paths.RemoveAll(IsIgnored);
}
} // namespace

FString FCVXListFilesTool::GetName() const
{
	return TEXT("list_files");
}

FString FCVXListFilesTool::GetDescription() const
{
	return TEXT("List files and directories in a path. Respects .cvxignore patterns. Understands /Game/ content paths "
				"(auto-translates to Content/).");
}

FString FCVXListFilesTool::GetInputSchemaJson() const
{
	return TEXT(R"({"type":"object","properties":{)"
				R"("path":{"type":"string",)"
				R"__("description":"Directory path to list (relative to project root or absolute)"},)__"
				R"("recursive":{"type":"boolean",)"
				R"("description":"List files recursively. Default false."},)"
				R"("max_results":{"type":"integer",)"
				R"("description":"Maximum entries to return. Default 2000."}},)"
				R"("required":["path"]})");
}

FCVXToolExecutionResult FCVXListFilesTool::Execute(const FString& ArgumentsJson, const FCVXAgentProfile&)
{
	FCVXToolExecutionResult Error;
	TSharedPtr<FJsonObject> Arguments;
	FCVXListingDirectory Directory;
	if (!ParseToolArguments(ArgumentsJson, Arguments, Error) || !Directory.Resolve(*Arguments, Error))
	{
		return Error;
	}
	if (!IFileManager::Get().DirectoryExists(*Directory.Absolute))
	{
		return FCVXToolExecutionResult::MakeError(
			FString::Printf(TEXT("Directory not found: %s"), *Directory.Absolute));
	}
	const int32 MaxResults =
		FMath::Clamp(GetIntArgument(*Arguments, TEXT("max_results"), DefaultResults), 1, MostResults);
	TArray<FString> Paths = Gather(Directory.Absolute, GetBoolArgument(*Arguments, TEXT("recursive"), false));
	MakeProjectRelative(Paths, Directory.ProjectDir);
	DropIgnored(Paths);
	const int32 TotalCount = Paths.Num();
	KeepFirstSorted(Paths, MaxResults);
	FString Output = Paths.IsEmpty() ? FString(TEXT("(empty directory)")) : FString::Join(Paths, TEXT("\n"));
	if (TotalCount > Paths.Num())
	{
		Output.Appendf(TEXT("\n\n[Showing %d of %d entries. Use a more specific path or filter to narrow results.]"),
			Paths.Num(), TotalCount);
	}
	return FCVXToolExecutionResult::MakeSuccess(Directory.Note + Output);
}
