#pragma once

#include "Templates/Function.h"

/** A task waiting to run. */
struct FTaskNode
{
	TUniqueFunction<void()> Function;
	FTaskNode* Next = nullptr;
};

/** Tasks in the order of their arrival, owned by the list. Not safe for threads. */
class FTaskList : private FNoncopyable
{
public:
	~FTaskList() { DiscardAll(); }

	bool IsEmpty() const { return First == nullptr; }
	void Append(FTaskNode* Node)
	{
		(Last ? Last->Next : First) = Node;
		Last = Node;
	}
	/** @return null when there is none; the caller deletes the node. */
	FTaskNode* TakeFirst()
	{
		FTaskNode* Node = First;
		if (Node)
		{
			First = Exchange(Node->Next, nullptr);
			Last = First ? Last : nullptr;
		}
		return Node;
	}
	void DiscardAll()
	{
		while (FTaskNode* Node = TakeFirst())
		{
			delete Node;
		}
	}

private:
	FTaskNode* First = nullptr;
	FTaskNode* Last = nullptr;
};
