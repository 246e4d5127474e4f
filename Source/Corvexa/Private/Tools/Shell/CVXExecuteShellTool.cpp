#include "Tools/Shell/CVXExecuteShellTool.h"

#include "HAL/FileManager.h"
#include "Misc/Paths.h"
#include "Tools/CVXToolArguments.h"
#include "Tools/Shell/CVXCommandRun.h"
#include "Tools/Shell/CVXShellCommandRules.h"

namespace
{
constexpr int32 DefaultTimeoutSeconds = 30;
constexpr int32 MaxTimeoutSeconds = 300;

struct FShellArguments
{
	FString Command;
	FString WorkingDir;
	int32 TimeoutSeconds = DefaultTimeoutSeconds;
};

bool HasNul(const FString& Text)
{
	int32 Index = INDEX_NONE;
	return Text.FindChar(u'\0', Index);
}

/** @return whether OutArguments is set; else OutError is the result. */
bool ReadArguments(const FString& ArgumentsJson, FShellArguments& OutArguments, FCVXToolExecutionResult& OutError)
{
	TSharedPtr<FJsonObject> Json;
	if (!ParseToolArguments(ArgumentsJson, Json, OutError) ||
		!ReadStringArgument(*Json, TEXT("command"), OutArguments.Command, OutError) ||
		!ReadStringArgument(*Json, TEXT("working_dir"), OutArguments.WorkingDir, OutError))
	{
		return false;
	}
	if (OutArguments.Command.IsEmpty())
	{
		OutError = FCVXToolExecutionResult::MakeError(TEXT("Missing required field: command"));
		return false;
	}
	if (HasNul(OutArguments.Command) || HasNul(OutArguments.WorkingDir))
	{
		OutError = FCVXToolExecutionResult::MakeError(
			TEXT("'command' and 'working_dir' can't contain NUL characters; no shell takes them."));
		return false;
	}
	OutArguments.WorkingDir = FPaths::ConvertRelativePathToFull(
		OutArguments.WorkingDir.IsEmpty() ? FPaths::ProjectDir() : OutArguments.WorkingDir);
	OutArguments.TimeoutSeconds =
		FMath::Clamp(GetIntArgument(*Json, TEXT("timeout_seconds"), DefaultTimeoutSeconds), 1, MaxTimeoutSeconds);
	return true;
}

FCVXCommandResult RunInShell(const FShellArguments& Arguments)
{
	FCVXCommand Command;
	Command.CommandLine = MakeShellCommandLine(Arguments.Command);
	Command.WorkingDir = Arguments.WorkingDir;
	Command.OutputFile = TEXT("shell_stdout_%s.txt");
	Command.ErrorFile = TEXT("shell_stderr_%s.txt");
	Command.LimitSeconds = Arguments.TimeoutSeconds;
	Command.bEndLeftovers = true;
	Command.bKeepFilesOnTimeout = true;
	return RunCommand(Command);
}

void AppendStream(FString& Output, const TCHAR* Name, const FString& Text)
{
	if (!Text.IsEmpty())
	{
		Output += FString::Printf(TEXT("\n--- %s ---\n"), Name) + Text.TrimEnd();
	}
}

FCVXToolExecutionResult Report(const FCVXCommandResult& Run)
{
	FCVXToolExecutionResult Result;
	Result.Output = FString::Printf(TEXT("Exit code: %d\n"), Run.ReturnCode);
	AppendStream(Result.Output, TEXT("stdout"), Run.Output);
	AppendStream(Result.Output, TEXT("stderr"), Run.Errors);
	if (Run.Output.IsEmpty() && Run.Errors.IsEmpty())
	{
		Result.Output += TEXT("(no output)");
	}
	Result.bIsError = Run.ReturnCode != 0;
	return Result;
}

FString DescribeFailedLaunch(const FString& WorkingDir)
{
	const FString Message = FString::Printf(TEXT("Failed to launch process: %s"), GetCommandProgram());
	return IFileManager::Get().DirectoryExists(*WorkingDir) ? Message
															: Message + TEXT("\nDirectory not found: ") + WorkingDir;
}
} // namespace

FString FCVXExecuteShellTool::GetName() const
{
	return TEXT("execute_shell");
}

FString FCVXExecuteShellTool::GetDescription() const
{
	return TEXT("Executes a shell command and returns its output (stdout + stderr) and exit code. Use for git "
				"operations (git status, git diff, git log), running scripts, or invoking build tools. Requires "
				"approval. Dangerous commands (rm -rf, format, deltree, etc.) are blocked.");
}

FString FCVXExecuteShellTool::GetInputSchemaJson() const
{
	return TEXT(R"({"type":"object","properties":{)"
				R"("command":{"type":"string","description":"The shell command to execute"},)"
				R"("working_dir":{"type":"string",)"
				R"__("description":"Working directory for the command (default: project root)"},)__"
				R"("timeout_seconds":{"type":"integer",)"
				R"__("description":"Timeout in seconds (default: 30 max: 300)"}},)__"
				R"("required":["command"]})");
}

FCVXToolExecutionResult FCVXExecuteShellTool::Execute(const FString& ArgumentsJson, const FCVXAgentProfile&)
{
	FCVXToolExecutionResult Error;
	FShellArguments Arguments;
	if (!ReadArguments(ArgumentsJson, Arguments, Error))
	{
		return Error;
	}
	Arguments.Command = CVXShellCommandRules::StripNullDevice(Arguments.Command);
	if (IsCommandBlocked(Arguments.Command))
	{
		return FCVXToolExecutionResult::MakeError(TEXT("Command blocked by safety policy: ") + Arguments.Command);
	}
	Arguments.Command = CVXShellCommandRules::AdaptToShell(Arguments.Command);
	const FCVXCommandResult Run = RunInShell(Arguments);
	switch (Run.End)
	{
	case ECVXCommandEnd::NotStarted:
		return FCVXToolExecutionResult::MakeError(DescribeFailedLaunch(Arguments.WorkingDir));
	case ECVXCommandEnd::TimedOut:
		return FCVXToolExecutionResult::MakeError(FString::Printf(
			TEXT("Command timed out after %d seconds: %s"), Arguments.TimeoutSeconds, *Arguments.Command));
	case ECVXCommandEnd::Flooded:
		return FCVXToolExecutionResult::MakeError(
			TEXT("Command stopped, because it wrote more than 1 GB of output: ") + Arguments.Command);
	default:
		CVXShellCommandRules::SweepReservedNames(Arguments.WorkingDir);
		return Report(Run);
	}
}

bool FCVXExecuteShellTool::IsCommandBlocked(const FString& Command)
{
	return CVXShellCommandRules::IsBlocked(Command);
}
