#pragma once

#include "Core/CVXSessionOverrides.h"

class IDemoDialect;
struct FLaunchOptions;

/** Which agent and which model a run works with. */
struct FModelChoice
{
	/** For the settings. */
	FCVXSessionChoice Overrides;
	/** The demo model is to be started, and serves every agent in this dialect; null for another model. */
	const IDemoDialect* Demo = nullptr;
	/** What the user is told about it; may be empty. */
	FString Notice;
	/** What the user must change; empty when the choice is made. */
	FString Error;

	/** From the command line and, where that is silent, the settings and the keys that there are. */
	static FModelChoice Make(const FLaunchOptions& Options, const UCVXSettings& Settings);
};
