#include "Serialization/Archive.h"

#include "UObject/NameTypes.h"

void FArchiveState::Reset()
{
	bIsLoading = false;
	bIsSaving = false;
	bIsPersistent = false;
	bIsError = false;
}

void FArchive::Seek(int64)
{
	SetError();
}

bool FArchive::AtEnd()
{
	const int64 Position = Tell();
	return Position != INDEX_NONE && Position >= TotalSize();
}

int64 FArchive::GetRemaining()
{
	const int64 Total = TotalSize();
	const int64 Position = Tell();
	if (IsError())
	{
		return 0;
	}
	return Total == INDEX_NONE || Position == INDEX_NONE ? MAX_int64 : Total - Position;
}

FArchive& FArchive::operator<<(bool& Value)
{
	uint32 Stored = Value ? 1 : 0;
	Serialize(&Stored, sizeof(Stored));
	if (IsLoading())
	{
		Value = Stored != 0;
	}
	return *this;
}

namespace
{
void SaveText(FArchive& Archive, const FString& Text)
{
	bool bNarrow = true;
	for (const TCHAR Char : Text)
	{
		bNarrow &= Char < 128;
	}
	int32 Count = Text.IsEmpty() ? 0 : (Text.Len() + 1) * (bNarrow ? 1 : -1);
	Archive << Count;
	if (bNarrow)
	{
		TArray<ANSICHAR> Narrow;
		for (int32 Index = 0; Index < Count; ++Index)
		{
			Narrow.Add((ANSICHAR)(Index < Text.Len() ? Text[Index] : 0));
		}
		Archive.Serialize(Narrow.GetData(), Narrow.Num());
		return;
	}
	Archive.Serialize((void*)*Text, -(int64)Count * (int64)sizeof(TCHAR));
}

/** Whether the rest of the input can hold that much; where its size isn't known, no claim is believed. */
bool CanHold(FArchive& Archive, int64 Bytes)
{
	return Bytes >= 0 && Archive.TotalSize() != INDEX_NONE && Bytes <= Archive.GetRemaining();
}

void LoadText(FArchive& Archive, FString& OutText)
{
	OutText.Reset();
	int32 Count = 0;
	Archive << Count;
	const bool bNarrow = Count > 0;
	const int64 Units = bNarrow ? (int64)Count : -(int64)Count;
	const int64 Bytes = Units * (bNarrow ? 1 : (int64)sizeof(TCHAR));
	if (Units == 0)
	{
		return;
	}
	if (Units > MAX_int32 / 4 || !CanHold(Archive, Bytes))
	{
		Archive.SetError();
		return;
	}
	TArray<uint8> Raw;
	Raw.SetNumUninitialized((int32)Bytes);
	Archive.Serialize(Raw.GetData(), Bytes);
	// The last unit is the terminator.
	const int32 Length = Archive.IsError() ? 0 : (int32)Units - 1;
	TCHAR* Dest = Length > 0 ? OutText.AppendUninitialized(Length) : nullptr;
	for (int32 Index = 0; Index < Length; ++Index)
	{
		Dest[Index] = bNarrow ? (TCHAR)Raw[Index] : ((const TCHAR*)Raw.GetData())[Index];
	}
}
} // namespace

FArchive& FArchive::operator<<(FString& Value)
{
	IsLoading() ? LoadText(*this, Value) : SaveText(*this, Value);
	return *this;
}

FArchive& FArchive::operator<<(FName& Value)
{
	FString Text = IsLoading() ? FString() : Value.ToString();
	*this << Text;
	if (IsLoading())
	{
		Value = FName(Text);
	}
	return *this;
}

FArchive& FArchive::operator<<(TArray<uint8>& Bytes)
{
	int32 Count = Bytes.Num();
	*this << Count;
	if (IsLoading())
	{
		const bool bFits = CanHold(*this, Count);
		Bytes.SetNumUninitialized(bFits ? Count : 0);
		if (!bFits)
		{
			SetError();
			return *this;
		}
	}
	Serialize(Bytes.GetData(), Count);
	return *this;
}
