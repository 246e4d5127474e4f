#include "Providers/OpenAI/CVXOpenAIBody.h"

#include "Providers/CVXProviderJson.h"
#include "Providers/OpenAI/CVXOpenAIMessages.h"

namespace
{
using CVXProviderJson::FWriter;

constexpr const TCHAR* OpenAIDomain = TEXT("api.openai.com");

bool IsText(const FCVXContentBlock& Block)
{
	return Block.Type == TEXTVIEW("text") && !Block.Text.IsEmpty();
}

FString JoinTexts(const FCVXMessage& Message)
{
	FString Joined;
	for (const FCVXContentBlock& Block : Message.Content)
	{
		if (IsText(Block))
		{
			Joined += Block.Text;
		}
	}
	return Joined;
}

void WriteToolCall(FWriter& Writer, const FCVXContentBlock& Block)
{
	Writer.WriteObjectStart();
	Writer.WriteValue(TEXT("id"), Block.ToolUseId);
	Writer.WriteValue(TEXT("type"), TEXT("function"));
	Writer.WriteObjectStart(TEXT("function"));
	Writer.WriteValue(TEXT("name"), Block.ToolName);
	Writer.WriteValue(TEXT("arguments"), Block.InputJson);
	Writer.WriteObjectEnd();
	Writer.WriteObjectEnd();
}

void WriteToolCalls(FWriter& Writer, const FCVXMessage& Message)
{
	const FString Text = JoinTexts(Message);
	if (!Text.IsEmpty())
	{
		Writer.WriteValue(TEXT("content"), Text);
	}
	Writer.WriteArrayStart(TEXT("tool_calls"));
	for (const FCVXContentBlock& Block : Message.Content)
	{
		if (CVXOpenAI::IsToolUse(Block))
		{
			WriteToolCall(Writer, Block);
		}
	}
	Writer.WriteArrayEnd();
}

void WriteToolResult(FWriter& Writer, const FCVXContentBlock& Result)
{
	Writer.WriteValue(TEXT("role"), TEXT("tool"));
	Writer.WriteValue(TEXT("tool_call_id"), Result.ToolUseId);
	Writer.WriteValue(TEXT("content"), Result.ToolResultContent);
}

void WriteImagePart(FWriter& Writer, const FCVXContentBlock& Block)
{
	const TCHAR* MediaType = Block.ImageMediaType.IsEmpty() ? TEXT("image/png") : *Block.ImageMediaType;
	Writer.WriteObjectStart();
	Writer.WriteValue(TEXT("type"), TEXT("image_url"));
	Writer.WriteObjectStart(TEXT("image_url"));
	Writer.WriteValue(TEXT("url"), FString::Printf(TEXT("data:%s;base64,%s"), MediaType, *Block.ImageBase64));
	Writer.WriteValue(TEXT("detail"), TEXT("auto"));
	Writer.WriteObjectEnd();
	Writer.WriteObjectEnd();
}

void WriteTextPart(FWriter& Writer, const FString& Text)
{
	Writer.WriteObjectStart();
	Writer.WriteValue(TEXT("type"), TEXT("text"));
	Writer.WriteValue(TEXT("text"), Text);
	Writer.WriteObjectEnd();
}

void WriteParts(FWriter& Writer, const FCVXMessage& Message)
{
	Writer.WriteArrayStart(TEXT("content"));
	for (const FCVXContentBlock& Block : Message.Content)
	{
		if (IsText(Block))
		{
			WriteTextPart(Writer, Block.Text);
		}
		else if (CVXOpenAI::IsImage(Block))
		{
			WriteImagePart(Writer, Block);
		}
	}
	Writer.WriteArrayEnd();
}

/** What somebody said, and the reasoning behind it, without which some vendors refuse the turn. */
void WriteSpoken(FWriter& Writer, const FCVXOpenAIMessage& Message)
{
	const FCVXMessage& Source = *Message.Source;
	const bool bAssistant = Source.Role == ECVXMessageRole::Assistant;
	Writer.WriteValue(TEXT("role"), bAssistant ? TEXT("assistant") : TEXT("user"));
	switch (Message.Form)
	{
	case ECVXOpenAIForm::ToolCalls:
		WriteToolCalls(Writer, Source);
		break;
	case ECVXOpenAIForm::Parts:
		WriteParts(Writer, Source);
		break;
	default:
		Writer.WriteValue(TEXT("content"), Source.GetFirstTextContent());
	}
	if (bAssistant && !Source.ReasoningContent.IsEmpty())
	{
		Writer.WriteValue(TEXT("reasoning_content"), Source.ReasoningContent);
	}
}

void WriteSystem(FWriter& Writer, const FString& Prompt)
{
	Writer.WriteObjectStart();
	Writer.WriteValue(TEXT("role"), TEXT("system"));
	Writer.WriteValue(TEXT("content"), Prompt);
	Writer.WriteObjectEnd();
}

void WriteMessages(FWriter& Writer, const FCVXProviderRequest& Request)
{
	Writer.WriteArrayStart(TEXT("messages"));
	if (!Request.SystemPrompt.IsEmpty())
	{
		WriteSystem(Writer, Request.SystemPrompt);
	}
	for (const FCVXOpenAIMessage& Message : CVXOpenAI::ArrangeMessages(Request.Messages))
	{
		Writer.WriteObjectStart();
		if (Message.Result)
		{
			WriteToolResult(Writer, *Message.Result);
		}
		else
		{
			WriteSpoken(Writer, Message);
		}
		Writer.WriteObjectEnd();
	}
	Writer.WriteArrayEnd();
}

void WriteTools(FWriter& Writer, const TArray<FCVXToolDescriptor>& Tools)
{
	Writer.WriteArrayStart(TEXT("tools"));
	for (const FCVXToolDescriptor& Tool : Tools)
	{
		Writer.WriteObjectStart();
		Writer.WriteValue(TEXT("type"), TEXT("function"));
		Writer.WriteIdentifierPrefix(TEXT("function"));
		CVXProviderJson::WriteTool(Writer, Tool, TEXT("parameters"));
		Writer.WriteObjectEnd();
	}
	Writer.WriteArrayEnd();
	Writer.WriteValue(TEXT("tool_choice"), TEXT("auto"));
}

/** The vendor renamed the limit for its own API; all who copied the dialect kept the old name. */
FStringView GetLimitName(const FString& BaseURL)
{
	const bool bCopied = !BaseURL.IsEmpty() && !BaseURL.Contains(OpenAIDomain);
	return bCopied ? TEXTVIEW("max_tokens") : TEXTVIEW("max_completion_tokens");
}
} // namespace

FString CVXOpenAI::BuildBody(const FCVXProviderProfile& Profile, const FCVXProviderRequest& Request)
{
	FString Body;
	FWriter Writer(Body);
	Writer.WriteObjectStart();
	Writer.WriteValue(TEXT("model"), Profile.ModelId);
	Writer.WriteValue(GetLimitName(Profile.BaseURL), Profile.MaxTokens);
	Writer.WriteValue(TEXT("temperature"), CVXProviderJson::ShortestDouble(Profile.Temperature));
	Writer.WriteValue(TEXT("stream"), true);
	Writer.WriteObjectStart(TEXT("stream_options"));
	Writer.WriteValue(TEXT("include_usage"), true);
	Writer.WriteObjectEnd();
	WriteMessages(Writer, Request);
	if (!Request.Tools.IsEmpty())
	{
		WriteTools(Writer, Request.Tools);
	}
	Writer.WriteObjectEnd();
	Writer.Close();
	return Body;
}
