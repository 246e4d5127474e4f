#include "Agent/Checkpoints/CVXCheckpointManager.h"
#include "Agent/Tasks/CVXTaskManager.h"
#include "Core/CVXSettings.h"
#include "Corvexa/Agent/Checkpoints/StoredTask.h"
#include "Misc/Paths.h"
#include "Support/ForkedProgram.h"
#include "Support/HostTypePrinting.h"
#include "Support/LogCapture.h"
#include "Support/LoopPump.h"
#include "Support/TempProject.h"
#include "Support/TestClock.h"

#include <gtest/gtest.h>

namespace
{
constexpr int32 Programs = 2;
constexpr int32 Saves = 30;

const TCHAR* Names[Programs] = {TEXT("left"), TEXT("right")};
const TCHAR* OwnIds[Programs] = {TEXT("0000000000000000000000000000000a"), TEXT("0000000000000000000000000000000b")};
const TCHAR* SharedId = TEXT("0000000000000000000000000000000c");

using FBody = std::function<void(int32 Program)>;

/** Runs the body in several programs at once, each with a host of its own, and then one more that looks at what is
 * there. */
void RunTogether(const FBody& Body, const std::function<void()>& LookAfterwards)
{
	const FForkGate Gate;
	const auto Start = [&](int32 Program)
	{
		return std::make_unique<FForkedProgram>(
			[&, Program](const FForkedProgram::FTell& Tell)
			{
				FLoopPump Pump;
				Tell(Program);
				Gate.Pass();
				Body(Program);
			});
	};
	const std::unique_ptr<FForkedProgram> Both[Programs] = {Start(0), Start(1)};
	for (const std::unique_ptr<FForkedProgram>& Program : Both)
	{
		ASSERT_TRUE(Program->Hear());
	}
	Gate.Open(Programs);
	for (const std::unique_ptr<FForkedProgram>& Program : Both)
	{
		EXPECT_TRUE(Program->Finish());
	}
	FForkedProgram Afterwards(
		[&](const FForkedProgram::FTell&)
		{
			FLogCapture Log;
			const FLoopPump Pump;
			LookAfterwards();
			for (const FLogCapture::FLine& Line : Log.Lines())
			{
				EXPECT_GT(Line.Verbosity, ELogVerbosity::Warning) << TCHAR_TO_UTF8(*Line.Text);
			}
		});
	EXPECT_TRUE(Afterwards.Finish());
}

/** What the last message of each stored checkpoint says, after checking that each is whole. */
TArray<FString> ReadAll(const FString& TaskId)
{
	TArray<FString> Words;
	for (const FString& Path : FCVXCheckpointManager::Get().ListCheckpoints(TaskId))
	{
		const TSharedRef<FCVXTask> Task = StoredTask::Make(TaskId);
		EXPECT_TRUE(FCVXCheckpointManager::Get().RestoreCheckpoint(*Task, Path)) << TCHAR_TO_UTF8(*Path);
		StoredTask::ExpectWhole(*Task);
		Words.Add(StoredTask::LastWords(*Task));
	}
	return Words;
}

TEST(CVXTwoPrograms, NoSaveOfATaskThatBothHaveOpenIsOverwritten)
{
	const FTempProject Project;
	RunTogether(
		[](int32 Program)
		{
			std::mt19937 Random(Program);
			const TSharedRef<FCVXTask> Own = StoredTask::Make(OwnIds[Program]);
			const TSharedRef<FCVXTask> Shared = StoredTask::Make(SharedId);
			for (int32 Save = 0; Save < Saves; ++Save)
			{
				StoredTask::Speak(*Own, Random, Names[Program]);
				StoredTask::Speak(*Shared, Random, Names[Program]);
				// Some files are compressed and some plain: the number counts, not the name.
				FCVXCheckpointManager::Get().SaveCheckpointDirect(*Shared, 1000, Random() % 2 == 0);
				FCVXCheckpointManager::Get().SaveCheckpointDirect(*Own, 3, true);
			}
		},
		[]
		{
			const TArray<FString> Words = ReadAll(SharedId);
			EXPECT_EQ(Words.Num(), Programs * Saves);
			for (int32 Program = 0; Program < Programs; ++Program)
			{
				for (int32 Save = 1; Save <= Saves; ++Save)
				{
					EXPECT_TRUE(Words.Contains(FString::Printf(TEXT("%d %s"), Save, Names[Program]))) << Save;
				}
				const TArray<FString> Own = ReadAll(OwnIds[Program]);
				ASSERT_EQ(Own.Num(), 3);
				EXPECT_EQ(Own.Last(), FString::Printf(TEXT("%d %s"), Saves, Names[Program]));
			}
		});
}

TEST(CVXTwoPrograms, PruningByBothLeavesTheNewestOfEachTask)
{
	const FTempProject Project;
	RunTogether(
		[](int32 Program)
		{
			FTestClock Clock;
			std::mt19937 Random(Program);
			UCVXSettings::Get()->MaxCheckpointsPerTask = 4;
			UCVXSettings::Get()->MaxCheckpointStorageMB = 1;
			const TSharedRef<FCVXTask> Own = StoredTask::Make(OwnIds[Program]);
			const TSharedRef<FCVXTask> Shared = StoredTask::Make(SharedId);
			for (int32 Message = 0; Message < 150; ++Message)
			{
				StoredTask::Speak(*Own, Random, Names[Program]);
				StoredTask::Speak(*Shared, Random, Names[Program]);
			}
			for (int32 Save = 0; Save < Saves; ++Save)
			{
				Clock.Advance(FCVXCheckpointManager::MinSaveIntervalSeconds + 0.1);
				for (const TSharedRef<FCVXTask>& Task : {Own, Shared})
				{
					StoredTask::Speak(*Task, Random, Names[Program]);
					FCVXCheckpointManager::Get().SaveCheckpoint(*Task);
				}
				EXPECT_FALSE(FCVXCheckpointManager::Get().ListCheckpoints(SharedId).IsEmpty());
				FCVXCheckpointManager::Get().EnforceDiskBudget();
			}
		},
		[]
		{
			for (int32 Program = 0; Program < Programs; ++Program)
			{
				const TArray<FString> Own = ReadAll(OwnIds[Program]);
				ASSERT_FALSE(Own.IsEmpty());
				EXPECT_LE(Own.Num(), 4);
				EXPECT_EQ(Own.Last(), FString::Printf(TEXT("%d %s"), 150 + Saves, Names[Program]));
			}
			const TArray<FString> Shared = ReadAll(SharedId);
			ASSERT_FALSE(Shared.IsEmpty());
			// Whoever came last left the newest; the other may have been a few saves behind.
			EXPECT_TRUE(Shared.Last().StartsWith(FString::Printf(TEXT("%d "), 150 + Saves)));
			FCVXTaskManager::Get().ReleaseTasks();
			FCVXTaskManager::Get().RestoreSessions();
			EXPECT_EQ(FCVXTaskManager::Get().GetAllTasks().Num(), Programs + 1);
		});
}

TEST(CVXTwoPrograms, NoSettingOfEitherIsLost)
{
	const FTempProject Project;
	Project.Write("Config/DefaultEditor.ini", "; mine\n[/Script/Corvexa.CVXSettings]\nMaxAgentTurns=33\n");
	RunTogether(
		[](int32 Program)
		{
			UCVXSettings& Settings = *UCVXSettings::Get();
			for (int32 Save = 1; Save <= Saves; ++Save)
			{
				(Program == 0 ? Settings.MaxMessagesInView : Settings.AutoRAGTokenBudget) = 1000 + Save;
				FCVXAutoApprovalRule Rule;
				Rule.ToolName = FString::Printf(TEXT("%s_%d"), Names[Program], Save);
				Settings.AutoApprovalRules.Add(Rule);
				Settings.SaveToDefaultConfig();
			}
		},
		[]
		{
			const UCVXSettings& Settings = *UCVXSettings::Get();
			EXPECT_EQ(Settings.MaxMessagesInView, 1000 + Saves);
			EXPECT_EQ(Settings.AutoRAGTokenBudget, 1000 + Saves);
			EXPECT_EQ(Settings.MaxAgentTurns, 33);
			EXPECT_EQ(Settings.AutoApprovalRules.Num(), Programs * Saves);
			for (int32 Program = 0; Program < Programs; ++Program)
			{
				for (int32 Save = 1; Save <= Saves; ++Save)
				{
					const FString Name = FString::Printf(TEXT("%s_%d"), Names[Program], Save);
					EXPECT_TRUE(Settings.AutoApprovalRules.ContainsByPredicate(
						[&](const FCVXAutoApprovalRule& Rule) { return Rule.ToolName.Equals(Name); }))
						<< TCHAR_TO_UTF8(*Name);
				}
			}
		});
	EXPECT_EQ(Project.Read("Config/DefaultEditor.ini").rfind("; mine\n", 0), 0u);
}
} // namespace
