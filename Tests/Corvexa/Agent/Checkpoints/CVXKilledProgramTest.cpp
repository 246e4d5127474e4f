#include "Agent/Checkpoints/CVXCheckpointManager.h"
#include "Agent/Tasks/CVXDelegationHistory.h"
#include "Agent/Tasks/CVXTaskManager.h"
#include "Core/CVXSettings.h"
#include "Corvexa/Agent/Checkpoints/StoredTask.h"
#include "Misc/Paths.h"
#include "Support/ForkedProgram.h"
#include "Support/LogCapture.h"
#include "Support/LoopPump.h"
#include "Support/TempProject.h"
#include "Support/TestClock.h"

#include <gtest/gtest.h>
#include <random>
#include <sched.h>

namespace
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int32 SavesInAll = 150;
#else
constexpr int32 SavesInAll = 1000;
#endif
constexpr int32 MaxSavesToAKill = 50;

/** What is kept safe, each with a count that only grows. */
enum EKept
{
	DirectTask,
	ThrottledTask,
	DirectDelegations,
	ThrottledDelegations,
	Settings,
	KeptCount
};

struct FCounts
{
	int32 Of[KeptCount] = {};
};

constexpr EKept TaskKinds[] = {DirectTask, ThrottledTask};

EKept DelegationsOf(EKept Task)
{
	return Task == DirectTask ? DirectDelegations : ThrottledDelegations;
}

const TCHAR* IdOf(EKept Task)
{
	return Task == DirectTask ? TEXT("0000000000000000000000000000000a") : TEXT("0000000000000000000000000000000b");
}

/** The number of the newest delegation. */
int32 CountDelegations(const FCVXTask& Task)
{
	const TArray<FCVXDelegationRecord>& Records =
		FCVXDelegationHistory::Get().GetRecords(Task.GetAgentLoop()->GetLoopId());
	return Records.IsEmpty() ? 0 : FCString::Atoi(*Records.Last().TaskDescription);
}

/** One program's work on what is stored, until it is killed. */
class FSaver
{
public:
	FSaver(uint32 Seed, const FForkedProgram::FTell& InTell)
		: Tell(InTell)
		, Random(Seed)
	{
		FCVXTaskManager::Get().ReleaseTasks();
		FCVXTaskManager::Get().RestoreSessions();
		for (const EKept Kept : TaskKinds)
		{
			const TSharedPtr<FCVXTask> Restored = FCVXTaskManager::Get().FindTask(IdOf(Kept));
			Tasks[Kept] = Restored ? Restored : StoredTask::Make(IdOf(Kept));
		}
		// So many that the budget is what prunes them.
		Stored.MaxCheckpointsPerTask = 40;
		Stored.MaxCheckpointStorageMB = 1;
	}

	/** Saves everything once, and tells of each thing once it is on disk. */
	void SaveAll()
	{
		Speak(DirectTask);
		Manager.SaveCheckpointDirect(*Tasks[DirectTask], 3, Random() % 2 == 0);
		TellOf(DirectTask, StoredTask::Count(*Tasks[DirectTask]));
		const FString Path =
			FPaths::Combine(FCVXCheckpointManager::GetCheckpointDir(IdOf(DirectTask)), TEXT("delegations.json"));
		if (Random() % 4 == 0 &&
			FCVXAgentLoop::SaveDelegationHistory(Tasks[DirectTask]->GetAgentLoop()->GetLoopId(), Path))
		{
			TellOf(DirectDelegations, CountDelegations(*Tasks[DirectTask]));
		}
		Speak(ThrottledTask);
		Clock.Advance(FCVXCheckpointManager::MinSaveIntervalSeconds + 0.1);
		Manager.SaveCheckpoint(*Tasks[ThrottledTask]);
		if (Random() % 3 != 0)
		{
			// Asking for the list waits for what is on its way.
			EXPECT_FALSE(Manager.ListCheckpoints(IdOf(ThrottledTask)).IsEmpty());
			TellOf(ThrottledTask, StoredTask::Count(*Tasks[ThrottledTask]));
			TellOf(ThrottledDelegations, CountDelegations(*Tasks[ThrottledTask]));
		}
		++Stored.MaxMessagesInView;
		Stored.SaveToDefaultConfig();
		TellOf(Settings, Stored.MaxMessagesInView);
	}

private:
	void Speak(EKept Kept)
	{
		const int32 Number = StoredTask::Speak(*Tasks[Kept], Random);
		if (Random() % 3 == 0)
		{
			// Its number may be ahead of a conversation that was cut short.
			FCVXDelegationHistory::Get().Add(Tasks[Kept]->GetAgentLoop()->GetLoopId(), TEXT("Coder"),
				FString::FromInt(FMath::Max(Number, CountDelegations(*Tasks[Kept]))), TEXT("done"), false, false);
		}
	}
	void TellOf(EKept Kept, int32 Count) const { Tell(Count * KeptCount + Kept); }

