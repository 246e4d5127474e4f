#pragma once

#include "GenericPlatform/GenericPlatformFile.h"
#include "Serialization/Archive.h"
#include "Templates/UniquePtr.h"

/** Reads a file through a buffer. */
class FFileReader final : public FArchive
{
public:
	/** @param InHandle takes ownership; not null. */
	FFileReader(IFileHandle* InHandle, const TCHAR* InName);

	void Serialize(void* Data, int64 Num) override;
	int64 Tell() override { return Position; }
	int64 TotalSize() override { return Size; }
	void Seek(int64 InPosition) override;
	FString GetArchiveName() const override { return Name; }

private:
	bool ReadBlock(uint8* Dest, int64 Num);

	TUniquePtr<IFileHandle> Handle;
	FString Name;
	int64 Size;
	int64 Position = 0;
	TArray<uint8> Buffer;
	/** Where the buffer's first byte stands in the file. */
	int64 BufferStart = 0;
};

/** Writes a file through a buffer. */
class FFileWriter final : public FArchive
{
public:
	FFileWriter(IFileHandle* InHandle, const TCHAR* InName);
	~FFileWriter() override;

	void Serialize(void* Data, int64 Num) override;
	void Flush() override;
	bool Close() override;
	int64 Tell() override { return Position; }
	int64 TotalSize() override;
	void Seek(int64 InPosition) override;
	FString GetArchiveName() const override { return Name; }

private:
	TUniquePtr<IFileHandle> Handle;
	FString Name;
	int64 Position;
	TArray<uint8> Buffer;
};
