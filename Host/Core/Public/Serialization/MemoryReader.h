#pragma once

#include "Serialization/Archive.h"

/** Reads from bytes in memory, which outlive it. */
class FMemoryReader : public FArchive
{
public:
	explicit FMemoryReader(TArrayView<const uint8> InBytes, bool bIsPersistent = false)
		: Bytes(InBytes)
	{
		SetIsLoading(true);
		SetIsPersistent(bIsPersistent);
	}

	void Serialize(void* Data, int64 Num) override
	{
		if (Num < 0 || IsError() || Num > Bytes.Num() - Position)
		{
			SetError();
			FMemory::Memzero(Data, Num > 0 ? (SIZE_T)Num : 0);
			return;
		}
		FMemory::Memcpy(Data, Bytes.GetData() + Position, (SIZE_T)Num);
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
	FString GetArchiveName() const override { return TEXT("FMemoryReader"); }

private:
	TArrayView<const uint8> Bytes;
	int64 Position = 0;
};
