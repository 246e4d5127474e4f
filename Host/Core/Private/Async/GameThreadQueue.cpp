#include "GameThreadQueue.h"

#include "HAL/PlatformTime.h"

FGameThreadQueue& FGameThreadQueue::Get()
{
	static FGameThreadQueue Queue;
	return Queue;
}

void FGameThreadQueue::Post(TUniqueFunction<void()>&& Task)
{
	Waiting.fetch_add(1, std::memory_order_relaxed);
	FTaskNode* Node = new FTaskNode{MoveTemp(Task)};
	Node->Next = Incoming.load(std::memory_order_relaxed);
	// Sequentially consistent against `bWaiting`: either this thread sees the waiter or the waiter sees the task.
	while (!Incoming.compare_exchange_weak(Node->Next, Node))
	{
	}
	if (bWaiting.load())
	{
		Arrived.Trigger();
	}
}

void FGameThreadQueue::Wake()
{
	Arrived.Trigger();
}

void FGameThreadQueue::TakeIncoming()
{
	FTaskNode* Newest = Incoming.exchange(nullptr, std::memory_order_acquire);
	FTaskNode* Oldest = nullptr;
	while (Newest)
	{
		FTaskNode* Older = Exchange(Newest->Next, Oldest);
		Oldest = Exchange(Newest, Older);
	}
	while (Oldest)
	{
		FTaskNode* Node = Oldest;
		Oldest = Exchange(Node->Next, nullptr);
		Pending.Append(Node);
	}
}

TUniquePtr<FTaskNode> FGameThreadQueue::TakeFirst()
{
	TUniquePtr<FTaskNode> Node(Pending.TakeFirst());
	Waiting.fetch_sub(Node ? 1 : 0, std::memory_order_relaxed);
	return Node;
}

void FGameThreadQueue::Run(double BudgetSeconds)
{
	TakeIncoming();
	const uint64 Deadline = FPlatformTime::Cycles64() + (uint64)(BudgetSeconds * 1e9);
	while (const TUniquePtr<FTaskNode> Node = TakeFirst())
	{
		Node->Function();
		if (FPlatformTime::Cycles64() >= Deadline)
		{
			return;
		}
	}
}

bool FGameThreadQueue::WaitForWork(double Seconds)
{
	bWaiting.store(true);
	if (IsEmpty() && Seconds > 0)
	{
		Arrived.Wait(FTimespan::FromSeconds(Seconds));
	}
	bWaiting.store(false);
	return !IsEmpty();
}

void FGameThreadQueue::DiscardAll()
{
	// A destructor of a discarded task may post once more.
	for (int32 Round = 0; Round < 100 && !IsEmpty(); ++Round)
	{
		TakeIncoming();
		while (TakeFirst())
		{
		}
	}
}
