#include "Launch/Commands/ExitStatus.h"
#include "Launch/Commands/Help.h"
#include "Launch/Commands/LaunchCommand.h"
#include "Launch/Options/LaunchOptions.h"
#include "Launch/Options/NearestName.h"
#include "Launch/Terminal/TerminalOut.h"

#include <unistd.h>

namespace
{
int Print(const FString& Text)
{
	return WriteToDescriptor(STDOUT_FILENO, Text) ? ExitComplete : ExitError;
}

const FLaunchCommand* FindCommand(const FString& Name)
{
	for (const FLaunchCommand& Command : GetLaunchCommands())
	{
		if (Name == Command.Name)
		{
			return &Command;
		}
	}
	return nullptr;
}

int ReportUnknownCommand(const FString& Name)
{
	TArray<FString> Names;
	for (const FLaunchCommand& Command : GetLaunchCommands())
	{
		Names.Add(Command.Name);
	}
	const FString Nearest = FindNearestName(Name, Names);
	return ReportUsageError(Name.IsEmpty() ? FString(TEXT("no command given"))
										   : FString::Printf(TEXT("unknown command '%s'"), *Name) +
				(Nearest.IsEmpty() ? FString() : FString::Printf(TEXT("; did you mean '%s'?"), *Nearest)));
}

int RunProgram(const TArray<FString>& Arguments)
{
	FLaunchOptions Options;
	FString Error;
	if (!LaunchOptions::Parse(Arguments, Options, Error))
	{
		return ReportUsageError(Error);
	}
	if (Options.bVersion)
	{
		return Print(LaunchHelp::Version());
	}
	const FLaunchCommand* Command = FindCommand(Options.Command);
	if (Options.bHelp)
	{
		return Print(Command ? LaunchHelp::ForCommand(*Command) : LaunchHelp::ForProgram());
	}
	if (!Command)
	{
		return ReportUnknownCommand(Options.Command);
	}
	if (!Command->bConverses && !(Options.Resume + Options.Fork).IsEmpty())
	{
		return ReportUsageError(
			FString::Printf(TEXT("'%s' takes no '%s'; 'chat' and 'run' go on with stored conversations"), Command->Name,
				Options.Fork.IsEmpty() ? TEXT("--resume") : TEXT("--fork")));
	}
	return Command->Run(Options);
}
} // namespace

int main(int Count, char** Values)
{
	TArray<FString> Arguments;
	for (int Index = 1; Index < Count; ++Index)
	{
		Arguments.Add(FString(static_cast<const ANSICHAR*>(Values[Index])));
	}
	return RunProgram(Arguments);
}
