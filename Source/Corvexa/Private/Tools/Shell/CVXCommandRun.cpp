#include "Tools/Shell/CVXCommandRun.h"

#include "HAL/FileManager.h"
#include "HAL/PlatformProcess.h"
#include "HAL/PlatformTime.h"
#include "Math/UnrealMathUtility.h"
#include "Misc/FileHelper.h"
#include "Misc/Guid.h"
#include "Misc/Paths.h"
#include "Serialization/Archive.h"

namespace
{
constexpr float PollSeconds = 0.05f;

struct FCaptureFiles
{
	FString Output;
	FString Errors;

	int64 Size() const
	{
		IFileManager& Files = IFileManager::Get();
		// A file that isn't there yet has a size below 0.
		return FMath::Max<int64>(Files.FileSize(*Output), 0) + FMath::Max<int64>(Files.FileSize(*Errors), 0);
	}

	void Delete() const
	{
		(void)IFileManager::Get().Delete(*Output, false, true, true);
		(void)IFileManager::Get().Delete(*Errors, false, true, true);
	}
};

/** @return false when the directory for them can't be made. */
bool MakeFiles(const FCVXCommand& Command, FCaptureFiles& OutFiles)
{
	const FString Directory =
		FPaths::Combine(FPaths::ConvertRelativePathToFull(FPaths::ProjectSavedDir()), TEXT("CVX/Temp"));
	const FString Unique = FGuid::NewGuid().ToString();
	OutFiles.Output = FPaths::Combine(Directory, Command.OutputFile.Replace(TEXT("%s"), *Unique));
	OutFiles.Errors = FPaths::Combine(Directory, Command.ErrorFile.Replace(TEXT("%s"), *Unique));
	return IFileManager::Get().MakeDirectory(*Directory, true);
}

FString MakeParameters(const FString& CommandLine, const FCaptureFiles& Files)
{
#if PLATFORM_WINDOWS
	return FString::Printf(TEXT("/c %s > \"%s\" 2>\"%s\""), *CommandLine, *Files.Output, *Files.Errors);
#else
	// The command comes as arguments, so that this shell reads nothing of it; its own process becomes the command.
	return TEXT("-c ") + QuoteArgument(TEXT("o=$1 e=$2; shift 2; exec \"$@\" >\"$o\" 2>\"$e\"")) + TEXT(" sh ") +
		QuoteArgument(Files.Output) + TEXT(" ") + QuoteArgument(Files.Errors) + TEXT(" ") + CommandLine;
#endif
}

ECVXCommandEnd WaitForEnd(FProcHandle& Process, const FCVXCommand& Command, const FCaptureFiles& Files)
{
	const double Deadline = FPlatformTime::Seconds() + Command.LimitSeconds;
	while (FPlatformProcess::IsProcRunning(Process))
	{
		if (FPlatformTime::Seconds() >= Deadline)
		{
			return ECVXCommandEnd::TimedOut;
		}
		if (Files.Size() > Command.MaxOutputBytes)
		{
			return ECVXCommandEnd::Flooded;
		}
		FPlatformProcess::Sleep(PollSeconds);
	}
	return ECVXCommandEnd::Finished;
}

/** Takes off a character at the end that isn't whole. */
void DropCutCharacter(TArray<uint8>& Bytes)
{
	int32 Lead = Bytes.Num() - 1;
	while (Lead > 0 && (Bytes[Lead] & 0xC0) == 0x80)
	{
		--Lead;
	}
	if (Lead >= 0 && Bytes[Lead] >= 0xC0)
	{
		Bytes.SetNum(Lead);
	}
}

FString LoadBeginning(const FString& Path)
{
	FString Text;
	const TUniquePtr<FArchive> Reader(IFileManager::Get().CreateFileReader(*Path, FILEREAD_Silent));
	if (!Reader.IsValid())
	{
		return Text;
	}
	TArray<uint8> Bytes;
	Bytes.SetNumUninitialized((int32)FMath::Min(Reader->TotalSize(), FCVXCommandResult::MaxLoadedBytes));
	Reader->Serialize(Bytes.GetData(), Bytes.Num());
	if (Reader->TotalSize() > Bytes.Num())
	{
		DropCutCharacter(Bytes);
	}
	FFileHelper::BufferToString(Text, Bytes.GetData(), Bytes.Num());
	return Text;
}

/** Ends what has to end. @return what became of the command. */
FCVXCommandResult Finish(FProcHandle& Process, const FCVXCommand& Command, const FCaptureFiles& Files)
{
	FCVXCommandResult Result;
	Result.End = WaitForEnd(Process, Command, Files);
	if (Result.End != ECVXCommandEnd::Finished || Command.bEndLeftovers)
	{
		FPlatformProcess::TerminateProc(Process, true);
	}
	(void)FPlatformProcess::GetProcReturnCode(Process, &Result.ReturnCode);
	FPlatformProcess::CloseProc(Process);
	Result.Output = LoadBeginning(Files.Output);
	Result.Errors = LoadBeginning(Files.Errors);
	return Result;
}
} // namespace

FCVXCommandResult RunCommand(const FCVXCommand& Command)
{
	FCaptureFiles Files;
	if (!MakeFiles(Command, Files))
	{
		return {};
	}
	FProcHandle Process = FPlatformProcess::CreateProc(GetCommandProgram(), *MakeParameters(Command.CommandLine, Files),
		false, true, true, nullptr, 0, *Command.WorkingDir, nullptr);
	if (!Process.IsValid())
	{
		return {};
	}
	FCVXCommandResult Result = Finish(Process, Command, Files);
	if (Result.End != ECVXCommandEnd::TimedOut || !Command.bKeepFilesOnTimeout)
	{
		Files.Delete();
	}
	return Result;
}

FString QuoteArgument(FStringView Argument)
{
	int32 End = Argument.Len();
	while (End > 0 && Argument[End - 1] == u'\\')
	{
		--End;
	}
	// In front of the closing quote a backslash would make it plain; behind it, it is just itself.
	return TEXT("\"") + FString(Argument.Left(End)).Replace(TEXT("\""), TEXT("\\\"")) + TEXT("\"") +
		Argument.RightChop(End);
}

FString MakeShellCommandLine(const FString& ShellText)
{
#if PLATFORM_WINDOWS
	return FString::Printf(TEXT("\"%s\""), *ShellText);
#else
	return TEXT("/bin/sh -c ") + QuoteArgument(ShellText);
#endif
}

const TCHAR* GetCommandProgram()
{
#if PLATFORM_WINDOWS
	return TEXT("cmd.exe");
#else
	return TEXT("/bin/sh");
#endif
}
