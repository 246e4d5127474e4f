#include "HTTP/CVXSSEStream.h"

#include "Async/Async.h"
#include "CoreGlobals.h"
#include "HAL/PlatformTime.h"
#include "Misc/ScopeLock.h"

namespace
{
/** The length that a UTF-8 sequence has by its first byte; 1 for a byte that begins none. */
int32 SequenceLength(uint8 First)
{
	if ((First & 0xE0) == 0xC0)
	{
		return 2;
	}
	if ((First & 0xF0) == 0xE0)
	{
		return 3;
	}
	return (First & 0xF8) == 0xF0 ? 4 : 1;
}

/** @return how many bytes at the end belong to a sequence that runs past it. */
int64 CountIncomplete(const uint8* Data, int64 Num)
{
	int64 Start = Num - 1;
	while (Start > 0 && (Data[Start] & 0xC0) == 0x80)
	{
		--Start;
	}
	return Start + SequenceLength(Data[Start]) > Num ? Num - Start : 0;
}
} // namespace

FCVXSSEStream::FCVXSSEStream(TFunction<void(const FCVXSSEEvent&)> InOnEvent)
	: OnEvent(MoveTemp(InOnEvent))
{
	SetIsSaving(true);
}

FCVXSSEStream::~FCVXSSEStream() = default;

void FCVXSSEStream::Reset()
{
	FArchive::Reset();
	SetIsSaving(true);
	bCancelled = false;
	Parser.Reset();
	IncompleteTail.Empty();
	{
		FScopeLock Lock(&RawLock);
		RawBytes.Empty();
	}
	FScopeLock Lock(&ChunkLock);
	PendingChunks.Empty();
	LastFlushTime = 0.0;
}

void FCVXSSEStream::Serialize(void* Data, int64 Num)
{
	if (bCancelled || Num < 1)
	{
		return;
	}
	const uint8* Bytes = (const uint8*)Data;
	KeepRaw(Bytes, Num);
	if (IncompleteTail.IsEmpty())
	{
		Decode(Bytes, Num);
		return;
	}
	TArray<uint8> Joined = MoveTemp(IncompleteTail);
	Joined.Append(Bytes, (int32)Num);
	Decode(Joined.GetData(), Joined.Num());
}

void FCVXSSEStream::KeepRaw(const uint8* Data, int64 Num)
{
	const int64 Kept = FMath::Min<int64>(Num, MaxRawBytes);
	FScopeLock Lock(&RawLock);
	const int32 Surplus = RawBytes.Num() + (int32)Kept - MaxRawBytes;
	if (Surplus > 0)
	{
		RawBytes.RemoveAt(0, Surplus, EAllowShrinking::No);
	}
	RawBytes.Append(Data + (Num - Kept), (int32)Kept);
}

void FCVXSSEStream::Decode(const uint8* Data, int64 Num)
{
	const int64 Incomplete = CountIncomplete(Data, Num);
	IncompleteTail = TArray<uint8>(Data + (Num - Incomplete), (int32)Incomplete);
	if (Num == Incomplete)
	{
		return;
	}
	bool bFlush = false;
	{
		FScopeLock Lock(&ChunkLock);
		PendingChunks.AppendUtf8((const ANSICHAR*)Data, Num - Incomplete);
		bFlush = (QueuedChunks == 0 && !IsInGameThread()) || PendingChunks.Len() >= FlushSizeThreshold ||
			FPlatformTime::Seconds() - LastFlushTime >= FlushIntervalSecs;
	}
	if (bFlush)
	{
		FlushPendingChunks();
	}
}

void FCVXSSEStream::Flush()
{
	FlushPendingChunks();
}

/** Under the lock. */
FString FCVXSSEStream::TakePending()
{
	FString Chunk = MoveTemp(PendingChunks);
	PendingChunks.Reset();
	LastFlushTime = FPlatformTime::Seconds();
	return Chunk;
}

void FCVXSSEStream::FlushPendingChunks()
{
	const bool bHere = IsInGameThread();
	FString Chunk;
	{
		FScopeLock Lock(&ChunkLock);
		if (PendingChunks.IsEmpty())
		{
			return;
		}
		Chunk = TakePending();
		QueuedChunks += bHere ? 0 : 1;
	}
	if (bHere)
	{
		Parse(Chunk);
		return;
	}
	AsyncTask(
		ENamedThreads::GameThread, [Stream = AsShared(), Chunk = MoveTemp(Chunk)] { Stream->ParseQueued(Chunk); });
}

void FCVXSSEStream::ParseQueued(const FString& Chunk)
{
	Parse(Chunk);
	FString Next;
	{
		FScopeLock Lock(&ChunkLock);
		if (--QueuedChunks == 0)
		{
			// It counted on this batch to be fetched. Taken under this lock, or a newer batch could be on its way.
			Next = TakePending();
		}
	}
	Parse(Next);
}

void FCVXSSEStream::Parse(const FString& Chunk)
{
	if (!bCancelled)
	{
		Parser.FeedChunk(Chunk, OnEvent);
	}
}

void FCVXSSEStream::Cancel()
{
	bCancelled = true;
}

FString FCVXSSEStream::GetRawContent() const
{
	FScopeLock Lock(&RawLock);
	return FString::FromUtf8((const ANSICHAR*)RawBytes.GetData(), RawBytes.Num());
}
