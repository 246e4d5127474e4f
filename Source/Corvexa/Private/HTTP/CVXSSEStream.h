#pragma once

#include "HAL/CriticalSection.h"
#include "HTTP/CVXSSEParser.h"
#include "Serialization/Archive.h"

#include <atomic>

/**
 * Takes the bytes of a streamed response and delivers its server-sent events on the game thread, in order. The HTTP
 * thread writes; text goes over to the game thread in batches, at most one each 16 ms while little arrives. What is
 * left pending when the peer falls silent follows by a timer of the game thread, so that no word waits for the next.
 * Always owned by a shared pointer, which a batch under way holds too.
 */
class FCVXSSEStream
	: public FArchive
	, public TSharedFromThis<FCVXSSEStream>
{
public:
	/** The longest that text stays pending while more arrives, in seconds. */
	static constexpr double FlushIntervalSecs = 0.016;
	/** Pending text of this many code units goes over at once. */
	static constexpr int32 FlushSizeThreshold = 4096;
	/** The newest bytes kept for quoting an error body. */
	static constexpr int32 MaxRawBytes = 8192;

	/** @param InOnEvent called on the game thread. */
	explicit FCVXSSEStream(TFunction<void(const FCVXSSEEvent&)> InOnEvent);
	~FCVXSSEStream() override;

	/** Back to the state after construction. Game thread, with no write under way. */
	void Reset() override;
	/** Takes the next bytes of the body. One thread at a time. */
	void Serialize(void* Data, int64 Num) override;
	/** Hands all pending text over; on the game thread it is parsed before the call returns. */
	void Flush() override;

	/** Ends the delivery: no event comes after this call on the game thread. Any thread. */
	void Cancel();
	/** The newest bytes as text. Any thread. */
	FString GetRawContent() const;

private:
	void KeepRaw(const uint8* Data, int64 Num);
	void Decode(const uint8* Data, int64 Num);
	void FlushPendingChunks();
	void Parse(const FString& Chunk);
	void ParseQueued(const FString& Chunk);
	void WatchForPending();
	bool FlushOverdue();

	TFunction<void(const FCVXSSEEvent&)> OnEvent;
	/** Touched on the game thread alone. */
	FCVXSSEParser Parser;
	std::atomic<bool> bCancelled{false};

	mutable FCriticalSection RawLock;
	TArray<uint8> RawBytes;

	FCriticalSection ChunkLock;
	FString PendingChunks;
	double LastFlushTime = 0.0;
	/** The batches on their way to the game thread, which nothing newer may overtake. Under the same lock. */
	int32 QueuedChunks = 0;
	/** Whether the timer runs that looks for overdue text. Game thread. */
	bool bWatching = false;

	/** The first bytes of a UTF-8 sequence whose rest hasn't come yet. Touched by the writing thread alone. */
	TArray<uint8> IncompleteTail;
};
