#pragma once

#include "CoreMinimal.h"
#include "Delegates/Delegate.h"

/** Where one item of a plan stands. */
enum class ECVXTodoStatus : uint8
{
	Pending = 0,
	InProgress = 1,
	Completed = 2,
	Cancelled = 3,
};

/** One step of a plan. */
struct FCVXTodoItem
{
	FString Id;
	FString Content;
	ECVXTodoStatus Status = ECVXTodoStatus::Pending;
};

/** The plan of one task, written whole by the model. Game thread. */
class FCVXTodoList
{
public:
	DECLARE_MULTICAST_DELEGATE(FOnChanged);

	/** Fired after each change. */
	FOnChanged OnChanged;

	/** Replaces the whole list. @param Json an array of objects with "id", "content", "status"; any other text is
	 * ignored. */
	void UpdateFromJson(const FString& Json);

	/** The array that `UpdateFromJson` reads, pretty-printed. */
	FString ToJson() const;

	const TArray<FCVXTodoItem>& GetItems() const { return Items; }

	/** Whether an item is neither completed nor cancelled. */
	bool HasActiveItems() const;

	/** Items of that status. */
	int32 CountItems(ECVXTodoStatus Status) const;

	/** Completes what is pending or in progress: the sweep at the end of a task. */
	void MarkInProgressAsCompleted();

	static FString StatusToString(ECVXTodoStatus Status);

	/** Ignores case. @return `Pending` for any text that names no status. */
	static ECVXTodoStatus ParseStatus(const FString& Text);

	/** Whether an item of that status still wants work. */
	static bool IsOpen(ECVXTodoStatus Status)
	{
		return Status != ECVXTodoStatus::Completed && Status != ECVXTodoStatus::Cancelled;
	}

private:
	TArray<FCVXTodoItem> Items;
};
