#pragma once

#include "Core/CVXProfiles.h"
#include "Launch/Demo/DemoScenario.h"

#include <chrono>

class FLoopbackServer;
class IDemoDialect;

/**
 * A model without a vendor: an HTTP server on a loopback port that speaks the vendors' dialects and plays scripted
 * scenarios. Only its words are scripted; what they say follows from what the requests hold.
 */
class FDemoModel
{
public:
	/** @param InPause between two words, so that a person can watch the answer come. */
	explicit FDemoModel(std::chrono::milliseconds InPause);
	~FDemoModel();
	FDemoModel(const FDemoModel&) = delete;
	FDemoModel& operator=(const FDemoModel&) = delete;

	/** A profile by which agents reach it in one of its dialects. */
	FCVXProviderProfile MakeProfile(const IDemoDialect& Dialect) const;

private:
	void AddScenarios();
	void AddDialect(const IDemoDialect& Dialect);
	FDemoAnswer Answer(const FDemoRequest& Request) const;

	const std::chrono::milliseconds Pause;
	/** In the order in which they are tried. */
	TArray<TSharedPtr<FDemoScenario>> Scenarios;
	/** Last, for it answers until it is gone. */
	TUniquePtr<FLoopbackServer> Server;
};
