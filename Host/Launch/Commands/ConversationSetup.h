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

	/** A conversation is called after its first message, of which so much is taken. */
	static constexpr int32 MaxTitleChars = 60;

	/** Starts all of it. @param Title of a new conversation. @param bAsk whether somebody is there to ask. @return an
	 * exit status when it can't go on. */
	TOptional<int> Start(const FString& Title, bool bAsk);

	/** Takes the title of a new conversation from its first message; later calls do nothing. */
	void TakeTitle(const FString& Message);

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
	/** A new conversation in which nothing has been said; null otherwise. */
	TSharedPtr<FCVXTask> Untitled;
};
