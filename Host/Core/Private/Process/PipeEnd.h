#pragma once

#include "Containers/Array.h"
#include "Containers/UnrealString.h"
#include "HAL/PosixFile.h"

/**
 * One end of a pipe. An end that we read or write ourselves doesn't block; one that only a child uses does. One thread
 * at a time.
 */
class FPipeEnd : private FNoncopyable
{
public:
	explicit FPipeEnd(FDescriptor&& InDescriptor)
		: Descriptor(MoveTemp(InDescriptor))
	{
	}

	/** Makes a pipe that no child inherits unasked. @return false with `errno` set. */
	static bool Create(FDescriptor& OutRead, FDescriptor& OutWrite);

	int GetDescriptor() const { return Descriptor.Get(); }

	/** All that can be read at once, up to `MaxRead`. */
	TArray<uint8> ReadBytes();
	/** As `ReadBytes`, as text. The beginning of a character waits for its rest, until the pipe ends. */
	FString ReadText();
	/** Writes what fits, again and again, until all is written or the limit has passed. @return the bytes written. */
	int64 Write(const void* Source, int64 Count, double LimitSeconds);

	static constexpr int32 MaxRead = 1024 * 1024;

private:
	void StopBlocking();
	bool AwaitRoom(double Deadline) const;

	FDescriptor Descriptor;
	/** The beginning of a character that was read but not given out. */
	TArray<uint8> Held;
	bool bBlocks = true;
	bool bEnded = false;
};

/** The length of a text's part that isn't the beginning of a character cut off by the end. */
int32 CompleteUtf8Length(const uint8* Source, int32 Count);
