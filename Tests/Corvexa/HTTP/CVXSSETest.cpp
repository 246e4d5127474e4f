#include "HTTP/CVXSSEStream.h"

#include "CoreGlobals.h"
#include "Support/HostTypePrinting.h"
#include "Support/LogCapture.h"
#include "Support/LoopPump.h"
#include "Support/TestClock.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <thread>

namespace
{
/** The events as text: "type|data" each. */
struct FEvents
{
	TArray<FString> Seen;

	TFunction<void(const FCVXSSEEvent&)> Sink()
	{
		return [this](const FCVXSSEEvent& Event) { Seen.Add(Event.EventType + TEXT("|") + Event.Data); };
	}
};

TArray<FString> Parse(const TCHAR* Text)
{
	FEvents Events;
	FCVXSSEParser Parser;
	Parser.FeedChunk(Text, Events.Sink());
	return Events.Seen;
}

void Write(FCVXSSEStream& Stream, const std::string& Bytes)
{
	std::string Copy = Bytes;
	Stream.Serialize(Copy.data(), (int64)Copy.size());
}

const std::string Sample =
	": comment\nevent: first\ndata: {\"a\":\"\xC3\xA4\xF0\x9F\x98\x80\"}\r\n\r\n"
	"data: one\ndata:two\nid: 7\n\nevent: nameless\n\ndata\ndata: x\n\nDATA:  y\n\ndata: never closed\n";

TArray<FString> SampleEvents()
{
	return {TEXT("first|{\"a\":\"ä😀\"}"), TEXT("|one\ntwo"), TEXT("|x"), TEXT("| y")};
}
} // namespace

TEST(CVXSSEParser, FieldsFollowTheirRules)
{
	const struct
	{
		const TCHAR* Text;
		TArray<FString> Events;
	} Cases[] = {
		{TEXT("data:x\n\ndata: x\n\ndata:  x\n\n"), {TEXT("|x"), TEXT("|x"), TEXT("| x")}},
		{TEXT("data: a\ndata: b\n\n"), {TEXT("|a\nb")}},
		{TEXT("data:\n\ndata\n\n"), {}},
		{TEXT("event: e\n\ndata: d\n\n"), {TEXT("|d")}},
		{TEXT("event: e\nevent\ndata: d\n\n"), {TEXT("|d")}},
		{TEXT("EVENT: e\r\nData: d\r\n\r\n"), {TEXT("e|d")}},
		{TEXT("data: a\ndata\n\n"), {TEXT("|a\n")}},
		{TEXT("data: a\rb\n\n"), {TEXT("|a\rb")}},
		{TEXT(":data: a\n\nunknown: x\n\n"), {}},
		{TEXT("data: a:b: c\n\n"), {TEXT("|a:b: c")}},
		{TEXT("data: open"), {}},
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(Parse(Case.Text), Case.Events) << TCHAR_TO_UTF8(Case.Text);
	}
}

TEST(CVXSSEParser, ALineBeyondTheLimitIsHandedOnInPartsAndParsingGoesOn)
{
	const FLogCapture Log;
	FEvents Events;
	FCVXSSEParser Parser;
	Parser.FeedChunk(TEXT("data: ") + FString::ChrN(FCVXSSEParser::MaxLineLength - 5, u'x'), Events.Sink());
	EXPECT_EQ(
		Log.Count(TEXT("SSEParser: LineBuffer exceeded 262144 chars without newline — force-flushing as data line"),
			ELogVerbosity::Warning),
		1);
	Parser.FeedChunk(TEXT("data: rest\n\ndata: next\n\n"), Events.Sink());
	ASSERT_EQ(Events.Seen.Num(), 2);
	EXPECT_TRUE(Events.Seen[0].EndsWith(TEXT("xxx\nrest")));
	EXPECT_EQ(Events.Seen[0].Len(), FCVXSSEParser::MaxLineLength - 5 + 6);
	EXPECT_EQ(Events.Seen[1], TEXT("|next"));
}

