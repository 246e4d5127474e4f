#include "MCP/CVXMCPProcess.h"

#include "Algo/AnyOf.h"
#include "Containers/StringConv.h"
#include "Core/CVXProfiles.h"
#include "HAL/PlatformMisc.h"
#include "MCP/CVXMCPLog.h"
#include "Misc/ScopeLock.h"
#include "Tools/Shell/CVXCommandRun.h"

namespace
{
/** Children inherit the environment as it is at their start, so that two starts at once would mix theirs. */
FCriticalSection LaunchLock;

/** Environment variables that hold to the end of the scope. */
class FEnvironmentScope : private FNoncopyable
{
public:
	/** @param Entries of the form KEY=VALUE; others are skipped. */
	explicit FEnvironmentScope(const TArray<FString>& Entries)
	{
		for (const FString& Entry : Entries)
		{
			FVariable Variable;
			FString Value;
			if (Entry.Split(TEXT("="), &Variable.Name, &Value) && !Variable.Name.IsEmpty())
			{
				Variable.ValueBefore = FPlatformMisc::GetEnvironmentVariable(*Variable.Name);
				FPlatformMisc::SetEnvironmentVar(*Variable.Name, *Value);
				Changed.Add(MoveTemp(Variable));
			}
		}
	}

	/** Backwards, since a variable that was named twice was first changed by the earlier entry. */
	~FEnvironmentScope()
	{
		for (int32 Index = Changed.Num() - 1; Index >= 0; --Index)
		{
			FPlatformMisc::SetEnvironmentVar(*Changed[Index].Name, *Changed[Index].ValueBefore);
		}
	}

private:
	struct FVariable
	{
		FString Name;
		FString ValueBefore;
	};
	TArray<FVariable> Changed;
};

bool NeedsQuotes(const FString& Argument)
{
	static constexpr TCHAR Special[] = {TEXT(' '), TEXT('\t'), TEXT('\n'), TEXT('\r'), TEXT('"')};
	int32 Ignored = INDEX_NONE;
	bool bNeeds = Argument.IsEmpty();
	for (const TCHAR Char : Special)
	{
		bNeeds = bNeeds || Argument.FindChar(Char, Ignored);
	}
	return bNeeds;
}

FString MakeParameters(const TArray<FString>& Arguments)
{
	TArray<FString> Words;
	for (const FString& Argument : Arguments)
	{
		Words.Add(NeedsQuotes(Argument) ? QuoteArgument(Argument) : Argument);
	}
	return FString::Join(Words, TEXT(" "));
}
/** Whether an argument names a secret, as "--api-key" does. */
bool NamesSecret(const FString& Argument)
{
	static constexpr const TCHAR* Names[] = {TEXT("key"), TEXT("token"), TEXT("secret"), TEXT("password")};
	return Argument.StartsWith(TEXT("-")) &&
		Algo::AnyOf(Names, [&](const TCHAR* Name) { return Argument.Contains(Name); });
}

/** The parameters as a log may show them: without the values of options that name a secret. */
FString MakeShownParameters(TArray<FString> Arguments)
{
	for (int32 Index = 0; Index < Arguments.Num(); ++Index)
	{
		FString Name;
		FString Value;
		if (Arguments[Index].Split(TEXT("="), &Name, &Value) && NamesSecret(Name))
		{
			Arguments[Index] = Name + TEXT("=***");
		}
		else if (NamesSecret(Arguments[Index]) && Arguments.IsValidIndex(Index + 1))
		{
			Arguments[++Index] = TEXT("***");
		}
	}
	return MakeParameters(Arguments);
}
} // namespace

bool FCVXMCPPipe::Open(bool bWeWrite)
{
	return FPlatformProcess::CreatePipe(Read, Write, bWeWrite);
}

void FCVXMCPPipe::CloseRead()
{
	FPlatformProcess::ClosePipe(Exchange(Read, nullptr), nullptr);
}

void FCVXMCPPipe::CloseWrite()
{
	FPlatformProcess::ClosePipe(nullptr, Exchange(Write, nullptr));
}

void FCVXMCPPipe::Close()
{
	FPlatformProcess::ClosePipe(Exchange(Read, nullptr), Exchange(Write, nullptr));
}

