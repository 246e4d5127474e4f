#include "Providers/Gemini/CVXGeminiBody.h"

#include "Core/CVXJsonObject.h"
#include "Providers/CVXProviderJson.h"

namespace
{
using CVXProviderJson::FWriter;

void WriteFunctionCall(FWriter& Writer, const FCVXContentBlock& Block)
{
	Writer.WriteObjectStart(TEXT("functionCall"));
	Writer.WriteValue(TEXT("name"), Block.ToolName);
	if (const TSharedPtr<FJsonObject> Arguments = CVXJsonObject::Parse(Block.InputJson))
	{
		Writer.WriteValue(TEXT("args"), *Arguments);
	}
	Writer.WriteObjectEnd();
}

/** Results find their calls by name and place alone. */
void WriteFunctionResponse(FWriter& Writer, const FCVXContentBlock& Block)
{
	Writer.WriteObjectStart(TEXT("functionResponse"));
	Writer.WriteValue(TEXT("name"), Block.ToolName);
	Writer.WriteObjectStart(TEXT("response"));
	Writer.WriteValue(TEXT("content"), Block.ToolResultContent);
	Writer.WriteObjectEnd();
	Writer.WriteObjectEnd();
}

void WriteInlineData(FWriter& Writer, const FCVXContentBlock& Block)
{
	Writer.WriteObjectStart(TEXT("inlineData"));
	Writer.WriteValue(
		TEXT("mimeType"), Block.ImageMediaType.IsEmpty() ? FStringView(TEXT("image/png")) : Block.ImageMediaType);
	Writer.WriteValue(TEXT("data"), Block.ImageBase64);
	Writer.WriteObjectEnd();
}

/** A block that has no form in this dialect leaves its part empty. */
void WritePart(FWriter& Writer, const FCVXContentBlock& Block)
{
	Writer.WriteObjectStart();
	if (Block.Type == TEXTVIEW("text"))
	{
		Writer.WriteValue(TEXT("text"), Block.Text);
	}
	else if (Block.Type == TEXTVIEW("tool_use"))
	{
		WriteFunctionCall(Writer, Block);
	}
	else if (Block.Type == TEXTVIEW("tool_result"))
	{
		WriteFunctionResponse(Writer, Block);
	}
	else if (Block.Type == TEXTVIEW("image") && !Block.ImageBase64.IsEmpty())
	{
		WriteInlineData(Writer, Block);
	}
	Writer.WriteObjectEnd();
}

void WriteSystem(FWriter& Writer, const FString& Prompt)
{
	Writer.WriteObjectStart(TEXT("system_instruction"));
	Writer.WriteArrayStart(TEXT("parts"));
	Writer.WriteObjectStart();
	Writer.WriteValue(TEXT("text"), Prompt);
	Writer.WriteObjectEnd();
	Writer.WriteArrayEnd();
	Writer.WriteObjectEnd();
}

void WriteContents(FWriter& Writer, const TArray<FCVXMessage>& Messages)
{
	Writer.WriteArrayStart(TEXT("contents"));
	for (const FCVXMessage& Message : Messages)
	{
		if (Message.Role == ECVXMessageRole::System)
		{
			continue;
		}
		Writer.WriteObjectStart();
		Writer.WriteValue(TEXT("role"), Message.Role == ECVXMessageRole::Assistant ? TEXT("model") : TEXT("user"));
		Writer.WriteArrayStart(TEXT("parts"));
		for (const FCVXContentBlock& Block : Message.Content)
		{
			WritePart(Writer, Block);
		}
		Writer.WriteArrayEnd();
		Writer.WriteObjectEnd();
	}
	Writer.WriteArrayEnd();
}

void WriteGenerationConfig(FWriter& Writer, const FCVXProviderProfile& Profile)
{
	Writer.WriteObjectStart(TEXT("generationConfig"));
	Writer.WriteValue(TEXT("maxOutputTokens"), Profile.MaxTokens);
	Writer.WriteValue(TEXT("temperature"), CVXProviderJson::ShortestDouble(Profile.Temperature));
	Writer.WriteObjectEnd();
}

void WriteTools(FWriter& Writer, const TArray<FCVXToolDescriptor>& Tools)
{
	Writer.WriteArrayStart(TEXT("tools"));
	Writer.WriteObjectStart();
	Writer.WriteArrayStart(TEXT("function_declarations"));
	for (const FCVXToolDescriptor& Tool : Tools)
	{
		CVXProviderJson::WriteTool(Writer, Tool, TEXT("parameters"));
	}
	Writer.WriteArrayEnd();
	Writer.WriteObjectEnd();
	Writer.WriteArrayEnd();
}
} // namespace

FString CVXGemini::BuildBody(const FCVXProviderProfile& Profile, const FCVXProviderRequest& Request)
{
	FString Body;
	FWriter Writer(Body);
	Writer.WriteObjectStart();
	if (!Request.SystemPrompt.IsEmpty())
	{
		WriteSystem(Writer, Request.SystemPrompt);
	}
	WriteContents(Writer, Request.Messages);
	WriteGenerationConfig(Writer, Profile);
	if (!Request.Tools.IsEmpty())
	{
		WriteTools(Writer, Request.Tools);
	}
	Writer.WriteObjectEnd();
	Writer.Close();
	return Body;
}
