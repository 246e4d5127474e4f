#include "Providers/Anthropic/CVXAnthropicBody.h"

#include "Core/CVXJsonObject.h"
#include "Providers/CVXProviderJson.h"

namespace
{
using CVXProviderJson::FWriter;

void WriteToolUse(FWriter& Writer, const FCVXContentBlock& Block)
{
	const TSharedPtr<FJsonObject> Input = CVXJsonObject::Parse(Block.InputJson);
	Writer.WriteObjectStart();
	Writer.WriteValue(TEXT("type"), TEXT("tool_use"));
	Writer.WriteValue(TEXT("id"), Block.ToolUseId);
	Writer.WriteValue(TEXT("name"), Block.ToolName);
	Writer.WriteValue(TEXT("input"), Input ? *Input : FJsonObject());
	Writer.WriteObjectEnd();
}

void WriteImage(FWriter& Writer, const FCVXContentBlock& Block)
{
	Writer.WriteObjectStart();
	Writer.WriteValue(TEXT("type"), TEXT("image"));
	Writer.WriteObjectStart(TEXT("source"));
	Writer.WriteValue(TEXT("type"), TEXT("base64"));
	Writer.WriteValue(
		TEXT("media_type"), Block.ImageMediaType.IsEmpty() ? FStringView(TEXT("image/png")) : Block.ImageMediaType);
	Writer.WriteValue(TEXT("data"), Block.ImageBase64);
	Writer.WriteObjectEnd();
	Writer.WriteObjectEnd();
}

void WriteToolResult(FWriter& Writer, const FCVXContentBlock& Block)
{
	Writer.WriteObjectStart();
	Writer.WriteValue(TEXT("type"), TEXT("tool_result"));
	Writer.WriteValue(TEXT("tool_use_id"), Block.ToolUseId);
	Writer.WriteValue(TEXT("content"), Block.ToolResultContent);
	if (Block.bIsError)
	{
		Writer.WriteValue(TEXT("is_error"), true);
	}
	Writer.WriteObjectEnd();
}

void WriteText(FWriter& Writer, FStringView Text)
{
	Writer.WriteObjectStart();
	Writer.WriteValue(TEXT("type"), TEXT("text"));
	Writer.WriteValue(TEXT("text"), Text);
	Writer.WriteObjectEnd();
}

/** A block that has no form in this dialect writes nothing. */
void WriteBlock(FWriter& Writer, const FCVXContentBlock& Block)
{
	if (Block.Type == TEXT("text"))
	{
		WriteText(Writer, Block.Text);
	}
	else if (Block.Type == TEXT("tool_use"))
	{
		WriteToolUse(Writer, Block);
	}
	else if (Block.Type == TEXT("tool_result"))
	{
		WriteToolResult(Writer, Block);
	}
	else if (Block.Type == TEXT("image") && !Block.ImageBase64.IsEmpty())
	{
		WriteImage(Writer, Block);
	}
}

void WriteMessages(FWriter& Writer, const TArray<FCVXMessage>& Messages)
{
	Writer.WriteArrayStart(TEXT("messages"));
	for (const FCVXMessage& Message : Messages)
	{
		if (Message.Role == ECVXMessageRole::System)
		{
			continue;
		}
		Writer.WriteObjectStart();
		Writer.WriteValue(TEXT("role"), Message.Role == ECVXMessageRole::Assistant ? TEXT("assistant") : TEXT("user"));
		Writer.WriteArrayStart(TEXT("content"));
		for (const FCVXContentBlock& Block : Message.Content)
		{
			WriteBlock(Writer, Block);
		}
		Writer.WriteArrayEnd();
		Writer.WriteObjectEnd();
	}
	Writer.WriteArrayEnd();
}

/** The one cache breakpoint of the request: the prompt changes least. */
void WriteSystem(FWriter& Writer, const FString& Prompt)
{
	Writer.WriteArrayStart(TEXT("system"));
	Writer.WriteObjectStart();
	Writer.WriteValue(TEXT("type"), TEXT("text"));
	Writer.WriteValue(TEXT("text"), Prompt);
	Writer.WriteObjectStart(TEXT("cache_control"));
	Writer.WriteValue(TEXT("type"), TEXT("ephemeral"));
	Writer.WriteObjectEnd();
	Writer.WriteObjectEnd();
	Writer.WriteArrayEnd();
}

void WriteTools(FWriter& Writer, const TArray<FCVXToolDescriptor>& Tools)
{
	Writer.WriteArrayStart(TEXT("tools"));
	for (const FCVXToolDescriptor& Tool : Tools)
	{
		CVXProviderJson::WriteTool(Writer, Tool, TEXT("input_schema"));
	}
	Writer.WriteArrayEnd();
}
} // namespace

FString CVXAnthropic::BuildBody(const FCVXProviderProfile& Profile, const FCVXProviderRequest& Request)
{
	FString Body;
	FWriter Writer(Body);
	Writer.WriteObjectStart();
	Writer.WriteValue(TEXT("model"), Profile.ModelId);
	Writer.WriteValue(TEXT("max_tokens"), Profile.MaxTokens);
	Writer.WriteValue(TEXT("temperature"), CVXProviderJson::ShortestDouble(Profile.Temperature));
	Writer.WriteValue(TEXT("stream"), true);
	if (!Request.SystemPrompt.IsEmpty())
	{
		WriteSystem(Writer, Request.SystemPrompt);
	}
	WriteMessages(Writer, Request.Messages);
	if (!Request.Tools.IsEmpty())
	{
		WriteTools(Writer, Request.Tools);
	}
	Writer.WriteObjectEnd();
	Writer.Close();
	return Body;
}
