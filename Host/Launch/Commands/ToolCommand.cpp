#include "Launch/Commands/ToolCommand.h"

#include "Core/CVXSettings.h"
#include "Launch/Commands/ExitStatus.h"
#include "Launch/Commands/LaunchCommand.h"
#include "Launch/Conversation/ApprovalAnswer.h"
#include "Launch/Options/LaunchOptions.h"
#include "Launch/Options/NearestName.h"
#include "Launch/Session/LaunchSession.h"
#include "Launch/Terminal/SafeText.h"
#include "Launch/Terminal/TerminalInput.h"
#include "Launch/Terminal/TerminalOut.h"
#include "Launch/View/TerminalView.h"
#include "Misc/Guid.h"
#include "Tools/CVXToolExecutor.h"
#include "Tools/CVXToolRegistry.h"

#include <unistd.h>

namespace
{
/** Arguments that come from standard input aren't longer. */
constexpr int32 MaxArgumentBytes = 16 << 20;

/** What the call still needs, or how it ended. */
enum class EStage : uint8
{
	Running,
	Asking,
	Done,
	NeedsPerson,
	Interrupted,
};

bool IsAtTerminal()
{
	return ::isatty(STDIN_FILENO) != 0 && ::isatty(STDERR_FILENO) != 0;
}

FString DescribeUnknownTool(const FString& Name)
{
	TArray<FString> Names;
	for (const ICVXTool* Tool : FCVXToolRegistry::Get().GetAllTools())
	{
		Names.Add(Tool->GetName());
	}
	const FString Nearest = FindNearestName(Name, Names);
	return FString::Printf(TEXT("there is no tool '%s'"), *Name) +
		(Nearest.IsEmpty() ? FString() : FString::Printf(TEXT("; did you mean '%s'?"), *Nearest));
}

/** One call, asked about on standard error, its result on standard output. */
class FToolCallRun
{
public:
	FToolCallRun(FLaunchSession& InSession, const FCVXToolCall& InCall)
		: Session(InSession)
		, Call(InCall)
		, Out(FTerminalStyle::Detect(STDERR_FILENO),
			  [](const FString& Text) { (void)WriteToDescriptor(STDERR_FILENO, Text); })
		, View(Out, Out)
	{
	}

	int Run(const FCVXAgentProfile& Agent)
	{
		FTerminalInputHandlers Handlers;
		Handlers.OnInterrupt = [this] { Stage = EStage::Interrupted; };
		Handlers.OnTerminate = Handlers.OnInterrupt;
		Handlers.OnLine = [this](const FString& Line) { Answer(Line); };
		FTerminalInput Input(MoveTemp(Handlers), IsAtTerminal());
		Executor.ExecuteToolCall(Call, Agent,
			FCVXOnToolComplete::CreateLambda(
				[this](const FString&, const FCVXToolExecutionResult& InResult)
				{
					Result = InResult;
					Stage = EStage::Done;
				}),
			FCVXOnToolApprovalNeeded::CreateLambda(
				[this, &Input](const FString&, const FCVXApprovalRequest& Request)
				{
					(void)Input.ForgetTyped();
					Ask(Request);
				}));
		Session.RunUntil([this] { return Stage != EStage::Running && Stage != EStage::Asking; });
		return Finish();
	}

private:
	void Ask(const FCVXApprovalRequest& Request)
	{
		const bool bAsk = IsAtTerminal();
		const FString Label = FCVXToolRegistry::Get().GetToolDisplayLabel(Call.Name, Call.Arguments);
		View.ShowApproval({Call.Id, Call.Name, Label, Call.Arguments}, Request, bAsk);
		WaitedFor = FString::Printf(TEXT("approval of %s: %s"), *Call.Name, *Request.Description);
		Stage = bAsk ? EStage::Asking : EStage::NeedsPerson;
	}

	void Answer(const FString& Line)
	{
		if (Stage != EStage::Asking)
		{
			return;
		}
		const FApprovalAnswer Given = FApprovalAnswer::Parse(Line);
		switch (Given.Kind)
		{
		case FApprovalAnswer::EKind::More:
			View.ShowMoreOfApproval();
			break;
		case FApprovalAnswer::EKind::Unclear:
			View.ShowHint(TEXT("Answer y, n, always or never."));
			break;
		case FApprovalAnswer::EKind::Decision:
			Stage = EStage::Running;
			Executor.ResolveApproval(Call.Id, Given.Decision, Given.bRemember);
			break;
		}
	}

	int Finish()
	{
		if (Stage == EStage::NeedsPerson)
		{
			View.ShowNeedsPerson(WaitedFor);
			return ExitNeedsPerson;
		}
		if (Stage != EStage::Done)
		{
			return ExitInterrupted;
		}
		// A file or a pipe gets what the model reads, to the byte; a terminal gets no control characters of it.
		const FString Text = ::isatty(STDOUT_FILENO) ? MakeSafeText(Result.Output) : Result.Output;
		const bool bWritten = WriteToDescriptor(STDOUT_FILENO, Text + TEXT("\n"));
		return bWritten && !Result.bIsError ? ExitComplete : ExitError;
	}

	FLaunchSession& Session;
	const FCVXToolCall Call;
	FTerminalOut Out;
	FTerminalView View;
	FCVXToolExecutor Executor;
	EStage Stage = EStage::Running;
	FString WaitedFor;
	FCVXToolExecutionResult Result;
};
} // namespace

int RunToolCommand(const FLaunchOptions& Options)
{
	if (Options.Words.IsEmpty() || Options.Words.Num() > 2)
	{
		return ReportUsageError(TEXT("'tool' needs a tool's name and its arguments as one JSON text"));
	}
	FString Arguments = Options.Words.Num() == 2 ? Options.Words[1] : TEXT("{}");
	if (Arguments.Equals(TEXT("-")))
	{
		Arguments = ReadStandardInput(MaxArgumentBytes);
	}
	FLaunchSession Session;
	const FLaunchSession::FStart Started = Session.Start(Options, std::chrono::milliseconds(0));
	if (!Started.bStarted)
	{
		return ReportUsageError(Started.Error);
	}
	const FString& Name = Options.Words[0];
	if (!FCVXToolRegistry::Get().FindTool(Name))
	{
		return ReportUsageError(DescribeUnknownTool(Name));
	}
	const UCVXSettings& Settings = *UCVXSettings::Get();
	const FCVXAgentProfile* Agent = Settings.FindAgentProfile(Settings.ActiveAgentProfile);
	if (!Agent)
	{
		return ReportUsageError(TEXT("the settings hold no agent"));
	}
	return FToolCallRun(Session, {FGuid::NewGuid().ToString(EGuidFormats::Digits), Name, Arguments}).Run(*Agent);
}
