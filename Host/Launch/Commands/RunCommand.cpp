#include "Launch/Commands/RunCommand.h"

#include "CoreGlobals.h"
#include "Launch/Commands/ConversationSetup.h"
#include "Launch/Commands/ExitStatus.h"
#include "Launch/Commands/LaunchCommand.h"
#include "Launch/Options/LaunchOptions.h"
#include "Launch/Terminal/TerminalInput.h"

#include <unistd.h>

namespace
{
/** A request that comes from standard input isn't longer. */
constexpr int32 MaxRequestBytes = 16 << 20;

FString FindRequest(const FLaunchOptions& Options)
{
	const bool bFromInput = Options.Words.IsEmpty() ? ::isatty(STDIN_FILENO) == 0
													: Options.Words.Num() == 1 && Options.Words[0] == TEXT("-");
	return (bFromInput ? ReadStandardInput(MaxRequestBytes) : FString::Join(Options.Words, TEXT(" ")))
		.TrimStartAndEnd();
}

int ToExitStatus(FConversation::EOutcome Outcome)
{
	switch (Outcome)
	{
	case FConversation::EOutcome::Complete:
		return ExitComplete;
	case FConversation::EOutcome::NeedsPerson:
		return ExitNeedsPerson;
	case FConversation::EOutcome::Interrupted:
		return ExitInterrupted;
	case FConversation::EOutcome::None:
	case FConversation::EOutcome::Running:
	case FConversation::EOutcome::Failed:
		break;
	}
	return ExitError;
}
} // namespace

int RunRunCommand(const FLaunchOptions& Options)
{
	const FString Request = FindRequest(Options);
	if (Request.IsEmpty())
	{
		return ReportUsageError(TEXT("'run' needs a request"));
	}
	FConversationSetup Setup(Options);
	if (const TOptional<int> Status =
			Setup.Start(Request.Left(FConversationSetup::MaxTitleChars), Setup.IsAtTerminal()))
	{
		return *Status;
	}
	FConversation& Conversation = Setup.GetConversation();
	FTerminalInputHandlers Handlers;
	Handlers.OnInterrupt = [&] { Conversation.Interrupt(); };
	Handlers.OnTerminate = Handlers.OnInterrupt;
	Handlers.OnLine = [&](const FString& Line)
	{
		Setup.NoteTypedLine();
		Conversation.Answer(Line);
	};
	FTerminalInput Input(MoveTemp(Handlers), Setup.IsAtTerminal());
	Conversation.SetBeforeAsking([&] { (void)Input.ForgetTyped(); });
	Conversation.Submit(Request);
	Setup.GetSession().RunUntil(
		[&]
		{
			Conversation.Tick();
			return !Conversation.IsRunning();
		});
	return ToExitStatus(Conversation.GetOutcome());
}
