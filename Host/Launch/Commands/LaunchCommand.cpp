#include "Launch/Commands/LaunchCommand.h"

#include "Launch/Commands/ChatCommand.h"
#include "Launch/Commands/ExitStatus.h"
#include "Launch/Commands/RunCommand.h"
#include "Launch/Terminal/SafeText.h"
#include "Launch/Terminal/TerminalOut.h"

#include <unistd.h>

namespace
{
constexpr FLaunchCommand Commands[] = {
	{TEXT("chat"), TEXT(""), TEXT("talk with the agent in the terminal"),
		TEXT("Type a message and Enter. Ctrl-C stops what the agent does and keeps the conversation: 'continue' goes\n"
			 "on with it. A second Ctrl-C leaves; so do Ctrl-D and /exit. With standard input\n"
			 "from a file or a pipe, each line is a message or the answer to what is asked.\n"),
		&RunChatCommand},
	{TEXT("run"), TEXT("REQUEST | -"), TEXT("carry one request out, for scripts"),
		TEXT("The request is the words behind 'run', or standard input when there are none or a single dash.\n"
			 "When a decision or an answer is needed and no terminal is there to give it, the run ends with status "
			 "3.\n"),
		&RunRunCommand},
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
