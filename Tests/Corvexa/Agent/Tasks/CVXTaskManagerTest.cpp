#include "Agent/Tasks/CVXTaskManager.h"

#include "Agent/Checkpoints/CVXCheckpointManager.h"
#include "Core/CVXSettings.h"
#include "HAL/FileManager.h"
#include "Loopback/LoopbackServer.h"
#include "Support/HostTypePrinting.h"
#include "Support/LoopPump.h"
#include "Support/TempProject.h"

#include <gtest/gtest.h>

namespace
{
/** A project whose model is a server that never answers, and what the manager told of its tasks. */
class CVXTaskManager : public testing::Test
{
protected:
	CVXTaskManager()
	{
		FCVXProviderProfile& Vendor = Settings().ProviderProfiles[0];
		Vendor.BaseURL = FString(Server.Url("").c_str());
		Vendor.ApiKeyEnvVar = TEXT("sk-not-a-real-key");
		Settings().ActiveProviderProfile = Vendor.ProfileName;
		for (FCVXAgentProfile& Agent : Settings().AgentProfiles)
		{
			Agent.ProviderProfileName = Vendor.ProfileName;
		}
		Settings().ActiveAgentProfile = TEXT("Coder");
		Manager.OnTaskCreated.AddLambda(
			[this](TSharedPtr<FCVXTask> Task) { Told.Add(TEXT("created ") + Task->GetTitle()); });
		Manager.OnActiveTaskChanged.AddLambda([this](TSharedPtr<FCVXTask> Task)
			{ Told.Add(TEXT("active ") + (Task ? Task->GetTitle() : TEXT("none"))); });
	}
	~CVXTaskManager() override
	{
		Manager.OnTaskCreated.Clear();
		Manager.OnActiveTaskChanged.Clear();
		Manager.ReleaseTasks();
	}

	static UCVXSettings& Settings() { return *UCVXSettings::Get(); }
	FString TakeTold()
	{
		const FString Text = FString::Join(Told, TEXT("|"));
		Told.Empty();
		return Text;
	}
	static bool IsStored(const FCVXTask& Task)
	{
		return IFileManager::Get().DirectoryExists(*FCVXCheckpointManager::GetCheckpointDir(Task.GetTaskId()));
	}

