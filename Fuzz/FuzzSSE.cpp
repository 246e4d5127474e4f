#include "HTTP/CVXSSEStream.h"
#include "Launch/EngineState.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

namespace
{
/** The events of the bytes as one text, written in pieces of Step bytes. */
FString ReadInPieces(std::string Bytes, std::size_t Step)
{
	FString Events;
	const TSharedRef<FCVXSSEStream> Stream = MakeShared<FCVXSSEStream>(
		[&Events](const FCVXSSEEvent& Event) { Events += Event.EventType + TEXT("\n") + Event.Data + TEXT("\r"); });
	for (std::size_t At = 0; At < Bytes.size(); At += Step)
	{
		Stream->Serialize(Bytes.data() + At, (int64)std::min(Step, Bytes.size() - At));
	}
	Stream->Flush();
	check(Stream->GetRawContent().Len() <= FCVXSSEStream::MaxRawBytes);
	return Events;
}
} // namespace

/** A body gives the same events however it is cut; the first byte says how. A line beyond the limit is cut itself. */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size)
{
	if (Size > FCVXSSEParser::MaxLineLength)
	{
		return 0;
	}
	AdoptGameThread();
	const std::string Body((const char*)Data + (Size > 0 ? 1 : 0), Size > 0 ? Size - 1 : 0);
	const std::size_t Step = 1 + (Size > 0 ? Data[0] % 16 : 0);
	check(ReadInPieces(Body, Step).Equals(ReadInPieces(Body, Body.size() + 1)));
	return 0;
}
