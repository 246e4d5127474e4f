#include "Agent/CVXCallArguments.h"

#include "Dom/JsonObject.h"
#include "Serialization/JsonReader.h"
#include "Serialization/JsonSerializer.h"

FString CVXCallArguments::GetPath(const FString& ArgumentsJson)
{
	TSharedPtr<FJsonObject> Object;
	FString Path;
	if (FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(ArgumentsJson), Object) && Object.IsValid())
	{
		if (!Object->TryGetStringField(TEXT("file_path"), Path) || Path.IsEmpty())
		{
			Object->TryGetStringField(TEXT("path"), Path);
		}
	}
	return Path;
}

bool CVXCallArguments::IsFileWrite(const FString& ToolName)
{
	return ToolName == TEXT("write_file") || ToolName == TEXT("edit_file") || ToolName == TEXT("apply_patch");
}
