#include "Launch/Demo/AnthropicDemoDialect.h"

#include "Core/CVXTypes.h"
#include "Launch/Demo/DemoJson.h"
#include "Launch/Demo/DemoText.h"

namespace
{
using DemoJson::GetText;

void ReadBlock(const FJsonObject& Block, bool bFromUser, FDemoRequest& Out)
{
	const FString Type = GetText(Block, TEXT("type"));
	if (Type == TEXT("text") && bFromUser)
	{
		Out.AddUserText(GetText(Block, TEXT("text")));
	}
	else if (Type == TEXT("tool_use"))
	{
		Out.AddCall(GetText(Block, TEXT("id")), GetText(Block, TEXT("name")));
	}
	else if (Type == TEXT("tool_result"))
	{
		bool bIsError = false;
		Block.TryGetBoolField(TEXT("is_error"), bIsError);
		Out.AddResult(GetText(Block, TEXT("tool_use_id")), GetText(Block, TEXT("content")), bIsError);
	}
}

TSharedRef<FJsonObject> MakeObject(const TCHAR* Type)
{
	const TSharedRef<FJsonObject> Object = MakeShared<FJsonObject>();
	Object->SetStringField(TEXT("type"), Type);
	return Object;
}

/** Collects the events of one answer. */
class FEventWriter
{
public:
	std::vector<std::string> Events;

	void Start(const FDemoRequest& Request)
	{
		const TSharedRef<FJsonObject> Usage = MakeShared<FJsonObject>();
		Usage->SetNumberField(TEXT("input_tokens"), CountDemoTokens(Request));
		Usage->SetNumberField(TEXT("output_tokens"), 1);
		const TSharedRef<FJsonObject> Message = MakeObject(TEXT("message"));
		Message->SetObjectField(TEXT("usage"), Usage);
		const TSharedRef<FJsonObject> Event = MakeObject(TEXT("message_start"));
		Event->SetObjectField(TEXT("message"), Message);
		Add(Event);
	}

	void AddBlock(
		const TSharedRef<FJsonObject>& Block, const TCHAR* DeltaType, const TCHAR* Member, const FString& Text)
	{
		const TSharedRef<FJsonObject> Start = MakeObject(TEXT("content_block_start"));
		Start->SetNumberField(TEXT("index"), NextIndex);
		Start->SetObjectField(TEXT("content_block"), Block);
		Add(Start);
		for (const FString& Piece : SplitDemoText(Text))
		{
			const TSharedRef<FJsonObject> Delta = MakeObject(DeltaType);
			Delta->SetStringField(Member, Piece);
			const TSharedRef<FJsonObject> Event = MakeObject(TEXT("content_block_delta"));
			Event->SetNumberField(TEXT("index"), NextIndex);
			Event->SetObjectField(TEXT("delta"), Delta);
			Add(Event);
		}
		const TSharedRef<FJsonObject> Stop = MakeObject(TEXT("content_block_stop"));
		Stop->SetNumberField(TEXT("index"), NextIndex);
		Add(Stop);
		++NextIndex;
		OutputTokens += FCVXTokenCounter::EstimateTokens(Text);
	}

	void Stop(bool bCalls)
	{
		const TSharedRef<FJsonObject> Delta = MakeShared<FJsonObject>();
		Delta->SetStringField(TEXT("stop_reason"), bCalls ? TEXT("tool_use") : TEXT("end_turn"));
		const TSharedRef<FJsonObject> Usage = MakeShared<FJsonObject>();
		Usage->SetNumberField(TEXT("output_tokens"), OutputTokens);
		const TSharedRef<FJsonObject> Event = MakeObject(TEXT("message_delta"));
		Event->SetObjectField(TEXT("delta"), Delta);
		Event->SetObjectField(TEXT("usage"), Usage);
		Add(Event);
		Add(MakeObject(TEXT("message_stop")));
	}

private:
	void Add(const TSharedRef<FJsonObject>& Event)
	{
		Events.push_back(DemoJson::WriteEvent(*Event, *Event->GetStringField(TEXT("type"))));
	}

	int32 NextIndex = 0;
	int32 OutputTokens = 0;
};
} // namespace

bool FAnthropicDemoDialect::ReadRequest(const FJsonObject& Root, FDemoRequest& OutRequest) const
{
	DemoJson::ForEachObject(
		Root, TEXT("tools"), [&](const FJsonObject& Tool) { OutRequest.Tools.Add(GetText(Tool, TEXT("name"))); });
	DemoJson::ForEachObject(Root, TEXT("messages"),
		[&](const FJsonObject& Message)
		{
			const bool bFromUser = GetText(Message, TEXT("role")) == TEXT("user");
			DemoJson::ForEachObject(
				Message, TEXT("content"), [&](const FJsonObject& Block) { ReadBlock(Block, bFromUser, OutRequest); });
		});
	return Root.HasField(TEXT("messages"));
}

std::vector<std::string> FAnthropicDemoDialect::WriteAnswer(
	const FDemoRequest& Request, const FDemoAnswer& Answer) const
{
	FEventWriter Writer;
	Writer.Start(Request);
	if (!Answer.Thinking.IsEmpty())
	{
		Writer.AddBlock(MakeObject(TEXT("thinking")), TEXT("thinking_delta"), TEXT("thinking"), Answer.Thinking);
	}
	if (!Answer.Text.IsEmpty())
	{
		Writer.AddBlock(MakeObject(TEXT("text")), TEXT("text_delta"), TEXT("text"), Answer.Text);
	}
	for (const FDemoAnswerCall& Call : Answer.Calls)
	{
		const TSharedRef<FJsonObject> Block = MakeObject(TEXT("tool_use"));
		Block->SetStringField(TEXT("id"), MakeDemoCallId());
		Block->SetStringField(TEXT("name"), Call.Tool);
		Writer.AddBlock(Block, TEXT("input_json_delta"), TEXT("partial_json"), Call.ArgumentsJson);
	}
	Writer.Stop(!Answer.Calls.IsEmpty());
	return MoveTemp(Writer.Events);
}
