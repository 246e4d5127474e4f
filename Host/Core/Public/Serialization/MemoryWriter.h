#pragma once

#include "Serialization/Archive.h"

/** Writes to an array, which outlives it; writing at a place inside overwrites. The array holds less than 2 GB. */
class FMemoryWriter : public FArchive
{
public:
	explicit FMemoryWriter(TArray<uint8>& InBytes, bool bIsPersistent = false, bool bSetOffset = false)
		: Bytes(InBytes)
		, Position(bSetOffset ? InBytes.Num() : 0)
	{
		SetIsSaving(true);
		SetIsPersistent(bIsPersistent);
	}

	void Serialize(void* Data, int64 Num) override
	{
		if (Num < 0 || IsError() || Num > MAX_int32 - Position)
		{
			SetError();
			return;
		}
		const int64 Missing = Position + Num - Bytes.Num();
		if (Missing > 0)
		{
			Bytes.AddUninitialized((int32)Missing);
		}
		FMemory::Memcpy(Bytes.GetData() + Position, Data, (SIZE_T)Num);
		Position += Num;
	}
	int64 Tell() override { return Position; }
	int64 TotalSize() override { return Bytes.Num(); }
	void Seek(int64 InPosition) override
	{
		if (InPosition < 0 || InPosition > Bytes.Num())
		{
			SetError();
			return;
		}
		Position = InPosition;
	}
	FString GetArchiveName() const override { return TEXT("FMemoryWriter"); }

private:
	TArray<uint8>& Bytes;
	int64 Position;
};
