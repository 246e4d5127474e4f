#include "MCP/CVXMCPResults.h"

#include "Dom/JsonObject.h"
#include "MCP/CVXMCPMessage.h"

namespace
{
constexpr const TCHAR* AnyArguments = TEXT("{\"type\":\"object\",\"properties\":{},\"required\":[]}");

/** Empty when the member is missing or no string. */
FString GetText(const FJsonObject& Object, const TCHAR* Name)
{
	return Object.HasTypedField<EJson::String>(Name) ? Object.GetStringField(Name) : FString();
}

FCVXMCPToolInfo ReadTool(const FJsonObject& Tool, const FString& ServerName)
{
	FCVXMCPToolInfo Info;
	Info.OriginalName = GetText(Tool, TEXT("name"));
	Info.PrefixedName = FString::Printf(TEXT("mcp__%s__%s"), *ServerName, *Info.OriginalName);
	Info.Description = GetText(Tool, TEXT("description"));
	const TSharedPtr<FJsonObject>* Schema = nullptr;
	Info.InputSchemaJson =
		Tool.TryGetObjectField(TEXT("inputSchema"), Schema) ? CVXMCPMessage::ToText(**Schema) : FString(AnyArguments);
	return Info;
}
} // namespace

bool CVXMCPResults::ReadTools(const FJsonObject& Result, const FString& ServerName, TArray<FCVXMCPToolInfo>& OutTools)
{
	const TArray<TSharedPtr<FJsonValue>>* Tools = nullptr;
	if (!Result.TryGetArrayField(TEXT("tools"), Tools))
	{
		return false;
	}
	for (const TSharedPtr<FJsonValue>& Value : *Tools)
	{
		const TSharedPtr<FJsonObject>* Tool = nullptr;
		if (Value->TryGetObject(Tool) && !GetText(**Tool, TEXT("name")).IsEmpty())
		{
			OutTools.Add(ReadTool(**Tool, ServerName));
		}
	}
	return true;
}

FString CVXMCPResults::ReadCallOutput(const FJsonObject& Result, bool& bOutIsError)
{
	bOutIsError = false;
	(void)Result.TryGetBoolField(TEXT("isError"), bOutIsError);
	TArray<FString> Texts;
	const TArray<TSharedPtr<FJsonValue>>* Content = nullptr;
	if (Result.TryGetArrayField(TEXT("content"), Content))
	{
		for (const TSharedPtr<FJsonValue>& Value : *Content)
		{
			const TSharedPtr<FJsonObject>* Item = nullptr;
			if (Value->TryGetObject(Item) && GetText(**Item, TEXT("type")) == TEXT("text"))
			{
				Texts.Add(GetText(**Item, TEXT("text")));
			}
		}
	}
	const FString Output = FString::Join(Texts, TEXT("\n"));
	return Output.IsEmpty() ? FString(TEXT("(empty response)")) : Output;
}
