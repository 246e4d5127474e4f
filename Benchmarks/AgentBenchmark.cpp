#include "SampleText.h"

#include "Agent/Checkpoints/CVXCheckpointJson.h"
#include "Agent/Checkpoints/CVXCheckpointManager.h"
#include "Agent/Tasks/CVXTask.h"
#include "HAL/PlatformProcess.h"
#include "LaunchEngineLoop.h"
#include "Misc/Paths.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace
{
namespace fs = std::filesystem;

/** A host on an empty project of its own, removed at the end. */
class FAgentProject
{
public:
	FAgentProject()
	{
		std::string Name = (fs::temp_directory_path() / "corvexa-bench-XXXXXX").string();
		Root = ::mkdtemp(Name.data());
		FEngineLoopParams Params;
		Params.ProjectFile = FString((Root / "Bench.uproject").c_str());
		Loop.Init(Params);
	}
	~FAgentProject()
	{
		Loop.Exit();
		std::error_code Ignored;
		fs::remove_all(Root, Ignored);
	}

private:
	fs::path Root;
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

/** The messages of one request, out of a long conversation. */
void AgentRequestOfTenThousandMessages(benchmark::State& State)
{
	const FAgentProject Project;
	const TSharedRef<FCVXTask> Task = MakeTask(10000, 400);
	const FString Prompt = FString::ChrN(20000, TEXT('x'));
	for (auto Unused : State)
	{
		benchmark::DoNotOptimize(Task->GetAgentLoop()->GetContextManager().GetMessagesForRequest(Prompt));
	}
}
BENCHMARK(AgentRequestOfTenThousandMessages)->Unit(benchmark::kMillisecond);

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
