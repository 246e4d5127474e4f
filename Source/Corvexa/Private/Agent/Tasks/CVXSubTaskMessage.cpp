#include "Agent/Tasks/CVXSubTaskMessage.h"

#include "HAL/FileManager.h"
#include "Misc/DateTime.h"
#include "Misc/Paths.h"

namespace
{
constexpr int32 MaxSiblingChars = 2000;
constexpr const TCHAR* ContentFolders[] = {TEXT("Source"), TEXT("Content"), TEXT("Config"), TEXT("Plugins")};
/** The system's own files aren't the project's work. */
constexpr const TCHAR* OwnFolder = TEXT("Corvexa");

TArray<FString> FindRecentFiles()
{
	const FDateTime Limit = FDateTime::UtcNow() - FTimespan::FromSeconds(CVXSubTaskMessage::RecentSeconds);
	const FString ProjectDir = FPaths::ProjectDir();
	TArray<FString> Recent;
	for (const TCHAR* Folder : ContentFolders)
	{
		TArray<FString> Files;
		IFileManager::Get().FindFilesRecursive(
			Files, *FPaths::Combine(ProjectDir, Folder), TEXT("*.*"), true, false, false);
		for (FString& File : Files)
		{
			const FDateTime Changed = IFileManager::Get().GetTimeStamp(*File);
			FPaths::MakePathRelativeTo(File, *ProjectDir);
			// The path within the project counts: the project itself may lie anywhere.
			if (Changed > Limit && !File.Contains(OwnFolder))
			{
				Recent.Add(File);
			}
		}
	}
	return Recent;
}

FString TellRecentFiles()
{
	const TArray<FString> Files = FindRecentFiles();
	if (Files.IsEmpty())
	{
		return FString();
	}
	FString Text = TEXT("\n\n## Recently created/modified files & assets (last 5 min — DO NOT recreate)\n");
	for (const FString& File : Files)
	{
		Text += FString::Printf(TEXT("- %s\n"), *File);
	}
	return Text;
}

FString TellSiblingResults(const TArray<FString>& Results)
{
	if (Results.IsEmpty())
	{
		return FString();
	}
	FString Text =
		TEXT("\n\n## Assets/files already created by previous delegations in this session (DO NOT recreate — edit "
			 "or extend if needed)\n");
	for (const FString& Result : Results)
	{
		Text += Result.Left(MaxSiblingChars) + TEXT("\n---\n");
	}
	return Text;
}
} // namespace

FString CVXSubTaskMessage::Build(const FString& Task, const FString& Context, const TArray<FString>& SiblingResults)
{
	FString Text = Task;
	if (!Context.IsEmpty())
	{
		Text += TEXT("\n\n## Context\n") + Context;
	}
	return Text + TellRecentFiles() + TellSiblingResults(SiblingResults);
}
