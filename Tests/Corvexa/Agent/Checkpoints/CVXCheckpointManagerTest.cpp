#include "Agent/Checkpoints/CVXCheckpointManager.h"

#include "Agent/Checkpoints/CVXCheckpointFile.h"
#include "Agent/Tasks/CVXDelegationHistory.h"
#include "Agent/Tasks/CVXTaskManager.h"
#include "Core/CVXSettings.h"
#include "HAL/FileManager.h"
#include "Misc/Compression.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Support/FaultPlan.h"
#include "Support/HostTypePrinting.h"
#include "Support/LoopPump.h"
#include "Support/TempProject.h"
#include "Support/TestClock.h"

#include <gtest/gtest.h>

namespace
{
/** A project with one conversation in it. */
class CVXCheckpointManagerTest : public testing::Test
{
protected:
	CVXCheckpointManagerTest()
	{
		FCVXTaskManager::Get().ReleaseTasks();
		Task = MakeTask(TaskId);
	}
	~CVXCheckpointManagerTest() override
	{
		FCVXTaskManager::Get().ReleaseTasks();
		FCVXCheckpointManager::Get().DeleteCheckpoints(TaskId);
	}

	static TSharedPtr<FCVXTask> MakeTask(const FString& Id)
	{
		FCVXAgentProfile Profile;
		Profile.ProfileName = TEXT("Coder");
		return MakeShared<FCVXTask>(Id, TEXT("Door"), nullptr, Profile);
	}
	FCVXContextManager& Context() const { return Task->GetAgentLoop()->GetContextManager(); }
	void AddMessages() const
	{
		FCVXMessage Hidden = FCVXMessage::MakeUserText(TEXT("again \u00e4 \U0001F6AA"));
		Hidden.MessageId = TEXT("auto-retry-2");
		Context().AddMessage(Hidden);
		FCVXMessage Answer;
		Answer.Role = ECVXMessageRole::Assistant;
		Answer.AgentName = TEXT("Coder");
		Answer.ReasoningContent = TEXT("hm");
		FCVXContentBlock Call;
		Call.Type = TEXT("tool_use");
		Call.ToolUseId = TEXT("a");
		Call.ToolName = TEXT("look");
		Call.InputJson = TEXT("{\"path\":\"x\"}");
		Answer.Content.Add(Call);
		Context().AddMessage(Answer);
		FCVXMessage Results;
		Results.Role = ECVXMessageRole::Tool;
		FCVXContentBlock Result;
		Result.Type = TEXT("tool_result");
		Result.ToolUseId = TEXT("a");
		Result.ToolName = TEXT("look");
		Result.ToolResultContent = TEXT("seen");
		Result.bIsError = true;
		Results.Content.Add(Result);
		FCVXContentBlock Image;
		Image.Type = TEXT("image");
		Image.ImageBase64 = TEXT("aGk=");
		Image.ImageMediaType = TEXT("image/png");
		Results.Content.Add(Image);
		Context().AddMessage(Results);
	}
	void Save(bool bCompress = true, int32 Max = 20) const
	{
		FCVXCheckpointManager::Get().SaveCheckpointDirect(*Task, Max, bCompress);
	}
	TArray<FString> List() const { return FCVXCheckpointManager::Get().ListCheckpoints(Task->GetTaskId()); }
	FString PathOf(const TCHAR* Name) const
	{
		return FPaths::Combine(FCVXCheckpointManager::GetCheckpointDir(Task->GetTaskId()), Name);
	}

