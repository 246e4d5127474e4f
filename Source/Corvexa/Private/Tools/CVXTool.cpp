#include "Tools/CVXTool.h"

#include "Tools/CVXToolArguments.h"

FCVXApprovalRequest ICVXTool::BuildApprovalRequest(const FString& ArgumentsJson) const
{
	FCVXApprovalRequest Request;
	Request.ToolName = GetName();
	Request.Description = FString::Printf(TEXT("Execute '%s' with input: %s"), *GetDisplayName(), *ArgumentsJson);
	Request.bIsReadOnly = IsReadOnly();
	return Request;
}

FString ICVXTool::GetDisplayName() const
{
	return PrettifyName(GetName());
}

FString ICVXTool::GetDisplaySubject(const FString& ArgumentsJson) const
{
	static constexpr const TCHAR* Fields[] = {TEXT("path"), TEXT("file_path"), TEXT("asset_path"), TEXT("command"),
		TEXT("query"), TEXT("name"), TEXT("pattern"), TEXT("directory"), TEXT("code")};

	TSharedPtr<FJsonObject> Arguments;
	FCVXToolExecutionResult Ignored;
	if (!ParseToolArguments(ArgumentsJson, Arguments, Ignored))
	{
		return FString();
	}
	for (const TCHAR* Field : Fields)
	{
		FString Subject;
		if (Arguments->HasTypedField<EJson::String>(Field) && Arguments->TryGetStringField(Field, Subject) &&
			!Subject.IsEmpty())
		{
			return Subject;
		}
	}
	return FString();
}

FString ICVXTool::PrettifyName(const FString& Name)
{
	FString Pretty = Name.Replace(TEXT("_"), TEXT(" "));
	bool bWordBegins = true;
	for (int32 Index = 0; Index < Pretty.Len(); ++Index)
	{
		TCHAR& Char = Pretty[Index];
		if (bWordBegins && Char >= TEXT('a') && Char <= TEXT('z'))
		{
			Char = (TCHAR)(Char - TEXT('a') + TEXT('A'));
		}
		bWordBegins = Char == TEXT(' ');
	}
	return Pretty;
}
