#include "BenchFolder.h"
#include "SampleText.h"

#include "Agent/Checkpoints/CVXCheckpointJson.h"
#include "Agent/Checkpoints/CVXCheckpointManager.h"
#include "Agent/Tasks/CVXTaskManager.h"
#include "LaunchEngineLoop.h"
#include "Misc/Guid.h"
#include "Misc/Paths.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <string>
#include <unistd.h>

namespace
{
namespace fs = std::filesystem;

constexpr int32 TaskCount = 200;
constexpr int32 CheckpointsPerTask = 5;
/** Messages of a short and of a long conversation; every tenth is long. */
constexpr int32 ShortLength = 40;
constexpr int32 LongLength = 300;

FEngineLoopParams MakeParams(const fs::path& Root)
{
	FEngineLoopParams Params;
	Params.ProjectFile = FString((Root / "Bench.uproject").c_str());
	Params.bLogFile = false;
	return Params;
}

FString TakeText(int32 Seed, int32 Chars)
{
	static const FString Text(SampleText::Ascii(1 << 20).c_str());
	return Text.Mid((Seed * 7919) % ((1 << 20) - Chars), Chars);
}

/** A request, or an answer with a call, or a result, as an agent's turn has them. */
FCVXMessage MakeMessage(int32 Task, int32 Index)
{
	const int32 Seed = Task * 1000 + Index;
	FCVXMessage Message = FCVXMessage::MakeUserText(TakeText(Seed, 300));
	if (Index % 3 == 1)
	{
		Message.Role = ECVXMessageRole::Assistant;
		FCVXContentBlock& Call = Message.Content.AddDefaulted_GetRef();
		Call.Type = TEXT("tool_use");
		Call.ToolUseId = FString::Printf(TEXT("call_%d"), Seed);
		Call.ToolName = TEXT("read_file");
		Call.InputJson = TEXT("{\"path\":\"Source/Skirmish/SkirmishWeapon.cpp\"}");
	}
	if (Index % 3 == 2)
	{
		Message.Role = ECVXMessageRole::Tool;
		FCVXContentBlock& Result = Message.Content[0];
		Result.Type = TEXT("tool_result");
		Result.Text.Empty();
		Result.ToolUseId = FString::Printf(TEXT("call_%d"), Seed - 1);
		Result.ToolName = TEXT("read_file");
		Result.ToolResultContent = TakeText(Seed, 1500);
	}
	return Message;
}

/** Stores the tasks of a project that has been worked on for a while. @return the bytes of the newest texts. */
int64 StoreTasks()
{
	int64 Bytes = 0;
	const FCVXAgentProfile Profile;
	for (int32 Number = 0; Number < TaskCount; ++Number)
	{
		FCVXTask Task(FGuid::NewGuid().ToString(EGuidFormats::Digits), TEXT("Bench"), nullptr, Profile);
		const int32 Length = Number % 10 == 0 ? LongLength : ShortLength;
		for (int32 Index = 0; Index < Length; ++Index)
		{
			Task.GetAgentLoop()->GetContextManager().AddMessage(MakeMessage(Number, Index));
			if (Index >= Length - CheckpointsPerTask)
			{
				FCVXCheckpointManager::Get().SaveCheckpointDirect(Task, CheckpointsPerTask, true);
			}
		}
		Bytes += FTCHARToUTF8(*CVXCheckpointJson::Write(Task)).Length();
	}
	return Bytes;
}

/** Bytes of this process's memory that the system holds for it now. */
int64 GetResidentBytes()
{
	int64 Pages = 0;
	int64 Resident = 0;
	std::ifstream("/proc/self/statm") >> Pages >> Resident;
	return Resident * ::sysconf(_SC_PAGESIZE);
}

/** Bytes that are taken from the allocator. */
int64 GetAllocatedBytes()
{
	const struct mallinfo2 Info = ::mallinfo2();
	return static_cast<int64>(Info.uordblks + Info.hblkhd);
}

/** A start with many stored tasks, and what they take in memory beside their text. */
void TaskRestoreAtStart(benchmark::State& State)
{
	const FBenchFolder Root;
	FEngineLoop Loop;
	Loop.Init(MakeParams(Root.GetRoot()));
	const int64 TextBytes = StoreTasks();
	FCVXTaskManager& Manager = FCVXTaskManager::Get();
	(void)::malloc_trim(0);
	const int64 AllocatedBefore = GetAllocatedBytes();
	const int64 ResidentBefore = GetResidentBytes();
	int64 Allocated = 0;
	int64 Resident = 0;
	for (auto Unused : State)
	{
		Manager.RestoreSessions();
		State.PauseTiming();
		Allocated = GetAllocatedBytes() - AllocatedBefore;
		Resident = GetResidentBytes() - ResidentBefore;
		if (Manager.GetAllTasks().Num() != TaskCount)
		{
			State.SkipWithError("not all tasks came back");
			break;
		}
		Manager.ReleaseTasks();
		State.ResumeTiming();
	}
	const double Text = static_cast<double>(TextBytes);
	// The text is told in the file's form, in UTF-8; in memory it has two bytes for each of its characters.
	State.counters["text_MB"] = Text / 1e6;
	State.counters["allocated_MB"] = static_cast<double>(Allocated) / 1e6;
	State.counters["resident_MB"] = static_cast<double>(Resident) / 1e6;
	State.counters["resident_per_file_text"] = static_cast<double>(Resident) / Text;
	State.counters["resident_per_text_in_memory"] = static_cast<double>(Resident) / (2.0 * Text);
	Loop.Exit();
}
BENCHMARK(TaskRestoreAtStart)->Unit(benchmark::kMillisecond);
} // namespace
