#pragma once

#include "Misc/OutputDevice.h"

#include <atomic>

/** Writes grave messages to the standard error stream: warnings and worse, unless told otherwise. */
class FTerminalDevice final : public FOutputDevice
{
public:
	static FTerminalDevice& Get();

	/** @param Limit the least grave verbosity to write; NoLogging writes nothing. Any thread. */
	void SetVerbosity(ELogVerbosity::Type Limit) { Verbosity = Limit; }
	ELogVerbosity::Type GetVerbosity() const { return Verbosity; }

	using FOutputDevice::Serialize;
	void Serialize(const TCHAR* Text, ELogVerbosity::Type MessageVerbosity, const FName& Category) override;

private:
	std::atomic<ELogVerbosity::Type> Verbosity{ELogVerbosity::Warning};
};