TEST(CVXSSEParser, WhatNeverEndsStaysSmallAndWhatIsEmptyIsNothing)
{
	const FLogCapture Log;
	FEvents Events;
	FCVXSSEParser Parser;
	const FString Line = TEXT("data: ") + FString::ChrN(FCVXSSEParser::MaxLineLength - 10, u'x') + TEXT("\n");
	for (int32 Count = 0; Count < 80; ++Count)
	{
		Parser.FeedChunk(Line, Events.Sink());
	}
	EXPECT_EQ(Log.Count(TEXT("SSEParser: event data cut at 16777216 chars"), ELogVerbosity::Warning), 1);
	Parser.FeedChunk(TEXT("\n"), Events.Sink());
	ASSERT_EQ(Events.Seen.Num(), 1);
	EXPECT_EQ(Events.Seen[0].Len(), FCVXSSEParser::MaxDataLength + 1);
	for (const TCHAR* Empty : {TEXT("\n"), TEXT("event: e\n\n"), TEXT("data:\n\n"), TEXT(": ping\r\n\r\n")})
	{
		FString Many;
		for (int32 Count = 0; Count < 100000; ++Count)
		{
			Many += Empty;
		}
		Parser.FeedChunk(Many, Events.Sink());
	}
	Parser.FeedChunk(TEXT("retry: 99999999999999999999\ndata: next\n\n"), Events.Sink());
	ASSERT_EQ(Events.Seen.Num(), 2);
	EXPECT_EQ(Events.Seen[1], TEXT("|next"));
}

TEST(CVXSSEStream, AStreamCutAnywhereGivesTheSameEvents)
{
	FLoopPump Pump;
	for (size_t Cut = 0; Cut <= Sample.size(); ++Cut)
	{
		FEvents Events;
		const TSharedRef<FCVXSSEStream> Stream = MakeShared<FCVXSSEStream>(Events.Sink());
		Write(*Stream, Sample.substr(0, Cut));
		Write(*Stream, Sample.substr(Cut));
		Stream->Flush();
		ASSERT_EQ(Events.Seen, SampleEvents()) << "cut at " << Cut;
	}
	std::mt19937 Random(5);
	for (int32 Round = 0; Round < 300; ++Round)
	{
		FEvents Events;
		const TSharedRef<FCVXSSEStream> Stream = MakeShared<FCVXSSEStream>(Events.Sink());
		for (size_t At = 0; At < Sample.size();)
		{
			const size_t Piece = 1 + Random() % 9;
			Write(*Stream, Sample.substr(At, Piece));
			At += Piece;
		}
		Stream->Flush();
		ASSERT_EQ(Events.Seen, SampleEvents());
	}
}

TEST(CVXSSEStream, EventsReachTheGameThreadInOrderFromAnotherThread)
{
	FLoopPump Pump;
	TArray<int32> Numbers;
	const TSharedRef<FCVXSSEStream> Stream = MakeShared<FCVXSSEStream>(
		[&Numbers](const FCVXSSEEvent& Event)
		{
			EXPECT_TRUE(IsInGameThread());
			Numbers.Add(FCString::Atoi(*Event.Data));
		});
	constexpr int32 Count = 20000;
	std::thread Writer(
		[&Stream]
		{
			for (int32 Index = 0; Index < Count; ++Index)
			{
				Write(*Stream, "data: " + std::to_string(Index) + "\n\n");
			}
			Stream->Flush();
		});
	EXPECT_TRUE(Pump.Until([&Numbers] { return Numbers.Num() == Count; }));
	Writer.join();
	for (int32 Index = 0; Index < Numbers.Num(); ++Index)
	{
		ASSERT_EQ(Numbers[Index], Index);
	}
}

