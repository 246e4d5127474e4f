#include "Agent/Tasks/CVXGitCheckpoint.h"

#include "HAL/FileManager.h"
#include "HAL/PlatformProcess.h"
#include "Misc/Paths.h"

namespace
{
constexpr int32 MaxTaskChars = 80;
/** A hook that hangs must not hold the editor for longer, in seconds. */
constexpr double MaxGitSeconds = 60.0;

bool RunGit(const FString& Parameters, const FString& Directory)
{
	int32 ExitCode = -1;
	return FPlatformProcess::ExecProcess(
			   TEXT("git"), *Parameters, &ExitCode, nullptr, nullptr, *Directory, MaxGitSeconds) &&
		ExitCode == 0;
}

/** Makes a text fit between double quotes on a command line. */
FString MakeQuotable(const FString& Text)
{
	FString Plain = Text;
	for (TCHAR& Char : Plain.GetCharArray())
	{
		if (Char == TEXT('"') || Char == TEXT('\\') || (Char > 0 && Char < 32))
		{
			Char = Char == TEXT('"') ? TEXT('\'') : TEXT(' ');
		}
	}
	return Plain;
}
} // namespace

bool CVXGitCheckpoint::Commit(const FString& AgentProfile, const FString& Task)
{
	const FString Directory = FPaths::ConvertRelativePathToFull(FPaths::ProjectDir());
	const FString Git = FPaths::Combine(Directory, TEXT(".git"));
	if (!IFileManager::Get().DirectoryExists(*Git) && !IFileManager::Get().FileExists(*Git))
	{
		return false;
	}
	const FString Message =
		FString::Printf(TEXT("CVX auto-checkpoint before %s: %s"), *AgentProfile, *Task.Left(MaxTaskChars));
	return RunGit(TEXT("add -A"), Directory) &&
		RunGit(FString::Printf(TEXT("commit -m \"%s\" --allow-empty"), *MakeQuotable(Message)), Directory);
}
