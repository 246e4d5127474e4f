#include "Tools/Git/CVXGitProcess.h"

#include "Tools/Shell/CVXCommandRun.h"

FString RunGit(const FString& Arguments, const FString& WorkingDir, FString& OutError)
{
	OutError.Reset();
	FCVXCommand Command;
	Command.CommandLine = TEXT("git ") + Arguments;
	Command.WorkingDir = WorkingDir;
	Command.OutputFile = TEXT("git_out_%s.txt");
	Command.ErrorFile = TEXT("git_err_%s.txt");
	Command.LimitSeconds = 15.0;
	const FCVXCommandResult Run = RunCommand(Command);
	if (Run.End == ECVXCommandEnd::NotStarted)
	{
		OutError = TEXT("Failed to launch git process.");
		return FString();
	}
	if (Run.ReturnCode != 0)
	{
		OutError = Run.Errors.TrimEnd();
	}
	return Run.Output.TrimEnd();
}
