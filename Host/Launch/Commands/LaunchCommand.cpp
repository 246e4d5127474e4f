#include "Launch/Commands/LaunchCommand.h"

#include "Launch/Commands/ChatCommand.h"
#include "Launch/Commands/ExitStatus.h"
#include "Launch/Commands/ModelsCommand.h"
#include "Launch/Commands/RunCommand.h"
#include "Launch/Commands/TasksCommand.h"
#include "Launch/Commands/ToolCommand.h"
#include "Launch/Commands/ToolsCommand.h"
#include "Launch/Terminal/SafeText.h"
#include "Launch/Terminal/TerminalOut.h"

#include <unistd.h>

namespace
{
constexpr FLaunchCommand Commands[] = {
	{TEXT("chat"), TEXT(""), TEXT("talk with the agent in the terminal"),
		TEXT("Type a message and Enter. Ctrl-C stops what the agent does and keeps the conversation: 'continue' goes\n"
			 "on with it. A second Ctrl-C leaves; so do Ctrl-D and /exit. With standard input\n"
			 "from a file or a pipe, each line is a message or the answer to what is asked.\n"
			 "With --resume or --fork the chat goes on with a stored conversation or with a branch of it.\n"),
		&RunChatCommand, true},
	{TEXT("run"), TEXT("REQUEST | -"), TEXT("carry one request out, for scripts"),
		TEXT("The request is the words behind 'run', or standard input when there are none or a single dash.\n"
			 "When a decision or an answer is needed and no terminal is there to give it, the run ends with status "
			 "3.\n"
			 "'run --resume continue' goes on with what was interrupted.\n"),
		&RunRunCommand, true},
	{TEXT("tasks"), TEXT(""), TEXT("list the project's stored conversations"),
		TEXT("Each with the beginning of its id, its state, age, agent and title, oldest first; what a sub-agent did\n"
			 "stands below the conversation that asked for it. A star marks the one that --resume goes on with.\n"
			 "With --json a conversation a line, with its whole id.\n"),
		&RunTasksCommand},
	{TEXT("models"), TEXT("[VENDOR]"), TEXT("list vendors and models, and where keys were found"),
		TEXT("Each vendor with whether a key was found, and where from, never the key; each model with its context\n"
			 "window and its output limit in tokens, and the stored profiles that use it.\n"),
		&RunModelsCommand},
	{TEXT("tools"), TEXT(""), TEXT("list the tools that the agent is offered"),
		TEXT("Name, flags and description; with --json also the schema of the arguments, a tool a line.\n"),
		&RunToolsCommand},
	{TEXT("tool"), TEXT("NAME ['JSON' | -]"), TEXT("run one tool and print what the model would read"),
		TEXT("The agent's approval rules hold. The arguments are one JSON text, or standard input for a dash.\n"
			 "The exit status is 1 when the result is an error.\n"),
		&RunToolCommand},
};
} // namespace

TArrayView<const FLaunchCommand> GetLaunchCommands()
{
	return Commands;
}

int ReportUsageError(const FString& Error)
{
	const FString Text = TEXT("corvexa: ") + MakeSafeText(Error) + TEXT("\nTry 'corvexa --help'.\n");
	(void)WriteToDescriptor(STDERR_FILENO, Text);
	return ExitUsage;
}
