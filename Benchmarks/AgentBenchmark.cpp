#include "BenchFolder.h"
#include "SampleText.h"

#include "Agent/Checkpoints/CVXCheckpointJson.h"
#include "Agent/Checkpoints/CVXCheckpointManager.h"
#include "Agent/Tasks/CVXTask.h"
#include "HAL/PlatformProcess.h"
#include "LaunchEngineLoop.h"
#include "Misc/Optional.h"
#include "Misc/Paths.h"

#include <benchmark/benchmark.h>
#include <string>

namespace
{
/** A host on an empty project of its own, removed at the end. */
class FAgentProject
{
public:
	FAgentProject()
	{
		FEngineLoopParams Params;
		Params.ProjectFile = FString((Root / "Bench.uproject").c_str());
		Loop.Init(Params);
	}
	~FAgentProject() { Loop.Exit(); }

private:
	const FBenchFolder Root;
	FEngineLoop Loop;
};

FCVXMessage MakeMessage(int32 Index, int32 Chars)
{
	static const FString Text(SampleText::Ascii(1 << 20).c_str());
	FCVXMessage Message = FCVXMessage::MakeUserText(Text.Mid((Index * 97) % 4096, Chars));
	Message.Role = Index % 2 == 0 ? ECVXMessageRole::User : ECVXMessageRole::Assistant;
	return Message;
}

TSharedRef<FCVXTask> MakeTask(int32 Messages, int32 CharsEach)
{
	FCVXAgentProfile Profile;
	const TSharedRef<FCVXTask> Task =
		MakeShared<FCVXTask>(TEXT("0123456789abcdef0123456789abcdef"), TEXT("Bench"), nullptr, Profile);
	for (int32 Index = 0; Index < Messages; ++Index)
	{
		Task->GetAgentLoop()->GetContextManager().AddMessage(MakeMessage(Index, CharsEach));
	}
	return Task;
}

/** A history as real ones are: a question, and turns of one call each with its result. */
void AddTurns(FCVXContextManager& Context, int32 Messages, int32 CharsEach)
{
	Context.AddMessage(FCVXMessage::MakeUserText(TEXT("Build the door")));
	for (int32 Index = 1; Index + 1 < Messages; Index += 2)
	{
		FCVXMessage Call = MakeMessage(1, CharsEach / 4);
		FCVXContentBlock& Use = Call.Content.AddDefaulted_GetRef();
		Use.Type = TEXT("tool_use");
		Use.ToolUseId = FString::Printf(TEXT("toolu_%024d"), Index);
		Use.ToolName = Index % 8 == 1 ? TEXT("write_file") : TEXT("read_file");
		Use.InputJson = FString::Printf(TEXT("{\"path\": \"Source/Door%d.cpp\", \"content\": \"%s\"}"), Index % 200,
			*Call.Content[0].Text.Replace(TEXT("\n"), TEXT(" ")).Replace(TEXT("\""), TEXT(" ")));
		FCVXMessage Answer;
		Answer.Role = ECVXMessageRole::Tool;
		FCVXContentBlock& Result = Answer.Content.AddDefaulted_GetRef();
		Result.Type = TEXT("tool_result");
		Result.ToolUseId = Use.ToolUseId;
		Result.ToolName = Use.ToolName;
		Result.ToolResultContent = MakeMessage(Index, CharsEach).Content[0].Text;
		Context.AddMessage(MoveTemp(Call));
		Context.AddMessage(MoveTemp(Answer));
	}
}

/**
 * The messages of one request out of ten thousand, in a window of 200,000 tokens. Arg: characters of a message, so that
 * all, a fifth or a hundredth of them fit.
 */
void AgentRequestOfTenThousandMessages(benchmark::State& State)
{
	FCVXContextManager Context(200000);
	AddTurns(Context, 10000, static_cast<int32>(State.range(0)));
	const FString Prompt = FString::ChrN(20000, TEXT('x'));
	int32 Kept = 0;
	for (auto Unused : State)
	{
		Kept = Context.GetMessagesForRequest(Prompt).Num();
	}
	State.counters["kept"] = Kept;
}
BENCHMARK(AgentRequestOfTenThousandMessages)->Arg(40)->Arg(400)->Arg(4000)->Unit(benchmark::kMillisecond);

/** The first such request, behind which the summary of what is left out goes on from where it was. */
void AgentFirstRequestOfTenThousandMessages(benchmark::State& State)
{
	FCVXContextManager Fresh(200000);
	AddTurns(Fresh, 10000, 400);
	const FString Prompt = FString::ChrN(20000, TEXT('x'));
	for (auto Unused : State)
	{
		State.PauseTiming();
		TOptional<FCVXContextManager> Context(Fresh);
		State.ResumeTiming();
		TArray<FCVXMessage> Messages = Context->GetMessagesForRequest(Prompt);
		State.PauseTiming();
		Messages.Empty();
		Context.Reset();
		State.ResumeTiming();
	}
}
BENCHMARK(AgentFirstRequestOfTenThousandMessages)->Unit(benchmark::kMillisecond);

/** What a save of 5 MB costs the game thread: making the text. */
void AgentSaveOnTheGameThread(benchmark::State& State)
{
	const FAgentProject Project;
	const TSharedRef<FCVXTask> Task = MakeTask(500, 10000);
	for (auto Unused : State)
	{
		benchmark::DoNotOptimize(CVXCheckpointJson::Write(*Task));
	}
}
BENCHMARK(AgentSaveOnTheGameThread)->Unit(benchmark::kMillisecond);

/** The same save to its end on disk. */
void AgentSaveToDisk(benchmark::State& State)
{
	const FAgentProject Project;
	const TSharedRef<FCVXTask> Task = MakeTask(500, 10000);
	for (auto Unused : State)
	{
		FCVXCheckpointManager::Get().SaveCheckpointDirect(*Task, 3, true);
	}
	FCVXCheckpointManager::Get().DeleteCheckpoints(Task->GetTaskId());
}
BENCHMARK(AgentSaveToDisk)->Unit(benchmark::kMillisecond);

void AgentRestoreOfFiveMegabytes(benchmark::State& State)
{
	const FAgentProject Project;
	const TSharedRef<FCVXTask> Task = MakeTask(500, 10000);
	FCVXCheckpointManager::Get().SaveCheckpointDirect(*Task, 3, true);
	const FString Path = FCVXCheckpointManager::Get().ListCheckpoints(Task->GetTaskId()).Last();
	const TSharedRef<FCVXTask> Back = MakeTask(0, 0);
	for (auto Unused : State)
	{
		if (!FCVXCheckpointManager::Get().RestoreCheckpoint(*Back, Path))
		{
			State.SkipWithError("the checkpoint can't be read");
			break;
		}
	}
	FCVXCheckpointManager::Get().DeleteCheckpoints(Task->GetTaskId());
}
BENCHMARK(AgentRestoreOfFiveMegabytes)->Unit(benchmark::kMillisecond);
} // namespace
