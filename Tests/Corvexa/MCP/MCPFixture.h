#pragma once

#include "Core/CVXProfiles.h"
#include "HAL/HostClock.h"
#include "Support/HostTypePrinting.h"
#include "Support/LogCapture.h"
#include "Support/LoopPump.h"
#include "Support/TempProject.h"

#include <atomic>
#include <gtest/gtest.h>

/** The system's clock, which a test can put forward: what waits for a real process goes on at its own pace. */
class FForwardClock final : public IHostClock
{
public:
	FForwardClock()
		: Before(FHostClock::Set(this))
	{
	}
	~FForwardClock() override { FHostClock::Set(Before); }
	FForwardClock(const FForwardClock&) = delete;
	FForwardClock& operator=(const FForwardClock&) = delete;

	void Advance(double Seconds) { Ahead.fetch_add(Seconds); }

	double GetSeconds() override { return FHostClock::GetSystem().GetSeconds() + Ahead; }
	int64 GetUtcTicks() override { return FHostClock::GetSystem().GetUtcTicks(); }
	void Sleep(double Seconds) override { FHostClock::GetSystem().Sleep(Seconds); }

private:
	IHostClock* Before;
	std::atomic<double> Ahead{0.0};
};

/** A project and the scripted server that runs in it. */
class FMCPFixture : public testing::Test
{
protected:
	/** @param Beginning "plain", "mute" (never greets back), "ends" (at once) or "listless" (has no list of tools). */
	FCVXMCPServerConfig MakeConfig(const TCHAR* Beginning = TEXT("plain"), const TCHAR* Name = TEXT("srv")) const;

	/** What the server has read so far. */
	std::string Received() const { return Project.Exists("received") ? Project.Read("received") : std::string(); }

	FTempProject Project;
	FLoopPump Pump;
	FLogCapture Log;
};
