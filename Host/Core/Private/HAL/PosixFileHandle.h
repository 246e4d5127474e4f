#pragma once

#include "GenericPlatform/GenericPlatformFile.h"
#include "PosixFile.h"

/** A file handle over a descriptor. */
class FPosixFileHandle final : public IFileHandle
{
public:
	explicit FPosixFileHandle(FDescriptor&& InDescriptor)
		: Descriptor(MoveTemp(InDescriptor))
	{
	}

	int64 Tell() override;
	bool Seek(int64 NewPosition) override;
	bool SeekFromEnd(int64 NewPositionRelativeToEnd) override;
	bool Read(uint8* Destination, int64 BytesToRead) override;
	bool Write(const uint8* Source, int64 BytesToWrite) override;
	bool Flush(bool bFullFlush) override;
	bool Truncate(int64 NewSize) override;
	int64 Size() override;

private:
	FDescriptor Descriptor;
};
