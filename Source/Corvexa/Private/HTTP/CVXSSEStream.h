#pragma once

#include "HAL/CriticalSection.h"
#include "HTTP/CVXSSEParser.h"
#include "Serialization/Archive.h"

#include <atomic>

/**
 * Takes the bytes of a streamed response and delivers its server-sent events on the game thread, in order. The HTTP
 * thread writes; its text goes over at once while no batch is under way to the game thread, so that no word waits for
 * the next. Behind a batch under way it gathers, and follows when that is parsed, or sooner when it is much or old.
 * Always owned by a shared pointer, which a batch under way holds too.
 */
class FCVXSSEStream
	: public FArchive
	, public TSharedFromThis<FCVXSSEStream>
{
public:
	/** So long after a batch, in seconds, the next text goes over at once in any case. */
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
	FString TakePending();
	void FlushPendingChunks();
	void Parse(const FString& Chunk);
	void ParseQueued(const FString& Chunk);

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

	/** The first bytes of a UTF-8 sequence whose rest hasn't come yet. Touched by the writing thread alone. */
	TArray<uint8> IncompleteTail;
};
