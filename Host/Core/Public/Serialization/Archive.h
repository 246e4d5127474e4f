#pragma once

#include "Containers/UnrealString.h"

class FName;

/** What an archive is doing and how it went. */
class FArchiveState
{
public:
	virtual ~FArchiveState() = default;

	/** Returns the state to that after construction, so that the archive can be used anew. */
	virtual void Reset();

	bool IsLoading() const { return bIsLoading; }
	bool IsSaving() const { return bIsSaving; }
	bool IsPersistent() const { return bIsPersistent; }
	/** Whether anything failed since the start or the last `ClearError`; what was read since then is zero or empty. */
	bool IsError() const { return bIsError; }
	void SetError() { bIsError = true; }
	void ClearError() { bIsError = false; }
	void SetIsLoading(bool bValue) { bIsLoading = bValue; }
	void SetIsSaving(bool bValue) { bIsSaving = bValue; }
	void SetIsPersistent(bool bValue) { bIsPersistent = bValue; }

private:
	bool bIsLoading = false;
	bool bIsSaving = false;
	bool bIsPersistent = false;
	bool bIsError = false;
};

/**
 * A stream of bytes that is read or written by the same calls. Numbers are little-endian. One thread at a time, which
 * may be any. Loading never makes room for more than the rest of the input can hold, whatever a count in it claims.
 */
class FArchive : public FArchiveState
{
public:
	/** Reads into or writes from Data. On a failed read Data is zero and the error flag is set. */
	virtual void Serialize(void* Data, int64 Num) = 0;
	/** Hands on what is held back. */
	virtual void Flush() {}
	/** Ends the use of the stream. @return whether no error has occurred. */
	virtual bool Close() { return !IsError(); }

	virtual int64 Tell() { return INDEX_NONE; }
	/** Bytes in all, or INDEX_NONE when that isn't known. */
	virtual int64 TotalSize() { return INDEX_NONE; }
	virtual void Seek(int64 Position);
	virtual bool AtEnd();
	virtual FString GetArchiveName() const { return TEXT("FArchive"); }

	/** Bytes that can still be read; 0 after an error, MAX_int64 when the size isn't known. */
	int64 GetRemaining();

	FArchive& operator<<(bool& Value);
	FArchive& operator<<(FString& Value);
	FArchive& operator<<(FName& Value);
	template <typename T>
	requires std::is_arithmetic_v<T> FArchive& operator<<(T& Value)
	{
		Serialize(&Value, sizeof(T));
		return *this;
	}
	template <typename T>
	requires std::is_enum_v<T> FArchive& operator<<(T& Value)
	{
		Serialize(&Value, sizeof(T));
		return *this;
	}
	template <typename T>
	FArchive& operator<<(TArray<T>& Array)
	{
		int32 Count = Array.Num();
		*this << Count;
		if (!IsLoading())
		{
			for (T& Item : Array)
			{
				*this << Item;
			}
			return *this;
		}
		Array.Reset();
		if (Count < 0 || Count > GetRemaining())
		{
			SetError();
		}
		for (int32 Index = 0; Index < Count && !IsError(); ++Index)
		{
			*this << Array.AddDefaulted_GetRef();
		}
		return *this;
	}
	/** Bytes go as one block. */
	FArchive& operator<<(TArray<uint8>& Bytes);
};
