#include "Tools/Edit/CVXEditFileTool.h"

#include "Tools/CVXToolArguments.h"
#include "Tools/Diff/CVXUnifiedDiff.h"
#include "Tools/Edit/CVXTextReplacement.h"
#include "Tools/Files/CVXProjectPaths.h"
#include "Tools/Files/CVXTextFile.h"

namespace
{
struct FEditArguments
{
	FString Path;
	FCVXTextReplacement Replacement;
};

/** @return whether OutArguments is set; else OutError is the result. */
bool ReadArguments(const FJsonObject& Json, FEditArguments& OutArguments, FCVXToolExecutionResult& OutError)
{
	FCVXTextReplacement& Replacement = OutArguments.Replacement;
	OutArguments.Path = GetStringArgument(Json, TEXT("path"));
	Replacement.bReplaceAll = GetBoolArgument(Json, TEXT("replace_all"), false);
	if (OutArguments.Path.IsEmpty())
	{
		OutError = FCVXToolExecutionResult::MakeError(TEXT("'path' is required."));
		return false;
	}
	return ReadStringArgument(Json, TEXT("old_string"), Replacement.OldString, OutError) &&
		ReadStringArgument(Json, TEXT("new_string"), Replacement.NewString, OutError);
}

/** A file of the project as it is to be edited. */
struct FEditedFile
{
	FString Absolute;
	FString Text;
	ECVXTextEncoding Encoding = ECVXTextEncoding::Utf8;

	/** @return false with the reason when it may not be written or can't be read. */
	bool Open(const FString& Path, FString& OutError)
	{
		FString ProjectDir;
		if (!ResolveProjectPath(Path, Absolute, ProjectDir, OutError) ||
			CheckProtectedPath(Absolute, ProjectDir, Path, OutError))
		{
			return false;
		}
		OutError = FString::Printf(TEXT("Failed to read file: %s"), *Absolute);
		return CVXTextFile::Load(Absolute, Text, Encoding);
	}
};
} // namespace

FString FCVXEditFileTool::GetName() const
{
	return TEXT("edit_file");
}

FString FCVXEditFileTool::GetDescription() const
{
	return TEXT("Perform an exact string replacement in a file. Replaces old_string with new_string. Fails if "
				"old_string is not found or is ambiguous (appears more than once).");
}

FString FCVXEditFileTool::GetInputSchemaJson() const
{
	return TEXT(R"({"type":"object","properties":{)"
				R"("path":{"type":"string","description":"Path to the file to edit"},)"
				R"("old_string":{"type":"string",)"
				R"__("description":"Exact string to find and replace (must be unique in the file)"},)__"
				R"("new_string":{"type":"string","description":"String to replace old_string with"},)"
				R"("replace_all":{"type":"boolean",)"
				R"("description":"If true replace all occurrences. Default false."}},)"
				R"("required":["path","old_string","new_string"]})");
}

FCVXToolExecutionResult FCVXEditFileTool::Execute(const FString& ArgumentsJson, const FCVXAgentProfile&)
{
	FCVXToolExecutionResult Error;
	TSharedPtr<FJsonObject> Json;
	FEditArguments Arguments;
	if (!ParseToolArguments(ArgumentsJson, Json, Error) || !ReadArguments(*Json, Arguments, Error))
	{
		return Error;
	}
	FEditedFile File;
	FString Message;
	int32 Count = 0;
	if (!File.Open(Arguments.Path, Message) || !Arguments.Replacement.Apply(File.Text, Count, Message))
	{
		return FCVXToolExecutionResult::MakeError(Message);
	}
	if (!CVXTextFile::Save(File.Absolute, File.Text, File.Encoding))
	{
		return FCVXToolExecutionResult::MakeError(TEXT("Failed to write edited file."));
	}
	return FCVXToolExecutionResult::MakeSuccess(FString::Printf(TEXT("Successfully edited '%s' (%d replacement%s)."),
		*Arguments.Path, Count, Count == 1 ? TEXT("") : TEXT("s")));
}

FCVXApprovalRequest FCVXEditFileTool::BuildApprovalRequest(const FString& ArgumentsJson) const
{
	FCVXApprovalRequest Request;
	Request.ToolName = GetName();
	FCVXToolExecutionResult Ignored;
	TSharedPtr<FJsonObject> Json;
	if (!ParseToolArguments(ArgumentsJson, Json, Ignored))
	{
		return Request;
	}
	FEditArguments Arguments;
	(void)ReadArguments(*Json, Arguments, Ignored);
	Request.FilePath = Arguments.Path;
	Request.Description = FString::Printf(TEXT("Edit '%s'"), *Request.FilePath);
	FString Absolute;
	FString ProjectDir;
	FString Text;
	ECVXTextEncoding Encoding = ECVXTextEncoding::Utf8;
	if (!ResolveProjectPath(Request.FilePath, Absolute, ProjectDir, Text) ||
		!CVXTextFile::Load(Absolute, Text, Encoding))
	{
		Request.Description += TEXT(" (file not found at approval time)");
		return Request;
	}
	Request.DiffPreview = GenerateUnifiedDiff(Text, Arguments.Replacement.Preview(Text), Request.FilePath, 3);
	return Request;
}
