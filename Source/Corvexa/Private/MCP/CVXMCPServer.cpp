#include "MCP/CVXMCPServer.h"

#include "Core/CVXJsonObject.h"
#include "Core/CVXProfiles.h"
#include "HAL/PlatformTime.h"
#include "MCP/CVXMCPLog.h"
#include "MCP/CVXMCPMessage.h"
#include "MCP/CVXMCPResults.h"
#include "Math/UnrealMathUtility.h"
#include "Misc/ScopeLock.h"

namespace
{
constexpr double GreetingSeconds = 15.0;
constexpr double RequestSeconds = 30.0;
constexpr double ShortestWaitSeconds = 0.1;
constexpr float PollSeconds = 0.005f;
constexpr int32 MaxMalformedLines = 10;

TSharedPtr<FJsonObject> MakeGreeting()
{
	const TSharedPtr<FJsonObject> Client = MakeShared<FJsonObject>();
	Client->SetStringField(TEXT("name"), TEXT("Corvexa"));
	Client->SetStringField(TEXT("version"), TEXT("1.0"));
	TSharedPtr<FJsonObject> Greeting = MakeShared<FJsonObject>();
	Greeting->SetStringField(TEXT("protocolVersion"), TEXT("2024-11-05"));
	Greeting->SetObjectField(TEXT("clientInfo"), Client);
	Greeting->SetObjectField(TEXT("capabilities"), MakeShared<FJsonObject>());
	return Greeting;
}
} // namespace

bool FCVXMCPServer::Start(const FCVXMCPServerConfig& Config)
{
	Stop();
	ServerName = Config.Name;
	if (Config.Command.IsEmpty())
	{
		UE_LOG(LogCVXMCP, Error, TEXT("[%s] Command is empty"), *ServerName);
		return false;
	}
	FScopeLock Guard(&RequestLock);
	const bool bLaunched = Process.Launch(Config);
	Guard.Unlock();
	if (!bLaunched)
	{
		return false;
	}
	if (!Greet())
	{
		Stop();
		return false;
	}
	UE_LOG(LogCVXMCP, Log, TEXT("[%s] Initialized successfully"), *ServerName);
	return true;
}

void FCVXMCPServer::Stop()
{
	// Before the lock is asked for: with its process gone, whoever holds it soon lets go.
	const bool bRan = Process.Terminate();
	const FScopeLock Guard(&RequestLock);
	Process.Close();
	LineBuffer.Empty();
	NextRequestId = 1;
	UE_CLOG(bRan, LogCVXMCP, Log, TEXT("[%s] Process stopped"), *ServerName);
}

bool FCVXMCPServer::ListTools(TArray<FCVXMCPToolInfo>& OutTools)
{
	OutTools.Empty();
	FString Error;
	const FString Result = SendRequest(TEXT("tools/list"), MakeShared<FJsonObject>(), Error, RequestSeconds);
	if (Result.IsEmpty())
	{
		UE_LOG(LogCVXMCP, Error, TEXT("[%s] tools/list failed: %s"), *ServerName, *Error);
		return false;
	}
	const TSharedPtr<FJsonObject> Object = CVXJsonObject::Parse(Result);
	if (!Object)
	{
		UE_LOG(LogCVXMCP, Error, TEXT("[%s] Failed to parse tools/list result"), *ServerName);
		return false;
	}
	if (!CVXMCPResults::ReadTools(*Object, ServerName, OutTools))
	{
		UE_LOG(LogCVXMCP, Warning, TEXT("[%s] tools/list returned no 'tools' array"), *ServerName);
		return true;
	}
	UE_LOG(LogCVXMCP, Log, TEXT("[%s] Discovered %d tool(s)"), *ServerName, OutTools.Num());
	return true;
}

FString FCVXMCPServer::CallTool(const FString& OriginalName, const FString& ArgumentsJson, bool& bOutIsError)
{
	const TSharedPtr<FJsonObject> Arguments = CVXJsonObject::Parse(ArgumentsJson);
	const TSharedPtr<FJsonObject> Params = MakeShared<FJsonObject>();
	Params->SetStringField(TEXT("name"), OriginalName);
	Params->SetObjectField(TEXT("arguments"), Arguments ? Arguments : MakeShared<FJsonObject>());
	FString Error;
	const FString Result = SendRequest(TEXT("tools/call"), Params, Error, RequestSeconds);
	bOutIsError = true;
	if (Result.IsEmpty())
	{
		return FString::Printf(TEXT("MCP tool call failed: %s"), *Error);
	}
	const TSharedPtr<FJsonObject> Object = CVXJsonObject::Parse(Result);
	return Object ? CVXMCPResults::ReadCallOutput(*Object, bOutIsError)
				  : FString(TEXT("Failed to parse tools/call result JSON"));
}

