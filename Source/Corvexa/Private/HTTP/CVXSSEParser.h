#pragma once

#include "CoreMinimal.h"

/** One server-sent event. */
struct FCVXSSEEvent
{
	/** The value of the last `event:` field; empty when there was none. */
	FString EventType;
	/** All `data:` lines, joined by newlines. */
	FString Data;
};

/**
 * Turns text that arrives in pieces into server-sent events (WHATWG HTML, "Server-sent events", section 9.2.6, less
 * `id` and `retry`; lone carriage returns end no line). An event without its closing blank line is never delivered.
 * One thread at a time.
 */
class FCVXSSEParser
{
public:
	/** A longer line is handed on in parts, each parsed as a line of its own. In code units. */
	static constexpr int32 MaxLineLength = 262144;
	/** What an event's data has beyond this is left out, so that one that never ends stays small. In code units. */
	static constexpr int32 MaxDataLength = 64 * MaxLineLength;

	/** Parses a further piece. OnEvent is called once for each event that it completes. */
	void FeedChunk(const FString& Chunk, const TFunction<void(const FCVXSSEEvent&)>& OnEvent);

	/** Forgets everything seen so far. */
	void Reset();

private:
	using FOnEvent = TFunction<void(const FCVXSSEEvent&)>;

	void ProcessLine(FStringView Line, const FOnEvent& OnEvent);
	void ProcessField(FStringView Name, FStringView Value);
	void AppendData(FStringView Value);
	void DispatchEvent(const FOnEvent& OnEvent);
	void ReuseMemory(FCVXSSEEvent&& Event);

	/** The text behind the last newline. */
	FString LineBuffer;
	FString CurrentEvent;
	FString CurrentData;
};