	const FString TaskId = TEXT("0123456789abcdef0123456789abcdef");
	FTempProject Project;
	FLoopPump Pump;
	TSharedPtr<FCVXTask> Task;
};

TEST_F(CVXCheckpointManagerTest, AConversationComesBackAsItWas)
{
	AddMessages();
	Task->ParentTaskId = TEXT("parent");
	Task->bIsSubTask = true;
	Task->NestingDepth = 2;
	Task->GetTodoList().UpdateFromJson(TEXT("[{\"id\":\"1\",\"content\":\"Hinge\",\"status\":\"in_progress\"}]"));
	for (const bool bCompress : {true, false})
	{
		Save(bCompress);
		const TSharedPtr<FCVXTask> Back = MakeTask(Task->GetTaskId());
		Back->SetTitle(TEXT("Restored"));
		ASSERT_TRUE(FCVXCheckpointManager::Get().RestoreCheckpoint(*Back, List().Last()));
		EXPECT_EQ(Back->GetTitle(), TEXT("Door"));
		EXPECT_EQ(Back->ParentTaskId, TEXT("parent"));
		EXPECT_TRUE(Back->bIsSubTask);
		EXPECT_EQ(Back->NestingDepth, 2);
		EXPECT_EQ(Back->GetTodoList().ToJson(), Task->GetTodoList().ToJson());
		EXPECT_LE(FMath::Abs((Back->GetCreatedAt() - Task->GetCreatedAt()).GetTotalMilliseconds()), 1.0);
		const TArray<FCVXMessage>& Before = Context().GetHistory();
		const TArray<FCVXMessage>& After = Back->GetAgentLoop()->GetContextManager().GetHistory();
		ASSERT_EQ(After.Num(), 3);
		EXPECT_EQ(After[0].MessageId, TEXT("auto-retry-2"));
		EXPECT_EQ(After[0].GetFirstTextContent(), Before[0].GetFirstTextContent());
		EXPECT_EQ(After[1].ReasoningContent, TEXT("hm"));
		EXPECT_EQ(After[1].AgentName, TEXT("Coder"));
		EXPECT_EQ(After[1].Content[0].InputJson, Before[1].Content[0].InputJson);
		EXPECT_TRUE(After[2].Content[0].bIsError);
		EXPECT_EQ(After[2].Content[1].ImageBase64, TEXT("aGk="));
	}
	EXPECT_TRUE(List()[0].EndsWith(TEXT("checkpoint_0000.json.gz")));
	EXPECT_TRUE(List()[1].EndsWith(TEXT("checkpoint_0001.json")));
}

TEST_F(CVXCheckpointManagerTest, OnlyTheNewestFilesAreKept)
{
	AddMessages();
	for (int32 Index = 0; Index < 5; ++Index)
	{
		Save(Index % 2 == 0, 3);
	}
	ASSERT_EQ(List().Num(), 3);
	EXPECT_TRUE(List()[0].EndsWith(TEXT("checkpoint_0002.json.gz")));
	EXPECT_TRUE(List()[2].EndsWith(TEXT("checkpoint_0004.json.gz")));
	FFileHelper::SaveStringToFile(TEXT("{}"), *PathOf(TEXT("checkpoint_0004.json")));
	EXPECT_EQ(List().Num(), 3) << "both forms of one checkpoint count once";

	UCVXSettings::Get()->MaxCheckpointStorageMB = 1;
	TArray<uint8> Large;
	Large.SetNumZeroed(2 << 20);
	FFileHelper::SaveArrayToFile(Large, *PathOf(TEXT("checkpoint_0000.json")));
	FCVXCheckpointManager::Get().EnforceDiskBudget();
	int64 Sum = 0;
	for (const FString& Path : List())
	{
		Sum += IFileManager::Get().FileSize(*Path);
	}
	EXPECT_LE(Sum, 1 << 20);
	FCVXCheckpointManager::Get().DeleteCheckpoints(Task->GetTaskId());
	FCVXCheckpointManager::Get().DeleteCheckpoints(Task->GetTaskId());
	EXPECT_TRUE(List().IsEmpty());
}

TEST_F(CVXCheckpointManagerTest, SavesOfOneTaskKeepThreeSecondsBetweenThem)
{
	FTestClock Clock;
	AddMessages();
	FCVXCheckpointManager& Manager = FCVXCheckpointManager::Get();
	Manager.SaveCheckpoint(*Task);
	Clock.Advance(2.9);
	Manager.SaveCheckpoint(*Task);
	EXPECT_EQ(List().Num(), 1);
	Clock.Advance(0.2);
	Manager.SaveCheckpoint(*Task);
	EXPECT_EQ(List().Num(), 2);
	UCVXSettings::Get()->bEnableCheckpoints = false;
	Clock.Advance(10.0);
	Manager.SaveCheckpoint(*Task);
	EXPECT_EQ(List().Num(), 2);
}

TEST_F(CVXCheckpointManagerTest, ForeignAndDamagedFilesAreReadAsFarAsTheyMakeSense)
{
	const FString Json =
		TEXT("{\"messages\":[{\"role\":\"USER\",\"content\":[{\"type\":\"text\",\"text\":\"hi\"}]},{\"role\":"
			 "\"user\",\"content\":[]},{\"role\":\"ghost\"},7]}");
	const auto Restore = [&](const TCHAR* Name)
	{ return FCVXCheckpointManager::Get().RestoreCheckpoint(*Task, PathOf(Name)); };
	FString Text;
	IFileManager::Get().MakeDirectory(*FPaths::GetPath(PathOf(TEXT("x"))), true);
	FFileHelper::SaveStringToFile(Json, *PathOf(TEXT("checkpoint_0001.json")));
	EXPECT_TRUE(Restore(TEXT("checkpoint_0001.json")));
	ASSERT_EQ(Context().GetHistory().Num(), 1);
	EXPECT_EQ(Context().GetHistory()[0].Role, ECVXMessageRole::User);
	EXPECT_EQ(Context().GetHistory()[0].MessageId.Len(), 32);

	// A true gzip stream without the size in front.
	const FTCHARToUTF8 Utf8(*Json, Json.Len());
	TArray<uint8> Bytes;
	int32 Size = FCompression::CompressMemoryBound(NAME_Gzip, Utf8.Length());
	Bytes.SetNumUninitialized(Size);
	ASSERT_TRUE(FCompression::CompressMemory(NAME_Gzip, Bytes.GetData(), Size, Utf8.Get(), Utf8.Length()));
	Bytes.SetNum(Size);
	FFileHelper::SaveArrayToFile(Bytes, *PathOf(TEXT("checkpoint_0002.json.gz")));
	EXPECT_TRUE(Restore(TEXT("checkpoint_0002.json.gz")));

	// Every truncation and every flipped byte gives a conversation or a refusal, never more.
	for (int32 Index = 0; Index < Bytes.Num(); ++Index)
	{
		TArray<uint8> Damaged(Bytes.GetData(), Index);
		FFileHelper::SaveArrayToFile(Damaged, *PathOf(TEXT("checkpoint_0003.json.gz")));
		EXPECT_FALSE(Restore(TEXT("checkpoint_0003.json.gz"))) << Index;
		Damaged = Bytes;
		Damaged[Index] ^= 0x41;
		FFileHelper::SaveArrayToFile(Damaged, *PathOf(TEXT("checkpoint_0003.json.gz")));
		static_cast<void>(Restore(TEXT("checkpoint_0003.json.gz")));
	}
	FFileHelper::SaveStringToFile(Json, *PathOf(TEXT("checkpoint_0003.json")));
	FFileHelper::SaveArrayToFile({1, 2, 3}, *PathOf(TEXT("checkpoint_0003.json.gz")));
	EXPECT_TRUE(Restore(TEXT("checkpoint_0003.json.gz"))) << "the plain form stands in";
	FFileHelper::SaveStringToFile(TEXT("{\"messages\":[{"), *PathOf(TEXT("checkpoint_0004.json")));
	EXPECT_FALSE(Restore(TEXT("checkpoint_0004.json")));
	EXPECT_TRUE(FFileHelper::LoadFileToString(Text, *PathOf(TEXT("checkpoint_0004.json.corrupted"))));
}

TEST_F(CVXCheckpointManagerTest, TheNextStartBringsTheNewestReadableConversationBack)
{
	AddMessages();
	Save();
	Save();
	FFileHelper::SaveStringToFile(TEXT("not a checkpoint"), *PathOf(TEXT("checkpoint_0002.json.gz")));
	IFileManager::Get().MakeDirectory(*FPaths::Combine(FCVXCheckpointManager::GetTasksDir(), TEXT("empty")), true);
	FCVXTaskManager& Manager = FCVXTaskManager::Get();
	Manager.RestoreSessions();
	ASSERT_EQ(Manager.GetAllTasks().Num(), 1);
	const TSharedPtr<FCVXTask> Back = Manager.GetAllTasks()[0];
	EXPECT_EQ(Back->GetTaskId(), Task->GetTaskId());
	EXPECT_EQ(Back->GetAgentLoop()->GetContextManager().GetHistory().Num(), 3);
	EXPECT_EQ(Back->GetAgentLoop()->GetAgentProfileName(), TEXT("Coder"));
	EXPECT_EQ(Back->GetState(), ECVXTaskState::Idle);
	EXPECT_FALSE(Manager.GetActiveTask());
	Manager.RestoreSessions();
	EXPECT_EQ(Manager.GetAllTasks().Num(), 1);
	Manager.SaveAllCheckpoints();
	EXPECT_EQ(List().Num(), 3) << "it has not spoken since";
	Back->GetAgentLoop()->GetContextManager().AddMessage(FCVXMessage::MakeUserText(TEXT("Go on")));
	Manager.SaveAllCheckpoints();
	EXPECT_EQ(List().Num(), 4);
	Manager.RemoveTask(Task->GetTaskId());
	EXPECT_FALSE(IFileManager::Get().DirectoryExists(*FPaths::GetPath(PathOf(TEXT("x")))));
}
TEST_F(CVXCheckpointManagerTest, WhatIsSaidTooSoonAfterASaveIsSavedOnceTheIntervalIsOver)
{
	FTestClock Clock;
	FCVXCheckpointManager& Manager = FCVXCheckpointManager::Get();
	const auto Say = [&](const TCHAR* Text)
	{
		Context().AddMessage(FCVXMessage::MakeUserText(Text));
		Manager.SaveCheckpoint(*Task);
	};
	const auto Wait = [&](double Seconds)
	{
		Clock.Advance(Seconds);
		Pump.Tick();
	};
	Say(TEXT("one"));
	ASSERT_EQ(List().Num(), 1);
	Wait(1.0);
	Say(TEXT("two"));
	Say(TEXT("three"));
	Wait(1.9);
	EXPECT_EQ(List().Num(), 1);
	Wait(0.2);
	ASSERT_EQ(List().Num(), 2);
	const TSharedPtr<FCVXTask> Back = MakeTask(Task->GetTaskId());
	ASSERT_TRUE(Manager.RestoreCheckpoint(*Back, List().Last()));
	EXPECT_EQ(Back->GetAgentLoop()->GetContextManager().GetHistory().Last().GetFirstTextContent(), TEXT("three"));
	for (int32 Turn = 0; Turn < 10; ++Turn)
	{
		Wait(1.0);
	}
	EXPECT_EQ(List().Num(), 2) << "nothing new was said";

	Say(TEXT("four"));
	ASSERT_EQ(List().Num(), 3);
	Say(TEXT("five"));
	Manager.DeleteCheckpoints(Task->GetTaskId());
	Wait(4.0);
	EXPECT_TRUE(List().IsEmpty()) << "what was deleted doesn't come back";
	Say(TEXT("six"));
	Say(TEXT("seven"));
	Task.Reset();
	Wait(4.0);
	EXPECT_EQ(Manager.ListCheckpoints(Back->GetTaskId()).Num(), 1) << "the task is gone";
}

TEST_F(CVXCheckpointManagerTest, AFailedSaveIsTriedAgainWithTheNextMessageAndByItself)
{
	FTestClock Clock;
	FCVXCheckpointManager& Manager = FCVXCheckpointManager::Get();
	AddMessages();
	const auto TryInVain = [&](TFunctionRef<void()> Try)
	{
		const FFaultPlan Plan(EHostFault::File, 1, FFaultPlan::EHow::FromThereOn, ENOSPC);
		Try();
		EXPECT_TRUE(List().IsEmpty());
		EXPECT_GT(Plan.Failures(), 0);
	};
	TryInVain([&] { Manager.SaveCheckpoint(*Task); });
	Manager.SaveCheckpoint(*Task);
	EXPECT_EQ(List().Num(), 1) << "a failed save isn't one";

	Manager.DeleteCheckpoints(Task->GetTaskId());
	TryInVain([&] { Manager.SaveCheckpoint(*Task); });
	const auto TickAfter = [&](double Seconds)
	{
		Clock.Advance(Seconds);
		Pump.Tick();
	};
	TryInVain([&] { TickAfter(3.1); });
	TickAfter(3.1);
	EXPECT_TRUE(List().IsEmpty()) << "the interval has doubled";
	TickAfter(3.1);
	EXPECT_EQ(List().Num(), 1);
}

TEST_F(CVXCheckpointManagerTest, NumbersGoOnWhateverElseLiesThere)
{
	AddMessages();
	for (const TCHAR* Name :
		{TEXT("checkpoint_0007.json"), TEXT("checkpoint_0007.json.gz"), TEXT("checkpoint_9998.json"),
			TEXT("checkpoint_.json"), TEXT("other_20000.json"), TEXT("checkpoint_9998.json.corrupted")})
	{
		FFileHelper::SaveStringToFile(TEXT("x"), *PathOf(Name));
	}
	for (int32 Index = 0; Index < 3; ++Index)
	{
		Save();
	}
	const TCHAR* Expected[] = {TEXT("checkpoint_0007.json.gz"), TEXT("checkpoint_9998.json"),
		TEXT("checkpoint_9999.json.gz"), TEXT("checkpoint_10000.json.gz"), TEXT("checkpoint_10001.json.gz")};
	ASSERT_EQ(List().Num(), UE_ARRAY_COUNT(Expected));
	for (int32 Index = 0; Index < List().Num(); ++Index)
	{
		EXPECT_EQ(FPaths::GetCleanFilename(List()[Index]), Expected[Index]);
	}
	IFileManager::Get().MakeDirectory(*PathOf(TEXT("checkpoint_10002.json.gz")));
	Save(true, 2);
	ASSERT_EQ(List().Num(), 2);
	EXPECT_TRUE(List().Last().EndsWith(TEXT("checkpoint_10003.json.gz"))) << "a directory has the number before";
	EXPECT_FALSE(IFileManager::Get().FileExists(*PathOf(TEXT("checkpoint_0007.json")))) << "both forms are pruned";
}

TEST_F(CVXCheckpointManagerTest, OnlyWhatATaskCanBeCalledIsDeleted)
{
	AddMessages();
	Save();
	for (const TCHAR* Id : {TEXT(""), TEXT("."), TEXT(".."), TEXT("../Tasks"), TEXT("..\\Tasks"), TEXT("missing")})
	{
		FCVXCheckpointManager::Get().DeleteCheckpoints(Id);
	}
	EXPECT_EQ(List().Num(), 1);
}

TEST_F(CVXCheckpointManagerTest, AForkIsOnDiskBeforeItSpeaks)
{
	FCVXTaskManager& Manager = FCVXTaskManager::Get();
	const TSharedPtr<FCVXTask> Source = Manager.CreateNewTask(TEXT("Source"));
	ASSERT_TRUE(Source);
	for (const TCHAR* Text : {TEXT("one"), TEXT("two"), TEXT("three")})
	{
		Source->GetAgentLoop()->GetContextManager().AddMessage(FCVXMessage::MakeUserText(Text));
	}
	const TSharedPtr<FCVXTask> Fork = Manager.ForkTask(Source->GetTaskId(), 2);
	const TArray<FString> Files = FCVXCheckpointManager::Get().ListCheckpoints(Fork->GetTaskId());
	ASSERT_EQ(Files.Num(), 1);
	ASSERT_TRUE(FCVXCheckpointManager::Get().RestoreCheckpoint(*Task, Files[0]));
	EXPECT_EQ(Context().GetHistory().Num(), 2);
	const TSharedPtr<FCVXTask> Empty = Manager.ForkTask(Source->GetTaskId(), 0);
	EXPECT_TRUE(FCVXCheckpointManager::Get().ListCheckpoints(Empty->GetTaskId()).IsEmpty());
}

TEST_F(CVXCheckpointManagerTest, TheEndSavesATaskWithItsDelegationsOnlyIfItHasNews)
{
	AddMessages();
	Save();
	const FString Delegations = PathOf(TEXT("delegations.json"));
	const auto Write = [&](const TCHAR* Result)
	{
		FCVXDelegationHistory::Get().Add(TEXT("another program"), TEXT("Coder"), TEXT("Hinge"), Result, false, false);
		EXPECT_TRUE(FCVXDelegationHistory::Get().Save(TEXT("another program"), Delegations));
	};
	const auto CountStored = [&]
	{
		EXPECT_TRUE(FCVXDelegationHistory::Get().Load(TEXT("probe"), Delegations));
		return FCVXDelegationHistory::Get().GetRecords(TEXT("probe")).Num();
	};
	Write(TEXT("one"));
	FCVXTaskManager& Manager = FCVXTaskManager::Get();
	Manager.RestoreSessions();
	Write(TEXT("two"));
	Manager.SaveAllCheckpoints();
	EXPECT_EQ(List().Num(), 1);
	EXPECT_EQ(CountStored(), 2) << "what another program has added since stays";
	const TSharedPtr<FCVXTask> Back = Manager.FindTask(Task->GetTaskId());
	Back->GetTodoList().UpdateFromJson(TEXT("[{\"id\":\"1\",\"content\":\"Hinge\",\"status\":\"pending\"}]"));
	Manager.SaveAllCheckpoints();
	EXPECT_EQ(List().Num(), 2) << "a changed plan is news";
	EXPECT_EQ(CountStored(), 1);
	Manager.ReleaseTasks();
	Manager.RestoreSessions();
	FCVXContextManager& Restored = Manager.FindTask(Task->GetTaskId())->GetAgentLoop()->GetContextManager();
	Manager.FindTask(Task->GetTaskId())->GetAgentLoop()->ClearHistory();
	for (const TCHAR* Text : {TEXT("a"), TEXT("b"), TEXT("c")})
	{
		Restored.AddMessage(FCVXMessage::MakeUserText(Text));
	}
	Manager.SaveAllCheckpoints();
	EXPECT_EQ(List().Num(), 3) << "as many messages as before, but others";
	Manager.ReleaseTasks();
}
} // namespace
