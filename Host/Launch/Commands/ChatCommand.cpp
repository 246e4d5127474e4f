#include "Launch/Commands/ChatCommand.h"

#include "Launch/Commands/ConversationSetup.h"
#include "Launch/Commands/ExitStatus.h"
#include "Launch/Commands/LaunchCommand.h"
#include "Launch/Options/LaunchOptions.h"
#include "Launch/Terminal/TerminalInput.h"

namespace
{
/** Between the person's lines, which may come at any time, and the conversation, which takes them when it can. */
class FChat
{
public:
	explicit FChat(FConversationSetup& InSetup)
		: Setup(InSetup)
		, Conversation(InSetup.GetConversation())
	{
	}

	FTerminalInputHandlers MakeHandlers()
	{
		FTerminalInputHandlers Handlers;
		Handlers.OnLine = [this](const FString& Line) { TakeLine(Line); };
		Handlers.OnEnd = [this] { bInputEnded = true; };
		Handlers.OnInterrupt = [this] { TakeInterrupt(); };
		Handlers.OnTerminate = [this] { Status = ExitInterrupted; };
		return Handlers;
	}

	/** One look at how things stand. @return whether the chat is over. */
	bool Advance()
	{
		Conversation.Tick();
		while (!Status && !Lines.IsEmpty() && (!Conversation.IsRunning() || Conversation.IsAsking()))
		{
			const FString Line = Lines[0];
			Lines.RemoveAt(0);
			UseLine(Line);
		}
		if (!Status && bInputEnded && Lines.IsEmpty())
		{
			EndOfInput();
		}
		if (!Status && !Conversation.IsRunning() && !bPrompted)
		{
			bPrompted = true;
			Setup.GetView().ShowPrompt();
		}
		return Status.IsSet();
	}

	/** What was typed ahead was meant for something else than the question that comes now. */
	void ForgetTyped(FTerminalInput& Input)
	{
		if (Input.ForgetTyped() && !Lines.IsEmpty())
		{
			Lines.Empty();
			Setup.GetView().ShowNotice(TEXT("What was typed ahead is left out, for this needs an answer first."));
		}
	}

	int GetStatus() const { return Status.Get(ExitError); }

private:
	void TakeLine(const FString& Line)
	{
		Setup.NoteTypedLine();
		Lines.Add(Line);
	}

	void UseLine(const FString& Line)
	{
		const FString Typed = Line.TrimStartAndEnd();
		bPrompted = false;
		bInterrupted = false;
		if (Conversation.IsAsking())
		{
			Conversation.Answer(Line);
		}
		else if (Typed == TEXT("/exit") || Typed == TEXT("/quit"))
		{
			Status = ExitComplete;
		}
		else if (!Typed.IsEmpty())
		{
			Setup.TakeTitle(Typed);
			Conversation.Submit(Typed);
		}
	}

	/** The first stops the run, or warns; the second leaves. */
	void TakeInterrupt()
	{
		if (bInterrupted)
		{
			Status = ExitInterrupted;
			return;
		}
		bInterrupted = true;
		const bool bRan = Conversation.IsRunning();
		Lines.Empty();
		Conversation.Interrupt();
		Setup.GetView().ShowNotice(
			bRan ? TEXT("Interrupted. Type 'continue' to go on; Ctrl-C again leaves.") : TEXT("Ctrl-C again leaves."));
		bPrompted = false;
	}

	void EndOfInput()
	{
		if (Conversation.IsAsking())
		{
			Setup.GetView().ShowNeedsPerson(TEXT("the input ended ahead of the answer"));
			Status = ExitNeedsPerson;
		}
		else if (!Conversation.IsRunning())
		{
			Status = Conversation.GetOutcome() == FConversation::EOutcome::Failed ? ExitError : ExitComplete;
		}
	}

	FConversationSetup& Setup;
	FConversation& Conversation;
	/** Typed ahead. */
	TArray<FString> Lines;
	TOptional<int> Status;
	bool bInputEnded = false;
	bool bPrompted = false;
	/** Since the last line. */
	bool bInterrupted = false;
};
} // namespace

int RunChatCommand(const FLaunchOptions& Options)
{
	if (!Options.Words.IsEmpty())
	{
		return ReportUsageError(FString::Printf(
			TEXT("'chat' takes no words, but was given '%s'; it reads messages from its input"), *Options.Words[0]));
	}
	FConversationSetup Setup(Options);
	if (const TOptional<int> Status = Setup.Start(TEXT("Chat"), true))
	{
		return *Status;
	}
	FChat Chat(Setup);
	FTerminalInput Input(Chat.MakeHandlers(), true);
	Setup.GetConversation().SetBeforeAsking([&] { Chat.ForgetTyped(Input); });
	Setup.GetSession().RunUntil([&] { return Chat.Advance(); });
	return Chat.GetStatus();
}