FString FCVXMCPServer::SendRequest(
	const FString& Method, const TSharedPtr<FJsonObject>& Params, FString& OutError, double TimeoutSeconds)
{
	const FScopeLock Guard(&RequestLock);
	OutError.Empty();
	DropStaleLines();
	if (!Process.IsRunning())
	{
		OutError = TEXT("Server process is not running");
		return FString();
	}
	const int32 Id = NextRequestId++;
	const FString Request = CVXMCPMessage::MakeRequest(Id, Method, Params);
	UE_LOG(LogCVXMCP, VeryVerbose, TEXT("[%s] → %s"), *ServerName, *Request);
	if (!Process.WriteLine(Request))
	{
		OutError = TEXT("Failed to write to server stdin");
		return FString();
	}
	const TSharedPtr<FJsonObject> Response = AwaitResponse(Id, Method, OutError, TimeoutSeconds);
	return Response ? CVXMCPMessage::TakeResult(*Response, OutError) : FString();
}

void FCVXMCPServer::SendNotification(const FString& Method, const TSharedPtr<FJsonObject>& Params)
{
	const FScopeLock Guard(&RequestLock);
	const FString Notification = CVXMCPMessage::MakeNotification(Method, Params);
	UE_LOG(LogCVXMCP, VeryVerbose, TEXT("[%s] → %s"), *ServerName, *Notification);
	if (!Process.WriteLine(Notification))
	{
		UE_LOG(LogCVXMCP, Warning, TEXT("[%s] Failed to send '%s'"), *ServerName, *Method);
	}
}

FString FCVXMCPServer::ReadLine(double TimeoutSeconds)
{
	const double Deadline = FPlatformTime::Seconds() + TimeoutSeconds;
	FString Line;
	while (!LineBuffer.TakeLine(Line) && FPlatformTime::Seconds() < Deadline)
	{
		// Asked before the pipe is read, so that the last words of a process that has ended are still heard.
		const bool bRuns = Process.IsRunning();
		const FString Part = Process.Read();
		LineBuffer.Append(Part);
		if (Part.IsEmpty() && !bRuns)
		{
			break;
		}
		if (Part.IsEmpty())
		{
			FPlatformProcess::Sleep(PollSeconds);
		}
	}
	return Line;
}

bool FCVXMCPServer::Greet()
{
	FString Error;
	if (SendRequest(TEXT("initialize"), MakeGreeting(), Error, GreetingSeconds).IsEmpty())
	{
		UE_LOG(LogCVXMCP, Error, TEXT("[%s] Initialize handshake failed: %s"), *ServerName, *Error);
		return false;
	}
	SendNotification(TEXT("notifications/initialized"), MakeShared<FJsonObject>());
	return true;
}

/** What has come since the last request answers nothing that is still waited for. */
void FCVXMCPServer::DropStaleLines()
{
	UE_CLOG(LineBuffer.Num() > 0, LogCVXMCP, Log, TEXT("[%s] Discarding %d stale bytes in LineBuffer"), *ServerName,
		LineBuffer.Num());
	LineBuffer.Empty();
}

/** @return null, with OutError set, when none comes. */
TSharedPtr<FJsonObject> FCVXMCPServer::AwaitResponse(
	int32 Id, const FString& Method, FString& OutError, double TimeoutSeconds)
{
	const double Deadline = FPlatformTime::Seconds() + TimeoutSeconds;
	int32 MalformedCount = 0;
	do
	{
		const FString Line = ReadLine(FMath::Max(Deadline - FPlatformTime::Seconds(), ShortestWaitSeconds));
		if (Line.IsEmpty())
		{
			break;
		}
		UE_LOG(LogCVXMCP, VeryVerbose, TEXT("[%s] ← %s"), *ServerName, *Line);
		const TSharedPtr<FJsonObject> Message = CVXJsonObject::Parse(Line);
		MalformedCount = Message ? 0 : MalformedCount + 1;
		if (!Message && IsTooMuchGarbage(Line, MalformedCount, OutError))
		{
			return nullptr;
		}
		if (Message && CVXMCPMessage::IsResponseTo(*Message, Id))
		{
			return Message;
		}
	} while (FPlatformTime::Seconds() < Deadline);
	OutError = FString::Printf(TEXT("Timed out waiting for response to '%s' (id=%d)"), *Method, Id);
	return nullptr;
}

bool FCVXMCPServer::IsTooMuchGarbage(const FString& Line, int32 MalformedCount, FString& OutError) const
{
	UE_LOG(LogCVXMCP, Warning, TEXT("[%s] Malformed JSON line (%d/%d): %.200s"), *ServerName, MalformedCount,
		MaxMalformedLines, *Line);
	if (MalformedCount < MaxMalformedLines)
	{
		return false;
	}
	OutError = FString::Printf(TEXT("Aborting: %d consecutive malformed responses from server"), MalformedCount);
	UE_LOG(LogCVXMCP, Error, TEXT("[%s] %s"), *ServerName, *OutError);
	return true;
}
