#pragma once

#include "Delegates/Delegate.h"

/** What the host tells everyone. Game thread. */
struct FCoreDelegates
{
	/** The loop is about to end; everything still works. */
	static FSimpleMulticastDelegate OnPreExit;
};
