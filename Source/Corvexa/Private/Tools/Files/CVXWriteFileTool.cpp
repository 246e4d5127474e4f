#include "Tools/Files/CVXWriteFileTool.h"

#include "HAL/PlatformFileManager.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Tools/CVXToolArguments.h"
#include "Tools/Diff/CVXUnifiedDiff.h"
#include "Tools/Files/CVXProjectPaths.h"
#include "Tools/Files/CVXTextFile.h"

namespace
{
/** What the model asked for, once it is known to make sense. */
struct FWriteArguments
{
	FString Path;
	FString Content;
};

/** @return whether OutArguments is set; else OutError is the result. */
bool ReadArguments(const FString& ArgumentsJson, FWriteArguments& OutArguments, FCVXToolExecutionResult& OutError)
{
	TSharedPtr<FJsonObject> Json;
	if (!ParseToolArguments(ArgumentsJson, Json, OutError))
	{
		return false;
	}
	OutArguments.Path = GetStringArgument(*Json, TEXT("path"));
	if (OutArguments.Path.IsEmpty())
	{
		OutError = FCVXToolExecutionResult::MakeError(TEXT("'path' is required."));
		return false;
	}
	if (Json->HasField(TEXT("content")) && !Json->TryGetStringField(TEXT("content"), OutArguments.Content))
	{
		// An empty file in place of what the model meant would lose work.
		OutError = FCVXToolExecutionResult::MakeError(TEXT("'content' must be a string."));
		return false;
	}
	return true;
}

/** @return whether nothing may be written there; OutError then says why. */
bool IsRefused(const FString& Path, const FString& Absolute, const FString& ProjectDir, FString& OutError)
{
	const FString Relative = MakeProjectRelative(Absolute, ProjectDir);
	if (!Relative.Contains(TEXT("/")) && !Relative.Contains(TEXT("\\")))
	{
		OutError = FString::Printf(
			TEXT("Cannot write '%s' directly to the project root directory. Place files into appropriate "
				 "subdirectories:\n- Source code → Source/\n- Assets → Content/\n- Config → Config/\n- "
				 "Temporary/scratch files → Saved/CVX/\nUse save_project_knowledge tool for project notes and "
				 "documentation."),
			*Path);
		return true;
	}
	return CheckProtectedPath(Absolute, ProjectDir, Path, OutError) ||
		CheckReservedPath(Absolute, ProjectDir, Path, OutError);
}

bool WriteWhole(const FString& Absolute, const FString& Content)
{
	IPlatformFile& Files = FPlatformFileManager::Get().GetPlatformFile();
	const FString Directory = FPaths::GetPath(Absolute);
	if (!Files.DirectoryExists(*Directory) && !Files.CreateDirectoryTree(*Directory))
	{
		return false;
	}
	return FFileHelper::SaveStringToFile(Content, *Absolute, FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM);
}

/** What the file holds now; nothing when there is none that the tool may touch. */
FString LoadPresentText(const FString& Path)
{
	FString Absolute;
	FString ProjectDir;
	FString Text;
	ECVXTextEncoding Encoding = ECVXTextEncoding::Utf8;
	const bool bLoaded = ResolveProjectPath(Path, Absolute, ProjectDir, Text) &&
		FPlatformFileManager::Get().GetPlatformFile().FileExists(*Absolute) &&
		CVXTextFile::Load(Absolute, Text, Encoding);
	return bLoaded ? Text : FString();
}
} // namespace

FString FCVXWriteFileTool::GetName() const
{
	return TEXT("write_file");
}

FString FCVXWriteFileTool::GetDescription() const
{
	return TEXT("Write content to a file. Creates parent directories if needed. Overwrites if the file exists.");
}

FString FCVXWriteFileTool::GetInputSchemaJson() const
{
	return TEXT(
		R"({"type":"object","properties":{)"
		R"("path":{"type":"string",)"
		R"__("description":"Path to the file to write (relative to project root or absolute within project)"},)__"
		R"("content":{"type":"string",)"
		R"("description":"Full content to write to the file"}},)"
		R"("required":["path","content"]})");
}

FCVXToolExecutionResult FCVXWriteFileTool::Execute(const FString& ArgumentsJson, const FCVXAgentProfile&)
{
	FCVXToolExecutionResult Error;
	FWriteArguments Arguments;
	if (!ReadArguments(ArgumentsJson, Arguments, Error))
	{
		return Error;
	}
	FString Absolute;
	FString ProjectDir;
	FString Message;
	if (!ResolveProjectPath(Arguments.Path, Absolute, ProjectDir, Message) ||
		IsRefused(Arguments.Path, Absolute, ProjectDir, Message))
	{
		return FCVXToolExecutionResult::MakeError(Message);
	}
	if (!WriteWhole(Absolute, Arguments.Content))
	{
		return FCVXToolExecutionResult::MakeError(FString::Printf(TEXT("Failed to write file: %s"), *Absolute));
	}
	return FCVXToolExecutionResult::MakeSuccess(FString::Printf(
		TEXT("Successfully wrote %d bytes to '%s'."), CVXTextFile::Utf8Length(Arguments.Content), *Arguments.Path));
}

FCVXApprovalRequest FCVXWriteFileTool::BuildApprovalRequest(const FString& ArgumentsJson) const
{
	FCVXApprovalRequest Request;
	Request.ToolName = GetName();
	Request.bIsDestructive = true;
	TSharedPtr<FJsonObject> Json;
	FCVXToolExecutionResult Ignored;
	if (!ParseToolArguments(ArgumentsJson, Json, Ignored))
	{
		return Request;
	}
	const FString Content = GetStringArgument(*Json, TEXT("content"));
	Request.FilePath = GetStringArgument(*Json, TEXT("path"));
	Request.Description = FString::Printf(TEXT("Write %d chars to '%s'"), Content.Len(), *Request.FilePath);
	Request.DiffPreview = GenerateUnifiedDiff(LoadPresentText(Request.FilePath), Content, Request.FilePath, 3);
	return Request;
}
