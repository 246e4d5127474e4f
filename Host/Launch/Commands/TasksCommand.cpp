#include "Launch/Commands/TasksCommand.h"

#include "Agent/Tasks/CVXTaskManager.h"
#include "Launch/Commands/ExitStatus.h"
#include "Launch/Commands/LaunchCommand.h"
#include "Launch/Options/LaunchOptions.h"
#include "Launch/Session/LaunchSession.h"
#include "Launch/Session/TaskChoice.h"
#include "Launch/Terminal/SafeText.h"
#include "Launch/Terminal/TerminalOut.h"
#include "Policies/CondensedJsonPrintPolicy.h"
#include "Serialization/JsonWriter.h"

#include <unistd.h>

namespace
{
constexpr int32 MinIdChars = 8;
constexpr int32 StateColumn = 10;
constexpr int32 AgeColumn = 6;
constexpr int32 AgentColumn = 16;
constexpr int32 IndentChars = 2;
/** A narrower terminal wraps the rows. */
constexpr int32 MinWidth = 60;

using FTasks = TArray<TSharedPtr<FCVXTask>>;

/** A conversation, and how many it hangs below. */
struct FListedTask
{
	TSharedPtr<FCVXTask> Task;
	int32 Depth = 0;
};

/** "5 m", "3 h", "2 d". */
FString FormatAge(FDateTime CreatedAt)
{
	const double Minutes = (FDateTime::UtcNow() - CreatedAt).GetTotalMinutes();
	if (Minutes < 60.0)
	{
		return FString::Printf(TEXT("%d m"), FMath::Max(0, static_cast<int32>(Minutes)));
	}
	return Minutes < 24.0 * 60.0 ? FString::Printf(TEXT("%d h"), static_cast<int32>(Minutes / 60.0))
								 : FString::Printf(TEXT("%d d"), static_cast<int32>(Minutes / (24.0 * 60.0)));
}

/** Whether the conversation waits for its model: its last word isn't the agent's. */
FString DescribeState(const FCVXTask& Task)
{
	const TArray<FCVXMessage>& History = Task.GetAgentLoop()->GetContextManager().GetHistory();
	if (History.IsEmpty())
	{
		return TEXT("empty");
	}
	const FCVXContentBlock* Last = History.Last().Content.IsEmpty() ? nullptr : &History.Last().Content.Last();
	const bool bEnded = Last && Last->ToolName == TEXT("attempt_completion") && !Last->bIsError;
	return bEnded ? TEXT("complete") : TEXT("open");
}

/** One line of a text that may have several, safe to show. */
FString ToOneLine(const FString& Text)
{
	return MakeSafeText(Text).Replace(TEXT("\n"), TEXT(" ")).Replace(TEXT("\t"), TEXT(" "));
}

/** @param bActive whether it is the one that `--resume` goes on with. */
FString MakeRow(const FListedTask& Listed, bool bActive, int32 IdChars, int32 MaxChars)
{
	const FCVXTask& Task = *Listed.Task;
	const FString Row = (bActive ? TEXT("* ") : TEXT("  ")) + Task.GetTaskId().Left(IdChars).RightPad(IdChars + 2) +
		DescribeState(Task).RightPad(StateColumn) + FormatAge(Task.GetCreatedAt()).RightPad(AgeColumn) +
		ToOneLine(Task.GetAgentProfileName()).RightPad(AgentColumn) +
		FString::ChrN(IndentChars * Listed.Depth, TEXT(' ')) + ToOneLine(Task.GetTitle());
	return (Row.Len() > MaxChars ? Row.Left(MaxChars - 3) + TEXT("...") : Row) + TEXT("\n");
}

FString MakeHead(int32 IdChars)
{
	return TEXT("  ") + FString(TEXT("ID")).RightPad(IdChars + 2) + FString(TEXT("STATE")).RightPad(StateColumn) +
		FString(TEXT("AGE")).RightPad(AgeColumn) + FString(TEXT("AGENT")).RightPad(AgentColumn) + TEXT("TITLE\n");
}

FString MakeJson(const FCVXTask& Task)
{
	FString Json;
	TJsonWriter<TCHAR, TCondensedJsonPrintPolicy<TCHAR>> Writer(Json);
	Writer.WriteObjectStart();
	Writer.WriteValue(TEXT("id"), Task.GetTaskId());
	Writer.WriteValue(TEXT("title"), Task.GetTitle());
	Writer.WriteValue(TEXT("state"), DescribeState(Task));
	Writer.WriteValue(TEXT("created_at"), Task.GetCreatedAt().ToIso8601());
	Writer.WriteValue(TEXT("agent"), Task.GetAgentProfileName());
	Writer.WriteValue(TEXT("parent_id"), Task.ParentTaskId);
	Writer.WriteValue(TEXT("messages"), Task.GetAgentLoop()->GetContextManager().GetHistory().Num());
	Writer.WriteObjectEnd();
	Writer.Close();
	return Json + TEXT("\n");
}

/** The conversations with what sub-agents did below each, oldest first. One whose parent is gone stands by itself. */
class FTaskTree
{
public:
	explicit FTaskTree(const FTasks& Tasks)
	{
		TSet<FString> Ids;
		for (const TSharedPtr<FCVXTask>& Task : Tasks)
		{
			Ids.Add(Task->GetTaskId());
		}
		for (const TSharedPtr<FCVXTask>& Task : Tasks)
		{
			Children.FindOrAdd(Ids.Contains(Task->ParentTaskId) ? Task->ParentTaskId : FString()).Add(Task);
		}
		AddChildren(FString(), 0);
		// Damaged files may name each other as parents.
		for (const TSharedPtr<FCVXTask>& Task : Tasks)
		{
			Add(Task, 0);
		}
	}

