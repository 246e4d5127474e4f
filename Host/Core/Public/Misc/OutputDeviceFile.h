#pragma once

#include "Misc/OutputDevice.h"

/**
 * Writes messages to a file, a line each with its UTC time, at once, so that the file can be read while it grows. The
 * log of an earlier run, and a log that has reached its size, becomes a backup beside the file with the time in its
 * name; the five newest backups are kept. When another process holds the file, the name gets a number. A line that the
 * disk doesn't take is lost.
 */
class FOutputDeviceFile final : public FOutputDevice
{
public:
	static constexpr int64 DefaultMaxBytes = 64 * 1024 * 1024;

	/** Opens the file, with its directories. @param InMaxBytes the size at which a new file begins. */
	explicit FOutputDeviceFile(const TCHAR* InFilename, int64 InMaxBytes = DefaultMaxBytes);
	~FOutputDeviceFile() override { TearDown(); }

	/** Whether the file could be opened. */
	bool IsOpened() const { return Descriptor >= 0; }
	/** The file that is written, with its number if it has one. */
	const FString& GetFilename() const { return Filename; }

	using FOutputDevice::Serialize;
	void Serialize(const TCHAR* Text, ELogVerbosity::Type Verbosity, const FName& Category) override;
	void TearDown() override;

private:
	bool Open(const FString& Path);
	void BackUp(const FString& Path);
	void StartNewFile();

	FString Filename;
	int32 Descriptor = -1;
	int64 Bytes = 0;
	int64 MaxBytes;
};
