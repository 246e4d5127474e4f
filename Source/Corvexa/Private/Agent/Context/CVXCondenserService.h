#pragma once

#include "Containers/UnrealString.h"
#include "Delegates/Delegate.h"

class FCVXAgentLoop;
struct FCVXAgentProfile;
class ICVXProvider;

/** Shortens a conversation for good: a model summarises its older part, and the summary takes that part's place. */
class FCVXCondenserService
{
public:
	/** Whether it worked, and the summary or what went wrong. */
	using FOnDone = TDelegate<void(bool, const FString&)>;

	/**
	 * Start it while the loop is idle: what joins the history meanwhile is lost. Game thread.
	 * @param Provider must live until OnDone. @param KeepRecent the newest messages, which stay as they are.
	 * @param OnDone called once, perhaps before this returns.
	 */
	static void Condense(
		FCVXAgentLoop& Loop, ICVXProvider& Provider, const FCVXAgentProfile& Profile, int32 KeepRecent, FOnDone OnDone);
};
