#pragma once

#include "Containers/StringConv.h"
#include "HAL/HostClock.h"
#include "Support/ProcessProbe.h"

#include <filesystem>

/**
 * A clock that stands still until a file is there, and then runs past every limit with the next sleep: a child that
 * makes the file is known to have come that far when its time is up. One at a time.
 */
class FClockOfFile final : public IHostClock
{
public:
	explicit FClockOfFile(const FString& InFile)
		: File(TCHAR_TO_UTF8(*InFile))
		, Before(FHostClock::Set(this))
	{
	}
	~FClockOfFile() override { FHostClock::Set(Before); }
	FClockOfFile(const FClockOfFile&) = delete;
	FClockOfFile& operator=(const FClockOfFile&) = delete;

	double GetSeconds() override { return Now; }
	int64 GetUtcTicks() override { return FHostClock::GetSystem().GetUtcTicks(); }
	void Sleep(double) override
	{
		WaitUntil([&] { return std::filesystem::exists(File); });
		Now += 1000;
	}

private:
	const std::filesystem::path File;
	IHostClock* const Before;
	double Now = 100;
};
