#pragma once

#include "Launch/Conversation/Conversation.h"
#include "Launch/Session/LaunchSession.h"
#include "Launch/Terminal/KeyMask.h"
#include "Launch/Terminal/TerminalOut.h"

struct FLaunchOptions;

/** What `run` and `chat` share: the session, where it is shown, and the one conversation in it. */
class FConversationSetup
{
public:
	explicit FConversationSetup(const FLaunchOptions& Options);
	~FConversationSetup();

	/** Whether a person sits at both ends: the input and what is shown. */
	bool IsAtTerminal() const { return bAtTerminal; }

	/** Starts all of it. @param bAsk whether somebody is there to ask. @return an exit status when it can't go on. */
	TOptional<int> Start(const FString& Title, bool bAsk);

	IConversationView& GetView() { return *View; }
	FConversation& GetConversation() { return *Conversation; }
	FLaunchSession& GetSession() { return Session; }
	/** To be called when the person has typed a line, which has moved the cursor. */
	void NoteTypedLine();

private:
	/** The conversation that is meant, with a notice about it. @return null without one, with an exit status. */
	TSharedPtr<FCVXTask> ChooseTask(const FString& Title, int& OutStatus);
	void MakeView();
	void HideKeys();

	const FLaunchOptions& Options;
	const bool bAtTerminal;
	FKeyMask Keys;
	FTerminalOut Out;
	FTerminalOut Errors;
	TUniquePtr<IConversationView> View;
	FLaunchSession Session;
	TUniquePtr<FConversation> Conversation;
};
