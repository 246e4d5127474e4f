#include "Providers/OpenAI/CVXOpenAIMessages.h"

#include "Algo/AnyOf.h"
#include "Providers/OpenAI/CVXOpenAILog.h"

namespace
{
using FMessages = TArray<FCVXOpenAIMessage>;
/** Views into the history, which outlives them. */
using FIds = TSet<FStringView>;

bool IsToolResult(const FCVXContentBlock& Block)
{
	return Block.Type == TEXTVIEW("tool_result");
}

ECVXOpenAIForm ChooseForm(const FCVXMessage& Message)
{
	if (Algo::AnyOf(Message.Content, IsToolResult))
	{
		return ECVXOpenAIForm::ToolResult;
	}
	if (Message.Role == ECVXMessageRole::Assistant && Algo::AnyOf(Message.Content, CVXOpenAI::IsToolUse))
	{
		return ECVXOpenAIForm::ToolCalls;
	}
	return Algo::AnyOf(Message.Content, CVXOpenAI::IsImage) ? ECVXOpenAIForm::Parts : ECVXOpenAIForm::Text;
}

void AddMessage(FMessages& Out, const FCVXMessage& Message)
{
	const ECVXOpenAIForm Form = ChooseForm(Message);
	if (Form != ECVXOpenAIForm::ToolResult)
	{
		Out.Add({Form, &Message});
		return;
	}
	for (const FCVXContentBlock& Block : Message.Content)
	{
		if (IsToolResult(Block))
		{
			Out.Add({Form, &Message, &Block});
		}
	}
}

/** Visits the id of each call of a message, in order. */
template <typename VisitorType>
void ForEachCall(const FCVXOpenAIMessage& Message, VisitorType&& Visit)
{
	if (Message.Form != ECVXOpenAIForm::ToolCalls)
	{
		return;
	}
	for (const FCVXContentBlock& Block : Message.Source->Content)
	{
		if (CVXOpenAI::IsToolUse(Block))
		{
			Visit(FStringView(Block.ToolUseId));
		}
	}
}

FIds CollectCalls(const FMessages& Messages)
{
	FIds Ids;
	for (const FCVXOpenAIMessage& Message : Messages)
	{
		ForEachCall(Message, [&Ids](FStringView Id) { Ids.Add(Id); });
	}
	return Ids;
}

FIds CollectResults(const FMessages& Messages)
{
	FIds Ids;
	for (const FCVXOpenAIMessage& Message : Messages)
	{
		if (Message.Result)
		{
			Ids.Add(Message.Result->ToolUseId);
		}
	}
	return Ids;
}

bool HasCallAmong(const FCVXOpenAIMessage& Message, const FIds& Ids)
{
	bool bFound = false;
	ForEachCall(Message, [&](FStringView Id) { bFound |= Ids.Contains(Id); });
	return bFound;
}

/** A vendor refuses the whole request for one call without a result. */
void RemoveOrphans(FMessages& Messages)
{
	const FIds Orphans = CollectCalls(Messages).Difference(CollectResults(Messages));
	if (Orphans.IsEmpty())
	{
		return;
	}
	UE_LOG(LogCVXOpenAIProvider, Warning,
		TEXT("Pairing guard: removing %d assistant messages with orphaned tool_calls"), Orphans.Num());
	Messages.RemoveAll([&](const FCVXOpenAIMessage& Message) { return HasCallAmong(Message, Orphans); });
	const FIds Left = CollectCalls(Messages);
	Messages.RemoveAll([&](const FCVXOpenAIMessage& Message)
		{ return Message.Result && !Left.Contains(FStringView(Message.Result->ToolUseId)); });
}

/** The place of each result; of two with one id, the later counts. */
TMap<FStringView, int32> FindResults(const FMessages& Messages)
{
	TMap<FStringView, int32> Places;
	for (int32 Index = 0; Index < Messages.Num(); ++Index)
	{
		if (const FCVXContentBlock* Result = Messages[Index].Result)
		{
			Places.Add(Result->ToolUseId, Index);
		}
	}
	return Places;
}

/** @return for each message the indexes of the results that belong behind it. OutPlaced gets all of these. */
TArray<TArray<int32>> AssignResults(const FMessages& Messages, TSet<int32>& OutPlaced)
{
	const TMap<FStringView, int32> Places = FindResults(Messages);
	TArray<TArray<int32>> Behind;
	Behind.SetNum(Messages.Num());
	for (int32 Index = 0; Index < Messages.Num(); ++Index)
	{
		ForEachCall(Messages[Index],
			[&](FStringView Id)
			{
				const int32* Place = Places.Find(Id);
				if (Place && !OutPlaced.Contains(*Place))
				{
					OutPlaced.Add(*Place);
					Behind[Index].Add(*Place);
				}
			});
	}
	return Behind;
}

void MoveResultsToCalls(FMessages& Messages)
{
	TSet<int32> Placed;
	const TArray<TArray<int32>> Behind = AssignResults(Messages, Placed);
	if (Placed.IsEmpty())
	{
		return;
	}
	UE_LOG(LogCVXOpenAIProvider, Log, TEXT("Adjacency repair: relocated %d tool messages to follow their assistant"),
		Placed.Num());
	FMessages Arranged;
	Arranged.Reserve(Messages.Num());
	for (int32 Index = 0; Index < Messages.Num(); ++Index)
	{
		if (Placed.Contains(Index))
		{
			continue;
		}
		Arranged.Add(Messages[Index]);
		for (const int32 Result : Behind[Index])
		{
			Arranged.Add(Messages[Result]);
		}
	}
	Messages = MoveTemp(Arranged);
}
} // namespace

bool CVXOpenAI::IsToolUse(const FCVXContentBlock& Block)
{
	return Block.Type == TEXTVIEW("tool_use");
}

bool CVXOpenAI::IsImage(const FCVXContentBlock& Block)
{
	return Block.Type == TEXTVIEW("image") && !Block.ImageBase64.IsEmpty();
}

TArray<FCVXOpenAIMessage> CVXOpenAI::ArrangeMessages(const TArray<FCVXMessage>& Messages)
{
	FMessages Arranged;
	Arranged.Reserve(Messages.Num());
	for (const FCVXMessage& Message : Messages)
	{
		if (Message.Role != ECVXMessageRole::System)
		{
			AddMessage(Arranged, Message);
		}
	}
	RemoveOrphans(Arranged);
	MoveResultsToCalls(Arranged);
	return Arranged;
}
