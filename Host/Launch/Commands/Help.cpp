#include "Launch/Commands/Help.h"

#include "Launch/Commands/LaunchCommand.h"
#include "Launch/Options/LaunchOptions.h"

namespace
{
/** Where the explanations begin. */
constexpr int32 HelpColumn = 28;

FString MakeRow(const FString& Left, const FString& Right)
{
	const FString Padded = (TEXT("  ") + Left).RightPad(HelpColumn);
	const FString Gap = Padded.Len() > HelpColumn ? TEXT("\n") + FString::ChrN(HelpColumn, TEXT(' ')) : FString();
	return Padded + Gap + Right + TEXT("\n");
}

FString ListOptions()
{
	FString Text = TEXT("\nOptions:\n");
	for (const FLaunchOptionHelp& Option : LaunchOptions::GetHelp())
	{
		Text += MakeRow(Option.Usage, Option.Help);
	}
	return Text;
}

FString DescribeStatus()
{
	return FString(TEXT("\nExit status: 0 complete, 1 error, 2 wrong usage, 3 needs a person, 130 interrupted.\n"));
}
} // namespace

FString LaunchHelp::ForProgram()
{
	FString Text = TEXT("corvexa: an autonomous development agent for a game project\n\nUsage: corvexa COMMAND "
						"[OPTIONS]\n\nCommands:\n");
	for (const FLaunchCommand& Command : GetLaunchCommands())
	{
		Text += MakeRow((FString(Command.Name) + TEXT(" ") + Command.Arguments).TrimEnd(), Command.Summary);
	}
	return Text + ListOptions() + DescribeStatus() +
		TEXT("\nAPI keys come from the environment or from Saved/CVX/apikeys.cfg in the project. Without any key the\n"
			 "built-in demo model answers.\n");
}

FString LaunchHelp::ForCommand(const FLaunchCommand& Command)
{
	FString Text = FString::Printf(TEXT("Usage: corvexa %s %s"), Command.Name, Command.Arguments).TrimEnd();
	Text += FString::Printf(TEXT(" [OPTIONS]\n\n%s: %s\n\n"), Command.Name, Command.Summary);
	return Text + Command.Details + ListOptions() + DescribeStatus();
}

FString LaunchHelp::Version()
{
	return FString("corvexa " CORVEXA_VERSION "\n");
}
