#include "Core/CVXJsonObject.h"
#include "MCP/CVXMCPLineBuffer.h"
#include "MCP/CVXMCPMessage.h"
#include "MCP/CVXMCPResults.h"

#include <cstddef>
#include <cstdint>

namespace
{
/** Takes a line for whatever a server may mean by it. */
void ReadAsAnything(const FString& Line)
{
	const TSharedPtr<FJsonObject> Message = CVXJsonObject::Parse(Line);
	if (!Message)
	{
		return;
	}
	(void)CVXMCPMessage::IsResponseTo(*Message, 1);
	FString Error;
	const FString Result = CVXMCPMessage::TakeResult(*Message, Error);
	check(Result.IsEmpty() || Error.IsEmpty());
	const TSharedPtr<FJsonObject> Object = CVXJsonObject::Parse(Result);
	TArray<FCVXMCPToolInfo> Tools;
	bool bIsError = false;
	check(!Object || CVXMCPResults::ReadTools(*Object, TEXT("server"), Tools) || Tools.IsEmpty());
	check(!Object || !CVXMCPResults::ReadCallOutput(*Object, bIsError).IsEmpty());
	for (const FCVXMCPToolInfo& Tool : Tools)
	{
		check(!Tool.OriginalName.IsEmpty() && CVXJsonObject::Parse(Tool.InputSchemaJson));
	}
}

TArray<FString> TakeLines(FCVXMCPLineBuffer& Buffer)
{
	TArray<FString> Lines;
	for (FString Line; Buffer.TakeLine(Line);)
	{
		Lines.Add(Line);
	}
	return Lines;
}
} // namespace

/** Takes the input for what a server writes, in two parts. */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size)
{
	const FString Text = FString::FromUtf8((const ANSICHAR*)Data, (int64)Size);
	FCVXMCPLineBuffer Whole;
	Whole.Append(Text);
	const TArray<FString> Lines = TakeLines(Whole);
	FCVXMCPLineBuffer Parts;
	Parts.Append(Text.Left(Text.Len() / 2));
	TArray<FString> LinesOfParts = TakeLines(Parts);
	Parts.Append(Text.RightChop(Text.Len() / 2));
	LinesOfParts.Append(TakeLines(Parts));
	check(Lines == LinesOfParts);
	for (const FString& Line : Lines)
	{
		ReadAsAnything(Line);
	}
	return 0;
}
