#pragma once

#include "ChildProcess.h"
#include "Containers/Array.h"
#include "Containers/UnrealString.h"
#include "HAL/PosixFile.h"

/** Gathers what a child writes to one pipe, up to a bound; what comes beyond it is read and dropped. */
class FOutputStream : private FNoncopyable
{
public:
	/** Makes the pipe. @return false with `errno` set. */
	bool Open();
	/** The end for the child; closed by `CloseWriteEnd` once the child has it. */
	int GetWriteEnd() const { return WriteEnd.Get(); }
	void CloseWriteEnd() { WriteEnd.Close(); }

	int GetReadEnd() const { return bEnded ? -1 : ReadEnd.Get(); }
	/** Reads what is there. */
	void Drain();
	bool HasEnded() const { return bEnded; }
	bool HasFailed() const { return bFailed; }
	FString GetText() const { return FString::FromUtf8((const ANSICHAR*)Bytes.GetData(), Bytes.Num()); }

private:
	FDescriptor ReadEnd;
	FDescriptor WriteEnd;
	TArray<uint8> Bytes;
	bool bEnded = false;
	bool bFailed = false;
};

/**
 * Gathers both streams until the child has ended, and what it wrote until then; a process that it left behind with its
 * pipes isn't waited for. @return false when reading failed or the limit, by the system's clock, has passed.
 */
bool CaptureUntilEnd(FChildProcess& Child, FOutputStream& Output, FOutputStream& Errors, double LimitSeconds);