bool FCVXMCPProcess::Launch(const FCVXMCPServerConfig& Config)
{
	check(!GetHandle().IsValid());
	ServerName = Config.Name;
	bTerminated = false;
	bLineCut = false;
	const FString Parameters = MakeParameters(Config.Args);
	const FProcHandle Started = Start(Config, Parameters);
	if (!Started.IsValid())
	{
		Close();
		return false;
	}
	UE_LOG(LogCVXMCP, Log, TEXT("[%s] Process started: %s %s"), *ServerName, *Config.Command,
		*MakeShownParameters(Config.Args));
	FScopeLock Guard(&HandleLock);
	ProcHandle = Started;
	return true;
}

bool FCVXMCPProcess::IsRunning() const
{
	FProcHandle Handle = GetHandle();
	return !bTerminated && FPlatformProcess::IsProcRunning(Handle);
}

bool FCVXMCPProcess::Terminate()
{
	FProcHandle Handle = GetHandle();
	if (!Handle.IsValid())
	{
		return false;
	}
	bTerminated = true;
	// Also when the process itself has ended: what it has started may have outlived it.
	FPlatformProcess::TerminateProc(Handle, true);
	return true;
}

void FCVXMCPProcess::Close()
{
	(void)Terminate();
	FScopeLock Guard(&HandleLock);
	FPlatformProcess::CloseProc(ProcHandle);
	Guard.Unlock();
	Stdin.Close();
	Stdout.Close();
	Stderr.Close();
}

bool FCVXMCPProcess::WriteLine(const FString& Line)
{
	const FString Framed = (bLineCut ? TEXT("\n") : TEXT("")) + Line + TEXT("\n");
	const FTCHARToUTF8 Bytes(Framed);
	int32 Written = 0;
	const bool bAll =
		FPlatformProcess::WritePipe(Stdin.GetWrite(), (const uint8*)Bytes.Get(), Bytes.Length(), &Written);
	bLineCut = !bAll && (bLineCut || Written > 0);
	return bAll;
}

FString FCVXMCPProcess::Read()
{
	// Read too, or a server that says much there would stand still.
	const FString Errors = FPlatformProcess::ReadPipe(Stderr.GetRead());
	UE_CLOG(!Errors.IsEmpty(), LogCVXMCP, Verbose, TEXT("[%s] stderr: %s"), *ServerName, *Errors.TrimEnd());
	return FPlatformProcess::ReadPipe(Stdout.GetRead());
}

bool FCVXMCPProcess::OpenPipes()
{
	if (!Stdout.Open(false))
	{
		UE_LOG(LogCVXMCP, Error, TEXT("[%s] Failed to create stdout pipe"), *ServerName);
		return false;
	}
	if (!Stdin.Open(true))
	{
		UE_LOG(LogCVXMCP, Error, TEXT("[%s] Failed to create stdin pipe"), *ServerName);
		return false;
	}
	// One of its own: what servers log there would else stand between their answers.
	if (!Stderr.Open(false))
	{
		UE_LOG(LogCVXMCP, Error, TEXT("[%s] Failed to create stderr pipe"), *ServerName);
		return false;
	}
	return true;
}

/** @return an invalid handle, with the reason in the log, when that fails. */
FProcHandle FCVXMCPProcess::Start(const FCVXMCPServerConfig& Config, const FString& Parameters)
{
	const FScopeLock Guard(&LaunchLock);
	const FEnvironmentScope Environment(Config.Env);
	if (!OpenPipes())
	{
		return FProcHandle();
	}
	const FProcHandle Handle = FPlatformProcess::CreateProc(*Config.Command, *Parameters, false, true, true, nullptr, 0,
		nullptr, Stdout.GetWrite(), Stdin.GetRead(), Stderr.GetWrite());
	Stdout.CloseWrite();
	Stdin.CloseRead();
	Stderr.CloseWrite();
	UE_CLOG(!Handle.IsValid(), LogCVXMCP, Error, TEXT("[%s] Failed to launch: %s %s"), *ServerName, *Config.Command,
		*MakeShownParameters(Config.Args));
	return Handle;
}

FProcHandle FCVXMCPProcess::GetHandle() const
{
	const FScopeLock Guard(&HandleLock);
	return ProcHandle;
}
