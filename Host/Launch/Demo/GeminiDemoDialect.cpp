#include "Launch/Demo/GeminiDemoDialect.h"

#include "Launch/Demo/DemoJson.h"
#include "Launch/Demo/DemoText.h"

namespace
{
using DemoJson::GetText;

void ReadPart(const FJsonObject& Part, bool bFromUser, FDemoRequest& Out)
{
	if (const FJsonObject* Call = DemoJson::FindObject(Part, TEXT("functionCall")))
	{
		Out.AddCall(FString(), GetText(*Call, TEXT("name")));
	}
	else if (const FJsonObject* Result = DemoJson::FindObject(Part, TEXT("functionResponse")))
	{
		const FJsonObject* Response = DemoJson::FindObject(*Result, TEXT("response"));
		const FString Content = Response ? GetText(*Response, TEXT("content")) : FString();
		Out.AddResultOfOldest(GetText(*Result, TEXT("name")), Content, SoundsFailed(Content));
	}
	else if (bFromUser && Part.HasField(TEXT("text")))
	{
		Out.AddUserText(GetText(Part, TEXT("text")));
	}
}

TSharedRef<FJsonObject> MakeTextPart(const FString& Text)
{
	const TSharedRef<FJsonObject> Part = MakeShared<FJsonObject>();
	Part->SetStringField(TEXT("text"), Text);
	return Part;
}

TSharedRef<FJsonObject> MakeCallPart(const FDemoAnswerCall& Call)
{
	const TSharedRef<FJsonObject> Function = MakeShared<FJsonObject>();
	Function->SetStringField(TEXT("name"), Call.Tool);
	const FTCHARToUTF8 Arguments(Call.ArgumentsJson);
	Function->SetObjectField(
		TEXT("args"), DemoJson::Parse({Arguments.Get(), static_cast<std::size_t>(Arguments.Length())}));
	const TSharedRef<FJsonObject> Part = MakeShared<FJsonObject>();
	Part->SetObjectField(TEXT("functionCall"), Function);
	return Part;
}

/** @param Usage null for all chunks but the last. */
std::string MakeChunk(const TSharedRef<FJsonObject>& Part, const TSharedPtr<FJsonObject>& Usage)
{
	const TSharedRef<FJsonObject> Content = MakeShared<FJsonObject>();
	Content->SetStringField(TEXT("role"), TEXT("model"));
	DemoJson::SetOnlyElement(*Content, TEXT("parts"), Part);
	const TSharedRef<FJsonObject> Candidate = MakeShared<FJsonObject>();
	Candidate->SetObjectField(TEXT("content"), Content);
	FJsonObject Chunk;
	DemoJson::SetOnlyElement(Chunk, TEXT("candidates"), Candidate);
	if (Usage)
	{
		Candidate->SetStringField(TEXT("finishReason"), TEXT("STOP"));
		Chunk.SetObjectField(TEXT("usageMetadata"), Usage);
	}
	return DemoJson::WriteEvent(Chunk);
}
} // namespace

bool FGeminiDemoDialect::ReadRequest(const FJsonObject& Root, FDemoRequest& OutRequest) const
{
	DemoJson::ForEachObject(Root, TEXT("tools"),
		[&](const FJsonObject& Holder)
		{
			DemoJson::ForEachObject(Holder, TEXT("function_declarations"),
				[&](const FJsonObject& Tool) { OutRequest.Tools.Add(GetText(Tool, TEXT("name"))); });
		});
	DemoJson::ForEachObject(Root, TEXT("contents"),
		[&](const FJsonObject& Message)
		{
			const bool bFromUser = GetText(Message, TEXT("role")) == TEXT("user");
			DemoJson::ForEachObject(
				Message, TEXT("parts"), [&](const FJsonObject& Part) { ReadPart(Part, bFromUser, OutRequest); });
		});
	return Root.HasField(TEXT("contents"));
}

std::vector<std::string> FGeminiDemoDialect::WriteAnswer(const FDemoRequest& Request, const FDemoAnswer& Answer) const
{
	TArray<TSharedRef<FJsonObject>> Parts;
	int32 OutputTokens = FCVXTokenCounter::EstimateTokens(Answer.Text);
	for (const FString& Piece : SplitDemoText(Answer.Text))
	{
		Parts.Add(MakeTextPart(Piece));
	}
	for (const FDemoAnswerCall& Call : Answer.Calls)
	{
		Parts.Add(MakeCallPart(Call));
		OutputTokens += FCVXTokenCounter::EstimateTokens(Call.ArgumentsJson);
	}
	if (Parts.IsEmpty())
	{
		Parts.Add(MakeTextPart(FString()));
	}
	const TSharedRef<FJsonObject> Usage = MakeShared<FJsonObject>();
	Usage->SetNumberField(TEXT("promptTokenCount"), CountDemoTokens(Request));
	Usage->SetNumberField(TEXT("candidatesTokenCount"), OutputTokens);
	std::vector<std::string> Events;
	for (int32 Index = 0; Index < Parts.Num(); ++Index)
	{
		Events.push_back(MakeChunk(Parts[Index], Index + 1 < Parts.Num() ? nullptr : TSharedPtr<FJsonObject>(Usage)));
	}
	return Events;
}
