#include "Launch/Commands/ConversationSetup.h"

#include "Core/CVXSettings.h"
#include "CoreGlobals.h"
#include "HAL/PlatformMisc.h"
#include "Launch/Commands/ExitStatus.h"
#include "Launch/Commands/LaunchCommand.h"
#include "Launch/Options/LaunchOptions.h"
#include "Launch/View/JsonView.h"
#include "Launch/View/TerminalView.h"
#include "Providers/CVXProviderFactory.h"

#include <unistd.h>

namespace
{
/** Milliseconds between two words of the demo model, where a person watches. */
constexpr int32 DefaultDemoPause = 15;
constexpr int32 MaxDemoPause = 1000;
constexpr const TCHAR* DemoPauseVariable = TEXT("CORVEXA_DEMO_PAUSE_MS");

std::chrono::milliseconds FindDemoPause(bool bAtTerminal)
{
	const FString Given = FPlatformMisc::GetEnvironmentVariable(DemoPauseVariable);
	const int32 Usual = bAtTerminal ? DefaultDemoPause : 0;
	return std::chrono::milliseconds(Given.IsEmpty() ? Usual : FMath::Clamp(FCString::Atoi(*Given), 0, MaxDemoPause));
}

/** Goes to a descriptor; when nobody reads it any more, the program ends. @param Keys outlives the sink. */
FTerminalOut::FSink SinkFor(int32 Descriptor, const FKeyMask& Keys)
{
	return [Descriptor, &Keys](const FString& Text)
	{
		if (!WriteToDescriptor(Descriptor, Keys.Apply(Text)))
		{
			RequestEngineExit(TEXT("the output is closed"));
		}
	};
}

bool IsTerminal(int32 Descriptor)
{
	return ::isatty(Descriptor) != 0;
}
} // namespace

FConversationSetup::FConversationSetup(const FLaunchOptions& InOptions)
	: Options(InOptions)
	, bAtTerminal(IsTerminal(STDIN_FILENO) && IsTerminal(STDOUT_FILENO) && !InOptions.bJson)
	, Out(FTerminalStyle::Detect(STDOUT_FILENO), SinkFor(STDOUT_FILENO, Keys))
	, Errors(FTerminalStyle::Detect(STDERR_FILENO), SinkFor(STDERR_FILENO, Keys))
{
	MakeView();
}

FConversationSetup::~FConversationSetup()
{
	Out.ClearStatus();
	Out.EndLine();
}

void FConversationSetup::MakeView()
{
	if (Options.bJson)
	{
		View = MakeUnique<FJsonView>(SinkFor(STDOUT_FILENO, Keys));
		return;
	}
	View = MakeUnique<FTerminalView>(Out, Errors);
}

TOptional<int> FConversationSetup::Start(const FString& Title, bool bAsk)
{
	const FLaunchSession::FStart Started = Session.Start(Options, FindDemoPause(bAtTerminal));
	if (!Started.bStarted)
	{
		return ReportUsageError(Started.Error);
	}
	HideKeys();
	if (!Started.Notice.IsEmpty())
	{
		View->ShowNotice(Started.Notice);
	}
	int Status = ExitError;
	const TSharedPtr<FCVXTask> Task = ChooseTask(Title, Status);
	if (!Task)
	{
		return Status;
	}
	Conversation = MakeUnique<FConversation>(Task.ToSharedRef(), *View, Keys, bAsk);
	return {};
}

TSharedPtr<FCVXTask> FConversationSetup::ChooseTask(const FString& Title, int& OutStatus)
{
	FString Error;
	const bool bFork = !Options.Fork.IsEmpty();
	const bool bResume = !Options.Resume.IsEmpty();
	const TSharedPtr<FCVXTask> Task = bFork ? Session.ForkTask(Options.Fork, Options.ForkMessages, Error)
		: bResume                           ? Session.ResumeTask(Options.Resume, Error)
											: Session.CreateTask(Title);
	if (!Error.IsEmpty())
	{
		OutStatus = ReportUsageError(Error);
		return nullptr;
	}
	if (!Task)
	{
		View->ShowError(
			FString::Printf(TEXT("the settings give no model to talk to; see %s"), *FLaunchSession::GetLogPath()));
		OutStatus = ExitError;
		return nullptr;
	}
	Untitled = bFork || bResume ? nullptr : Task;
	const int32 Messages = Task->GetAgentLoop()->GetContextManager().GetHistory().Num();
	if (bFork)
	{
		View->ShowNotice(FString::Printf(
			TEXT("'%s' is a new conversation with %d messages, %s."), *Task->GetTitle(), Messages, *Task->GetTaskId()));
	}
	else if (bResume)
	{
		View->ShowNotice(FString::Printf(TEXT("Going on with '%s', %d messages so far."), *Task->GetTitle(), Messages));
	}
	return Task;
}

void FConversationSetup::HideKeys()
{
	for (const FCVXProviderProfile& Profile : UCVXSettings::Get()->ProviderProfiles)
	{
		Keys.Hide(FCVXProviderFactory::GetApiKey(Profile));
	}
}

void FConversationSetup::TakeTitle(const FString& Message)
{
	if (Untitled)
	{
		Untitled->SetTitle(Message.Left(MaxTitleChars));
		Untitled.Reset();
	}
}

void FConversationSetup::NoteTypedLine()
{
	if (bAtTerminal)
	{
		Out.NoteTypedLineEnd();
	}
}
