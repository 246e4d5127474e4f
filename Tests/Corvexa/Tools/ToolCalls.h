#pragma once

#include "Dom/JsonObject.h"
#include "Serialization/JsonSerializer.h"
#include "Tools/CVXTool.h"

/** Arguments of text fields. */
inline FString ToolArguments(std::initializer_list<std::pair<const TCHAR*, FString>> Fields)
{
	const TSharedRef<FJsonObject> Object = MakeShared<FJsonObject>();
	for (const auto& [Name, Value] : Fields)
	{
		Object->SetStringField(Name, Value);
	}
	FString Text;
	check(FJsonSerializer::Serialize(Object, TJsonWriterFactory<>::Create(&Text)));
	return Text;
}

/** What a tool answers; errors begin with "ERROR ". */
inline FString RunTool(ICVXTool&& Tool, const FString& Arguments)
{
	const FCVXToolExecutionResult Result = Tool.Execute(Arguments, {});
	return (Result.bIsError ? TEXT("ERROR ") : TEXT("")) + Result.Output;
}
