#pragma once

#include "Agent/Loop/CVXAgentLoop.h"
#include "Agent/Tasks/CVXTodoList.h"

/** One conversation: an agent loop, a plan and an identity. Game thread. */
class FCVXTask : public TSharedFromThis<FCVXTask>
{
public:
	/** @param InProvider may be null. */
	FCVXTask(const FString& InTaskId, const FString& InTitle, TUniquePtr<ICVXProvider> InProvider,
		const FCVXAgentProfile& Profile);

	/** 0 for a top-level task. */
	int32 NestingDepth = 0;
	bool bIsSubTask = false;
	/** Empty for a top-level task. */
	FString ParentTaskId;

	const FString& GetTaskId() const { return TaskId; }
	const FString& GetTitle() const { return Title; }
	void SetTitle(const FString& NewTitle) { Title = NewTitle; }
	ECVXTaskState GetState() const { return AgentLoop->GetState(); }
	const FString& GetAgentProfileName() const { return AgentProfileName; }
	void SetAgentProfileName(const FString& Name) { AgentProfileName = Name; }
	/** The result of a finished sub-task. */
	const FString& GetCompletionMessage() const { return CompletionMessage; }
	void SetCompletionMessage(const FString& Message) { CompletionMessage = Message; }
	/** UTC. */
	FDateTime GetCreatedAt() const { return CreatedAt; }
	void SetCreatedAt(FDateTime Time) { CreatedAt = Time; }
	/** Notes that what is stored of the task is what it holds now. */
	void NoteRestored() { Restored = GetMark(); }
	/** Whether it holds anything else than when it was restored. */
	bool HasNews() const;
	FCVXTodoList& GetTodoList() { return TodoList; }
	const FCVXTodoList& GetTodoList() const { return TodoList; }
	FCVXAgentLoop* GetAgentLoop() const { return AgentLoop.Get(); }
	TSharedPtr<FCVXAgentLoop> GetAgentLoopShared() const { return AgentLoop; }

private:
	/** What tells one stage of a conversation from another. */
	struct FMark
	{
		int32 MessageCount = 0;
		FString LastMessageId;
		FString Todo;
	};
	FMark GetMark() const;

	FCVXTodoList TodoList;
	FString TaskId;
	FString Title;
	FString AgentProfileName;
	FDateTime CreatedAt;
	FString CompletionMessage;
	FMark Restored;
	TSharedPtr<FCVXAgentLoop> AgentLoop;
};
