#pragma once

#include "Containers/Array.h"
#include "Containers/UnrealString.h"
#include "HAL/CriticalSection.h"
#include "Misc/OutputDevice.h"

/** Keeps what is logged while it lives. Any thread may log; any thread may ask. */
class FLogCapture final : public FOutputDevice
{
public:
	struct FLine
	{
		FString Text;
		ELogVerbosity::Type Verbosity;
		FName Category;
	};

	FLogCapture();
	~FLogCapture() override;

	using FOutputDevice::Serialize;
	void Serialize(const TCHAR* Text, ELogVerbosity::Type Verbosity, const FName& Category) override;
	bool CanBeUsedOnAnyThread() const override { return true; }
	bool CanBeUsedOnMultipleThreads() const override { return true; }

	/** In the order logged. */
	TArray<FLine> Lines() const;
	/** The lines that contain the text, case included, and are of that verbosity. */
	int32 Count(FStringView Text, ELogVerbosity::Type Verbosity) const;
	bool Contains(FStringView Text) const;
	void Clear();

private:
	mutable FCriticalSection Lock;
	TArray<FLine> Kept;
};