TEST(CVXSSEStream, TextWaitsForItsTurnUntilItIsMuchOrFlushed)
{
	FTestClock Clock;
	Clock.Advance(100.0);
	FLoopPump Pump;
	FEvents Events;
	const TSharedRef<FCVXSSEStream> Stream = MakeShared<FCVXSSEStream>(Events.Sink());
	Write(*Stream, "data: 1\n\n");
	EXPECT_EQ(Events.Seen.Num(), 1) << "the first text goes at once";
	Write(*Stream, "data: 2\n\n");
	EXPECT_EQ(Events.Seen.Num(), 1);
	Clock.Advance(FCVXSSEStream::FlushIntervalSecs * 1.01);
	Write(*Stream, "data: 3\n\n");
	EXPECT_EQ(Events.Seen.Num(), 3);
	Write(*Stream, "data: " + std::string(FCVXSSEStream::FlushSizeThreshold, 'x') + "\n\n");
	EXPECT_EQ(Events.Seen.Num(), 4);
	Write(*Stream, "data: 5\n\n");
	Stream->Flush();
	EXPECT_EQ(Events.Seen.Num(), 5);
}

TEST(CVXSSEStream, FromAnotherThreadNoWordWaitsForTheNextAndNoneOvertakesAnother)
{
	const FTestClock Clock;
	FLoopPump Pump;
	FEvents Events;
	TSharedPtr<FCVXSSEStream> Stream;
	const auto WriteElsewhere = [&Stream](const char* Bytes) { std::thread([&] { Write(*Stream, Bytes); }).join(); };
	Stream = MakeShared<FCVXSSEStream>(
		[&](const FCVXSSEEvent& Event)
		{
			Events.Sink()(Event);
			if (Event.Data == TEXT("5"))
			{
				WriteElsewhere("data: 6\n\n");
			}
		});
	WriteElsewhere("data: 1\n\n");
	Pump.Tick();
	WriteElsewhere("data: 2\n\n");
	Pump.Tick();
	EXPECT_EQ(Events.Seen.Num(), 2) << "the clock stands, and no timer can help";
	// The fourth finds the third under way, the sixth the fifth.
	WriteElsewhere("data: 3\n\n");
	WriteElsewhere("data: 4\n\n");
	Pump.Tick();
	WriteElsewhere("data: 5\n\n");
	Pump.Tick();
	EXPECT_EQ(Events.Seen, (TArray<FString>{TEXT("|1"), TEXT("|2"), TEXT("|3"), TEXT("|4"), TEXT("|5"), TEXT("|6")}));
}

TEST(CVXSSEStream, NothingComesAfterACancelAndResetBeginsAnew)
{
	FLoopPump Pump;
	FEvents Events;
	const TSharedRef<FCVXSSEStream> Stream = MakeShared<FCVXSSEStream>(Events.Sink());
	std::thread([&Stream] { Write(*Stream, "data: queued\n\n"); }).join();
	Stream->Cancel();
	Pump.Tick();
	Write(*Stream, "data: late\n\n");
	Stream->Flush();
	EXPECT_TRUE(Events.Seen.IsEmpty());
	EXPECT_EQ(Stream->GetRawContent(), TEXT("data: queued\n\n"));
	Stream->Reset();
	EXPECT_TRUE(Stream->GetRawContent().IsEmpty());
	EXPECT_TRUE(Stream->IsSaving());
	Write(*Stream, "data: again\n\n");
	Stream->Flush();
	EXPECT_EQ(Events.Seen, (TArray<FString>{TEXT("|again")}));
}

TEST(CVXSSEStream, TheNewestBytesAreKeptForQuoting)
{
	FLoopPump Pump;
	const TSharedRef<FCVXSSEStream> Stream = MakeShared<FCVXSSEStream>([](const FCVXSSEEvent&) {});
	std::string Body;
	for (int32 Index = 0; Index < 2000; ++Index)
	{
		Body += std::to_string(10000 + Index);
	}
	Write(*Stream, Body.substr(0, 9000));
	Write(*Stream, Body.substr(9000));
	EXPECT_EQ(Stream->GetRawContent(), FString(Body.substr(Body.size() - 8192).c_str()));
}