	FTempProject Project;
	FLoopPump Pump;
	FLoopbackServer Server;
	FCVXTaskManager& Manager = FCVXTaskManager::Get();
	TArray<FString> Told;
};

TEST_F(CVXTaskManager, ANewTaskBecomesActiveWithTheTurnLimitOfTheSettings)
{
	Settings().MaxAgentTurns = 0;
	const TSharedPtr<FCVXTask> Free = Manager.CreateNewTask(TEXT("Free"));
	ASSERT_TRUE(Free);
	EXPECT_EQ(Free->GetAgentLoop()->MaxTurns, 0);
	EXPECT_EQ(TakeTold(), TEXT("created Free|active Free"));
	EXPECT_EQ(Settings().LastActiveTaskId, Free->GetTaskId());
	Settings().MaxAgentTurns = 7;
	const TSharedPtr<FCVXTask> Bound = Manager.CreateNewTask(TEXT("Bound"));
	EXPECT_EQ(Bound->GetAgentLoop()->MaxTurns, 7);
	Settings().AgentProfiles.Empty();
	EXPECT_FALSE(Manager.CreateNewTask(TEXT("Nobody")));
	EXPECT_FALSE(Manager.ForkTask(Free->GetTaskId(), 1));
	EXPECT_EQ(Manager.GetAllTasks().Num(), 2);
}

TEST_F(CVXTaskManager, AForkTakesMessagesAndTheActiveAgentButNotThePlan)
{
	const TSharedPtr<FCVXTask> Source = Manager.CreateNewTask(TEXT("Door"));
	for (const TCHAR* Text : {TEXT("one"), TEXT("two"), TEXT("three")})
	{
		Source->GetAgentLoop()->GetContextManager().AddMessage(FCVXMessage::MakeUserText(Text));
	}
	Source->GetTodoList().UpdateFromJson(TEXT("[{\"id\":\"1\",\"content\":\"a\",\"status\":\"pending\"}]"));
	Settings().ActiveAgentProfile = TEXT("Architect");
	TakeTold();
	const struct
	{
		int32 Wanted;
		int32 Copied;
	} Cases[] = {{2, 2}, {99, 3}, {0, 0}, {-1, 0}};
	for (const auto& Case : Cases)
	{
		const TSharedPtr<FCVXTask> Fork = Manager.ForkTask(Source->GetTaskId(), Case.Wanted);
		ASSERT_TRUE(Fork);
		EXPECT_EQ(TakeTold(), TEXT("created Fork of Door"));
		EXPECT_EQ(Fork->GetAgentLoop()->GetContextManager().GetHistory().Num(), Case.Copied) << Case.Wanted;
		EXPECT_EQ(Fork->GetAgentProfileName(), TEXT("Architect"));
		EXPECT_TRUE(Fork->GetTodoList().GetItems().IsEmpty());
	}
	EXPECT_EQ(Manager.GetActiveTask(), Source);
	EXPECT_FALSE(Manager.ForkTask(TEXT("ghost"), 1));
}

TEST_F(CVXTaskManager, TheFirstSaveOfATaskHoldsItsFirstMessage)
{
	const TSharedPtr<FCVXTask> Task = Manager.CreateNewTask(TEXT("Door"));
	Task->GetAgentLoop()->SubmitUserMessage(TEXT("Build a door"));
	TArray<FString> Files;
	ASSERT_TRUE(Pump.Until(
		[&]
		{
			Files = FCVXCheckpointManager::Get().ListCheckpoints(Task->GetTaskId());
			return !Files.IsEmpty();
		}));
	FCVXTask Back(Task->GetTaskId(), TEXT("Back"), nullptr, FCVXAgentProfile());
	ASSERT_TRUE(FCVXCheckpointManager::Get().RestoreCheckpoint(Back, Files[0]));
	ASSERT_EQ(Back.GetAgentLoop()->GetContextManager().GetHistory().Num(), 1);
	EXPECT_EQ(Back.GetAgentLoop()->GetContextManager().GetHistory()[0].GetFirstTextContent(), TEXT("Build a door"));
}

TEST_F(CVXTaskManager, ARemovedTaskTakesItsSubAgentsAndWhatIsStoredOfThemAlong)
{
	const TSharedPtr<FCVXTask> Other = Manager.CreateNewTask(TEXT("Other"));
	const TSharedPtr<FCVXTask> Parent = Manager.CreateNewTask(TEXT("Parent"));
	const TSharedPtr<FCVXTask> Child =
		Manager.CreateSubTask(Parent, TEXT("Coder"), TEXT("Carve the door"), FString(), TEXT("d1"), 3);
	ASSERT_TRUE(Child);
	EXPECT_EQ(Child->GetAgentLoop()->MaxTurns, 5);
	EXPECT_EQ(Child->GetState(), ECVXTaskState::Streaming);
	EXPECT_EQ(Manager.GetActiveTask(), Child);
	FCVXCheckpointManager::Get().SaveCheckpointDirect(*Child, 3, true);
	Parent->GetAgentLoop()->GetContextManager().AddMessage(FCVXMessage::MakeUserText(TEXT("Go")));
	FCVXCheckpointManager::Get().SaveCheckpointDirect(*Parent, 3, true);
	FCVXCheckpointManager::Get().SaveCheckpointDirect(*Other, 3, true);
	TakeTold();

	Manager.RemoveTask(Parent->GetTaskId());
	EXPECT_EQ(Child->GetState(), ECVXTaskState::Cancelled);
	ASSERT_EQ(Manager.GetAllTasks().Num(), 1);
	EXPECT_EQ(Manager.GetActiveTask(), Other);
	EXPECT_TRUE(TakeTold().EndsWith(TEXT("active Other")));
	EXPECT_FALSE(IsStored(*Parent));
	EXPECT_FALSE(IsStored(*Child));
	EXPECT_TRUE(IsStored(*Other));
	// Its first message, told of before it was removed, is on its way to a save that must not come.
	const TSharedPtr<FCVXTask> Brief = Manager.CreateNewTask(TEXT("Brief"));
	Brief->GetAgentLoop()->SubmitUserMessage(TEXT("Go"));
	Manager.RemoveTask(Brief->GetTaskId());
	Pump.Tick();
	(void)FCVXCheckpointManager::Get().ListCheckpoints(Brief->GetTaskId());
	EXPECT_FALSE(IsStored(*Brief));
	TakeTold();
	Manager.RemoveTask(Other->GetTaskId());
	EXPECT_FALSE(Manager.GetActiveTask());
	EXPECT_EQ(TakeTold(), TEXT("active none"));
}

TEST_F(CVXTaskManager, ASubAgentThatCanNotBeMadeLeavesEverythingAsItWas)
{
	const TSharedPtr<FCVXTask> Parent = Manager.CreateNewTask(TEXT("Parent"));
	EXPECT_FALSE(Manager.CreateSubTask(Parent, TEXT("Ghost"), TEXT("Work"), FString(), TEXT("d1"), 30));
	Settings().ProviderProfiles.Empty();
	EXPECT_FALSE(Manager.CreateSubTask(Parent, TEXT("Coder"), TEXT("Work"), FString(), TEXT("d1"), 30));
	EXPECT_EQ(Manager.GetAllTasks().Num(), 1);
	EXPECT_EQ(Manager.GetActiveTask(), Parent);
}
} // namespace
