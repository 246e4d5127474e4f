#include "Agent/Context/CVXCallArguments.h"

#include "Core/CVXJsonObject.h"

FString CVXCallArguments::GetPath(const FString& ArgumentsJson)
{
	FString Path;
	if (const TSharedPtr<FJsonObject> Object = CVXJsonObject::Parse(ArgumentsJson))
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