	TArray<FListedTask> Listed;

private:
	void Add(const TSharedPtr<FCVXTask>& Task, int32 Depth)
	{
		if (!Done.Contains(Task->GetTaskId()))
		{
			Done.Add(Task->GetTaskId());
			Listed.Add({Task, Depth});
			AddChildren(Task->GetTaskId(), Depth + 1);
		}
	}

	void AddChildren(const FString& ParentId, int32 Depth)
	{
		if (const FTasks* Own = Children.Find(ParentId))
		{
			for (const TSharedPtr<FCVXTask>& Child : *Own)
			{
				Add(Child, Depth);
			}
		}
	}

	TMap<FString, FTasks> Children;
	TSet<FString> Done;
};

/** The fewest characters by which ids can be told apart, and no fewer than are easily recognised. */
int32 FindIdChars(const TArray<FListedTask>& Listed)
{
	TArray<FString> Ids;
	for (const FListedTask& Each : Listed)
	{
		Ids.Add(Each.Task->GetTaskId().ToLower());
	}
	Ids.Sort();
	int32 Chars = MinIdChars;
	for (int32 Index = 1; Index < Ids.Num(); ++Index)
	{
		while (Chars < Ids[Index].Len() && Ids[Index].Left(Chars) == Ids[Index - 1].Left(Chars))
		{
			++Chars;
		}
	}
	return Chars;
}

/** A terminal's width; a file takes what there is. */
int32 FindWidth()
{
	const FTerminalStyle Style = FTerminalStyle::Detect(STDOUT_FILENO);
	return Style.bCursor ? FMath::Max(Style.Columns, MinWidth) : MAX_int32;
}

FString MakeText(const TArray<FListedTask>& Listed)
{
	const TSharedPtr<FCVXTask> Active = FTaskChoice::Find(TEXT("last")).Task;
	const int32 IdChars = FindIdChars(Listed);
	const int32 Width = FindWidth();
	FString Text = MakeHead(IdChars);
	for (const FListedTask& Each : Listed)
	{
		Text += MakeRow(Each, Each.Task == Active, IdChars, Width);
	}
	return Listed.IsEmpty() ? FString(TEXT("This project has no stored conversation yet.\n")) : Text;
}

FString MakeJsonLines(const TArray<FListedTask>& Listed)
{
	FString Text;
	for (const FListedTask& Each : Listed)
	{
		Text += MakeJson(*Each.Task);
	}
	return Text;
}
} // namespace

int RunTasksCommand(const FLaunchOptions& Options)
{
	if (!Options.Words.IsEmpty())
	{
		return ReportUsageError(TEXT("'tasks' takes no words; 'chat --resume ID' goes on with a conversation"));
	}
	FLaunchSession Session;
	const FLaunchSession::FStart Started = Session.Start(Options, std::chrono::milliseconds(0));
	if (!Started.bStarted)
	{
		return ReportUsageError(Started.Error);
	}
	FCVXTaskManager::Get().RestoreSessions();
	FTasks Tasks = FCVXTaskManager::Get().GetAllTasks();
	Tasks.StableSort([](const TSharedPtr<FCVXTask>& A, const TSharedPtr<FCVXTask>& B)
		{ return A->GetCreatedAt() < B->GetCreatedAt(); });
	const FTaskTree Tree(Tasks);
	const FString Text = Options.bJson ? MakeJsonLines(Tree.Listed) : MakeText(Tree.Listed);
	// They were only looked at; the end of the session must not save them anew.
	FCVXTaskManager::Get().ReleaseTasks();
	return WriteToDescriptor(STDOUT_FILENO, Text) ? ExitComplete : ExitError;
}
