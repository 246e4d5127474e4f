#include "Tools/Edit/CVXApplyPatchTool.h"

#include "HAL/FileManager.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Tools/CVXToolArguments.h"
#include "Tools/Edit/CVXHunkApplication.h"
#include "Tools/Edit/CVXPatchParser.h"
#include "Tools/Files/CVXProjectPaths.h"
#include "Tools/Files/CVXTextFile.h"

namespace
{
bool IsNowhere(const FString& Path)
{
	return Path.IsEmpty() || Path == TEXT("/dev/null");
}

constexpr TCHAR Mark = 0xFEFF;

/** Whether the patch was made of bytes, where a file's mark is the beginning of its first line. */
bool ShowsMark(const FCVXFilePatch& File)
{
	return !File.Hunks.IsEmpty() &&
		File.Hunks[0].Lines.ContainsByPredicate([](const FString& Line) { return Line.Len() > 1 && Line[1] == Mark; });
}

/** Where one file's patch leads, and what came of it. */
class FFilePatching
{
public:
	explicit FFilePatching(const FCVXFilePatch& InFile)
		: File(InFile)
		, Target(InFile.NewPath.IsEmpty() ? InFile.OldPath : InFile.NewPath)
	{
	}

	/** @return the line for the model. */
	FString Run()
	{
		if (IsNowhere(Target))
		{
			return TEXT("[SKIP] /dev/null target skipped.\n");
		}
		FString Message;
		if (!FindTarget(Message))
		{
			return Fail(Message);
		}
		return IsNowhere(File.OldPath) ? Create() : Change();
	}

	bool HasFailed() const { return bFailed; }

private:
	FString Fail(const FString& Message)
	{
		bFailed = true;
		return FString::Printf(TEXT("[ERROR] %s\n"), *Message);
	}

	bool FindTarget(FString& OutError)
	{
		FString ProjectDir;
		return ResolveProjectPath(Target, Absolute, ProjectDir, OutError) &&
			!CheckProtectedPath(Absolute, ProjectDir, Target, OutError) &&
			!(IsNowhere(File.OldPath) && CheckReservedPath(Absolute, ProjectDir, Target, OutError));
	}

	FString Create()
	{
		if (!IFileManager::Get().MakeDirectory(*FPaths::GetPath(Absolute), true) ||
			!FFileHelper::SaveStringToFile(MakeNewText(File), *Absolute))
		{
			return Fail(Target + TEXT(" — failed to write new file."));
		}
		return FString::Printf(TEXT("[CREATED] %s\n"), *Target);
	}

	FString Change()
	{
		FString Text;
		FString Message;
		ECVXTextEncoding Encoding = ECVXTextEncoding::Utf8;
		if (!CVXTextFile::Load(Absolute, Text, Encoding))
		{
			return Fail(Target + TEXT(" — file not found or unreadable."));
		}
		if (Encoding == ECVXTextEncoding::Utf8WithMark && ShowsMark(File))
		{
			Text = FString::Chr(Mark) + Text;
			Encoding = ECVXTextEncoding::Utf8;
		}
		if (!ApplyHunksToText(Text, File, Message))
		{
			return Fail(Target + TEXT(" — ") + Message);
		}
		if (!CVXTextFile::Save(Absolute, Text, Encoding))
		{
			return Fail(Target + TEXT(" — failed to write patched file."));
		}
		return FString::Printf(TEXT("[OK] %s — %d hunk(s) applied.\n"), *Target, File.Hunks.Num());
	}

	const FCVXFilePatch& File;
	const FString Target;
	FString Absolute;
	bool bFailed = false;
};
} // namespace

FString FCVXApplyPatchTool::GetName() const
{
	return TEXT("apply_patch");
}

FString FCVXApplyPatchTool::GetDescription() const
{
	return TEXT("Applies a unified diff patch to one or more files. Use this instead of edit_file when making large or "
				"multi-location changes. The patch must be in standard unified diff format (--- / +++ / @@ hunks). "
				"Context lines must match exactly; any mismatch is reported as an error.");
}

FString FCVXApplyPatchTool::GetInputSchemaJson() const
{
	return TEXT(
		R"({"type":"object","properties":{)"
		R"("patch":{"type":"string",)"
		R"("description":"Unified diff patch string. Must start with --- / +++ headers followed by @@ hunks."}},)"
		R"("required":["patch"]})");
}

FCVXToolExecutionResult FCVXApplyPatchTool::Execute(const FString& ArgumentsJson, const FCVXAgentProfile&)
{
	FCVXToolExecutionResult Result;
	TSharedPtr<FJsonObject> Json;
	FString Patch;
	if (!ParseToolArguments(ArgumentsJson, Json, Result) || !ReadStringArgument(*Json, TEXT("patch"), Patch, Result))
	{
		return Result;
	}
	if (Patch.IsEmpty())
	{
		return FCVXToolExecutionResult::MakeError(TEXT("Missing required field: patch"));
	}
	const TArray<FCVXFilePatch> Files = ParseUnifiedDiff(Patch);
	if (Files.IsEmpty())
	{
		return FCVXToolExecutionResult::MakeError(TEXT("No file patches found in the provided diff."));
	}
	for (const FCVXFilePatch& File : Files)
	{
		FFilePatching Patching(File);
		Result.Output += Patching.Run();
		Result.bIsError |= Patching.HasFailed();
	}
	Result.Output.TrimEndInline();
	return Result;
}

TArray<FCVXFilePatch> FCVXApplyPatchTool::ParseUnifiedDiff(const FString& Patch)
{
	return ParsePatch(Patch);
}

bool FCVXApplyPatchTool::ApplyHunksToLines(TArray<FString>& Lines, const FCVXFilePatch& File, FString& OutError)
{
	return ApplyHunks(Lines, File, OutError);
}
