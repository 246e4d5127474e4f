#pragma once

#include "CoreGlobals.h"
#include "HAL/CriticalSection.h"
#include "Misc/OutputDevice.h"

/**
 * The log of the process: hands each message to all its devices, on the thread that logs, one message at a time. A
 * device may log, add devices and remove any device, itself included, while it takes a message.
 */
class FOutputDeviceRedirector final : public FOutputDevice
{
public:
	/** Made on first use and never destroyed. */
	static FOutputDeviceRedirector* Get();

	/** @param Device stays alive until it is removed; a device that is there already isn't added again. */
	void AddOutputDevice(FOutputDevice* Device);
	/** Afterwards nothing on any thread is inside the device, unless the caller itself is. */
	void RemoveOutputDevice(FOutputDevice* Device);
	bool IsRedirectingTo(FOutputDevice* Device);

	using FOutputDevice::Serialize;
	void Serialize(const TCHAR* Text, ELogVerbosity::Type Verbosity, const FName& Category) override;
	void Flush() override;
	void FlushThreadedLogs() {}
	bool CanBeUsedOnAnyThread() const override { return true; }
	bool CanBeUsedOnMultipleThreads() const override { return true; }

private:
	template <typename CallType>
	void ForEachDevice(const CallType& Call);

	FCriticalSection Lock;
	/** A device that goes while messages are handed out leaves a null. */
	TArray<FOutputDevice*> Devices;
	int32 Depth = 0;
};
