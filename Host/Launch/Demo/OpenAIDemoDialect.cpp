#include "Launch/Demo/OpenAIDemoDialect.h"

#include "Launch/Demo/DemoJson.h"
#include "Launch/Demo/DemoText.h"

namespace
{
using DemoJson::GetText;

void ReadCall(const FJsonObject& Call, FDemoRequest& Out)
{
	if (const FJsonObject* Function = DemoJson::FindObject(Call, TEXT("function")))
	{
		Out.AddCall(GetText(Call, TEXT("id")), GetText(*Function, TEXT("name")));
	}
}

void ReadMessage(const FJsonObject& Message, FDemoRequest& Out)
{
	const FString Role = GetText(Message, TEXT("role"));
	const FString Content = GetText(Message, TEXT("content"));
	if (Role == TEXT("tool"))
	{
		Out.AddResult(GetText(Message, TEXT("tool_call_id")), Content, SoundsFailed(Content));
	}
	else if (Role == TEXT("assistant"))
	{
		DemoJson::ForEachObject(Message, TEXT("tool_calls"), [&](const FJsonObject& Call) { ReadCall(Call, Out); });
	}
	else if (Role == TEXT("user") && Message.HasTypedField<EJson::String>(TEXT("content")))
	{
		Out.AddUserText(Content);
	}
	else if (Role == TEXT("user"))
	{
		DemoJson::ForEachObject(Message, TEXT("content"),
			[&](const FJsonObject& Part)
			{
				if (Part.HasField(TEXT("text")))
				{
					Out.AddUserText(GetText(Part, TEXT("text")));
				}
			});
	}
}

/** Collects the chunks of one answer. */
class FChunkWriter
{
public:
	std::vector<std::string> Events;

	void AddText(const TCHAR* Member, const FString& Text)
	{
		for (const FString& Piece : SplitDemoText(Text))
		{
			const TSharedRef<FJsonObject> Delta = MakeShared<FJsonObject>();
			Delta->SetStringField(Member, Piece);
			Add(Delta, nullptr);
		}
		OutputTokens += FCVXTokenCounter::EstimateTokens(Text);
	}

	/** The first chunk names the call, those behind it carry its arguments alone. */
	void AddCall(int32 Index, const FDemoAnswerCall& Call)
	{
		AddCallPiece(Index, &Call, FString());
		for (const FString& Piece : SplitDemoText(Call.ArgumentsJson))
		{
			AddCallPiece(Index, nullptr, Piece);
		}
		OutputTokens += FCVXTokenCounter::EstimateTokens(Call.ArgumentsJson);
	}

	void Stop(bool bCalls, int32 InputTokens)
	{
		Usage = MakeShared<FJsonObject>();
		Usage->SetNumberField(TEXT("prompt_tokens"), InputTokens);
		Usage->SetNumberField(TEXT("completion_tokens"), OutputTokens);
		Add(MakeShared<FJsonObject>(), bCalls ? TEXT("tool_calls") : TEXT("stop"));
		Events.push_back("data: [DONE]\n\n");
	}

private:
	void AddCallPiece(int32 Index, const FDemoAnswerCall* Named, const FString& Arguments)
	{
		const TSharedRef<FJsonObject> Function = MakeShared<FJsonObject>();
		const TSharedRef<FJsonObject> Call = MakeShared<FJsonObject>();
		Call->SetNumberField(TEXT("index"), Index);
		if (Named)
		{
			Call->SetStringField(TEXT("id"), MakeDemoCallId());
			Call->SetStringField(TEXT("type"), TEXT("function"));
			Function->SetStringField(TEXT("name"), Named->Tool);
		}
		Function->SetStringField(TEXT("arguments"), Arguments);
		Call->SetObjectField(TEXT("function"), Function);
		const TSharedRef<FJsonObject> Delta = MakeShared<FJsonObject>();
		DemoJson::SetOnlyElement(*Delta, TEXT("tool_calls"), Call);
		Add(Delta, nullptr);
	}

	void Add(const TSharedRef<FJsonObject>& Delta, const TCHAR* FinishReason)
	{
		const TSharedRef<FJsonObject> Choice = MakeShared<FJsonObject>();
		Choice->SetNumberField(TEXT("index"), 0);
		Choice->SetObjectField(TEXT("delta"), Delta);
		if (FinishReason)
		{
			Choice->SetStringField(TEXT("finish_reason"), FinishReason);
		}
		FJsonObject Chunk;
		Chunk.SetStringField(TEXT("object"), TEXT("chat.completion.chunk"));
		DemoJson::SetOnlyElement(Chunk, TEXT("choices"), Choice);
		if (Usage)
		{
			Chunk.SetObjectField(TEXT("usage"), Usage);
		}
		Events.push_back(DemoJson::WriteEvent(Chunk));
	}

	/** Known with the last chunk. */
	TSharedPtr<FJsonObject> Usage;
	int32 OutputTokens = 0;
};
} // namespace

bool FOpenAIDemoDialect::ReadRequest(const FJsonObject& Root, FDemoRequest& OutRequest) const
{
	DemoJson::ForEachObject(Root, TEXT("tools"),
		[&](const FJsonObject& Tool)
		{
			const FJsonObject* Function = DemoJson::FindObject(Tool, TEXT("function"));
			OutRequest.Tools.Add(Function ? GetText(*Function, TEXT("name")) : FString());
		});
	DemoJson::ForEachObject(
		Root, TEXT("messages"), [&](const FJsonObject& Message) { ReadMessage(Message, OutRequest); });
	return Root.HasField(TEXT("messages"));
}

std::vector<std::string> FOpenAIDemoDialect::WriteAnswer(const FDemoRequest& Request, const FDemoAnswer& Answer) const
{
	FChunkWriter Writer;
	Writer.AddText(TEXT("reasoning_content"), Answer.Thinking);
	Writer.AddText(TEXT("content"), Answer.Text);
	for (int32 Index = 0; Index < Answer.Calls.Num(); ++Index)
	{
		Writer.AddCall(Index, Answer.Calls[Index]);
	}
	Writer.Stop(!Answer.Calls.IsEmpty(), CountDemoTokens(Request));
	return MoveTemp(Writer.Events);
}
