#include "HTTP/CVXSSEParser.h"

#include "Core/CVXLog.h"

void FCVXSSEParser::FeedChunk(const FString& Chunk, const TFunction<void(const FCVXSSEEvent&)>& OnEvent)
{
	FStringView Rest(Chunk);
	int32 LineEnd = INDEX_NONE;
	while (Rest.FindChar(TEXT('\n'), LineEnd))
	{
		FStringView Line = Rest.Left(LineEnd);
		// Taken out of the buffer before the call: a handler may reset the parser.
		FString Joined;
		if (!LineBuffer.IsEmpty())
		{
			Joined = MoveTemp(LineBuffer);
			LineBuffer.Reset();
			Joined.Append(Line);
			Line = Joined;
		}
		if (Line.EndsWith(TEXT('\r')))
		{
			Line.RemoveSuffix(1);
		}
		Rest.RemovePrefix(LineEnd + 1);
		ProcessLine(Line, OnEvent);
	}
	LineBuffer.Append(Rest);
	if (LineBuffer.Len() > MaxLineLength)
	{
		UE_LOG(LogCorvexa, Warning,
			TEXT("SSEParser: LineBuffer exceeded %d chars without newline — force-flushing as data line"),
			MaxLineLength);
		const FString Line = MoveTemp(LineBuffer);
		LineBuffer.Reset();
		ProcessLine(Line, OnEvent);
	}
}

void FCVXSSEParser::Reset()
{
	LineBuffer.Empty();
	CurrentEvent.Empty();
	CurrentData.Empty();
}

void FCVXSSEParser::ProcessLine(FStringView Line, const FOnEvent& OnEvent)
{
	if (Line.IsEmpty())
	{
		DispatchEvent(OnEvent);
		return;
	}
	if (Line[0] == TEXT(':'))
	{
		return;
	}
	int32 Colon = INDEX_NONE;
	if (!Line.FindChar(TEXT(':'), Colon))
	{
		ProcessField(Line, FStringView());
		return;
	}
	FStringView Value = Line.RightChop(Colon + 1);
	if (Value.StartsWith(TEXT(' ')))
	{
		Value.RemovePrefix(1);
	}
	ProcessField(Line.Left(Colon), Value);
}

void FCVXSSEParser::ProcessField(FStringView Name, FStringView Value)
{
	if (Name == TEXTVIEW("data"))
	{
		AppendData(Value);
	}
	else if (Name == TEXTVIEW("event"))
	{
		CurrentEvent.Reset();
		CurrentEvent.Append(Value);
	}
}

void FCVXSSEParser::AppendData(FStringView Value)
{
	if (CurrentData.Len() == MaxDataLength)
	{
		return;
	}
	if (!CurrentData.IsEmpty())
	{
		CurrentData.AppendChar(TEXT('\n'));
	}
	CurrentData.Append(Value.Left(MaxDataLength - CurrentData.Len()));
	if (CurrentData.Len() == MaxDataLength)
	{
		UE_LOG(LogCorvexa, Warning, TEXT("SSEParser: event data cut at %d chars"), MaxDataLength);
	}
}

void FCVXSSEParser::DispatchEvent(const FOnEvent& OnEvent)
{
	// Taken out before the call, whose handler may use the parser.
	FCVXSSEEvent Event{MoveTemp(CurrentEvent), MoveTemp(CurrentData)};
	CurrentEvent.Reset();
	CurrentData.Reset();
	if (!Event.Data.IsEmpty())
	{
		OnEvent(Event);
	}
	if (CurrentEvent.IsEmpty() && CurrentData.IsEmpty())
	{
		ReuseMemory(MoveTemp(Event));
	}
}

void FCVXSSEParser::ReuseMemory(FCVXSSEEvent&& Event)
{
	Event.EventType.Reset();
	Event.Data.Reset();
	CurrentEvent = MoveTemp(Event.EventType);
	CurrentData = MoveTemp(Event.Data);
}
