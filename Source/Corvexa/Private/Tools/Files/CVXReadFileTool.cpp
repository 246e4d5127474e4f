#include "Tools/Files/CVXReadFileTool.h"

#include "HAL/FileManager.h"
#include "Misc/FileHelper.h"
#include "Tools/CVXToolArguments.h"
#include "Tools/Files/CVXProjectPaths.h"

namespace
{
constexpr int32 MaxChars = 100000;
constexpr int32 HeadChars = 75000;
constexpr int32 TailChars = 24800;

/** @param First and Last count from 0; they are limited to the lines there are, and may be the wrong way round. */
FString TakeLines(const FString& Text, int32 First, int32 Last)
{
	TArray<FString> Lines;
	if (Text.ParseIntoArrayLines(Lines, false) == 0)
	{
		return FString();
	}
	First = FMath::Clamp(First, 0, Lines.Num() - 1);
	Last = FMath::Clamp(Last, 0, Lines.Num() - 1);
	if (First > Last)
	{
		Swap(First, Last);
	}
	const TArrayView<const FString> Range(Lines.GetData() + First, Last - First + 1);
	return FString::Join(Range, TEXT("\n"));
}

/** Leaves out the middle of a text that is too long, and says so there. */
FString Fold(const FString& Text)
{
	if (Text.Len() <= MaxChars)
	{
		return Text;
	}
	const FString Marker = FString::Printf(TEXT("\n\n--- OUTPUT TRUNCATED (%d / %d chars) ---\nUse start_line/end_line "
												"parameters to read specific sections.\n\n"),
		Text.Len(), MaxChars);
	return Text.Left(HeadChars) + Marker + Text.Right(TailChars);
}
} // namespace

FString FCVXReadFileTool::GetName() const
{
	return TEXT("read_file");
}

FString FCVXReadFileTool::GetDescription() const
{
	return TEXT("Read the contents of a file. Path must be relative to the project root or an absolute path within the "
				"project directory.");
}

FString FCVXReadFileTool::GetInputSchemaJson() const
{
	return TEXT(R"({"type":"object","properties":{)"
				R"("path":{"type":"string",)"
				R"__("description":"Path to the file to read (relative to project root or absolute)"},)__"
				R"("start_line":{"type":"integer",)"
				R"__("description":"Optional: first line to read (1-based)"},)__"
				R"("end_line":{"type":"integer",)"
				R"__("description":"Optional: last line to read (1-based inclusive)"}},)__"
				R"("required":["path"]})");
}

FCVXToolExecutionResult FCVXReadFileTool::Execute(const FString& ArgumentsJson, const FCVXAgentProfile&)
{
	FCVXToolExecutionResult Error;
	TSharedPtr<FJsonObject> Arguments;
	if (!ParseToolArguments(ArgumentsJson, Arguments, Error))
	{
		return Error;
	}
	const FString Path = GetStringArgument(*Arguments, TEXT("path"));
	if (Path.IsEmpty())
	{
		return FCVXToolExecutionResult::MakeError(TEXT("'path' is required."));
	}
	FString Absolute;
	FString ProjectDir;
	FString Message;
	if (!ResolveProjectPath(Path, Absolute, ProjectDir, Message))
	{
		return FCVXToolExecutionResult::MakeError(Message);
	}
	if (!IFileManager::Get().FileExists(*Absolute))
	{
		return FCVXToolExecutionResult::MakeError(FString::Printf(TEXT("File not found: %s"), *Absolute));
	}
	FString Text;
	if (!FFileHelper::LoadFileToString(Text, *Absolute))
	{
		return FCVXToolExecutionResult::MakeError(FString::Printf(TEXT("Failed to read file: %s"), *Absolute));
	}
	int32 StartLine = 1;
	int32 EndLine = MAX_int32;
	(void)TryGetIntArgument(*Arguments, TEXT("start_line"), StartLine);
	if (TryGetIntArgument(*Arguments, TEXT("end_line"), EndLine) || StartLine > 1)
	{
		// Lines before the first are the first, which also keeps the subtraction in range.
		Text = TakeLines(Text, FMath::Max(StartLine, 1) - 1, FMath::Max(EndLine, 1) - 1);
	}
	return FCVXToolExecutionResult::MakeSuccess(Fold(Text));
}