	const FForkedProgram::FTell& Tell;
	std::mt19937 Random;
	FTestClock Clock;
	FCVXCheckpointManager& Manager = FCVXCheckpointManager::Get();
	UCVXSettings& Stored = *UCVXSettings::Get();
	TSharedPtr<FCVXTask> Tasks[UE_ARRAY_COUNT(TaskKinds)];
};

void SaveWithoutEnd(uint32 Seed, const FForkedProgram::FTell& Tell)
{
	FLoopPump Pump;
	for (FSaver Saver(Seed, Tell);;)
	{
		Saver.SaveAll();
		Pump.Tick();
	}
}

/** What the next start finds. It finds no fault. */
void Restore(const FForkedProgram::FTell& Tell)
{
	FLogCapture Log;
	const FLoopPump Pump;
	FCVXTaskManager::Get().ReleaseTasks();
	FCVXTaskManager::Get().RestoreSessions();
	FCounts Found;
	for (const EKept Kept : TaskKinds)
	{
		if (const TSharedPtr<FCVXTask> Task = FCVXTaskManager::Get().FindTask(IdOf(Kept)))
		{
			StoredTask::ExpectWhole(*Task);
			Found.Of[Kept] = StoredTask::Count(*Task);
			Found.Of[DelegationsOf(Kept)] = CountDelegations(*Task);
		}
	}
	Found.Of[Settings] = UCVXSettings::Get()->MaxMessagesInView;
	for (const int32 Count : Found.Of)
	{
		Tell(Count);
	}
	for (const FLogCapture::FLine& Line : Log.Lines())
	{
		EXPECT_GT(Line.Verbosity, ELogVerbosity::Warning) << TCHAR_TO_UTF8(*Line.Text);
	}
}

/** Lets a program save until it has told of some saves, and a little longer. @return how many it told of. */
int32 RunAndKill(std::mt19937& Random, FCounts& OnDisk)
{
	const uint32 Seed = Random();
	FForkedProgram Program([Seed](const FForkedProgram::FTell& Tell) { SaveWithoutEnd(Seed, Tell); });
	int32 Saves = 0;
	const auto Note = [&](int32 Told)
	{
		int32& Count = OnDisk.Of[Told % KeptCount];
		EXPECT_GE(Told / KeptCount, Count) << "it went on from an older state";
		Count = Told / KeptCount;
		// These are written with the task, if there are new ones.
		Saves += Told % KeptCount == ThrottledDelegations ? 0 : 1;
	};
	const int32 Enough = Random() % MaxSavesToAKill;
	for (int32 Heard = 0; Heard < Enough; ++Heard)
	{
		const std::optional<int32> Told = Program.Hear();
		if (!Told)
		{
			ADD_FAILURE() << "it ended by itself";
			return Saves;
		}
		Note(*Told);
	}
	for (uint32 Turns = Random() % 2000; Turns > 0; --Turns)
	{
		(void)::sched_yield();
	}
	Program.Kill();
	while (const std::optional<int32> Told = Program.Hear())
	{
		Note(*Told);
	}
	return Saves;
}

TEST(CVXKilledProgram, WhateverWasSavedIsThereAfterAKillAtAnyMoment)
{
	const FTempProject Project;
	const uint32 Seed = std::random_device()();
	SCOPED_TRACE(testing::Message() << "seed " << Seed);
	std::mt19937 Random(Seed);
	FCounts OnDisk;
	for (int32 Saves = 0; Saves < SavesInAll && !testing::Test::HasFailure();)
	{
		Saves += FMath::Max(1, RunAndKill(Random, OnDisk));
		FForkedProgram NextStart(Restore);
		for (int32 Kept = 0; Kept < KeptCount; ++Kept)
		{
			EXPECT_GE(NextStart.Hear().value_or(-1), OnDisk.Of[Kept])
				<< "of " << Kept << " after " << Saves << " saves";
		}
		EXPECT_TRUE(NextStart.Finish()) << "after " << Saves << " saves";
	}
}
} // namespace
