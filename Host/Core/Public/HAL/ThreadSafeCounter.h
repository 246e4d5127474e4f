#pragma once

#include "HAL/Platform.h"

#include <atomic>

/** A number that any thread may change. */
class FThreadSafeCounter
{
public:
	FThreadSafeCounter() = default;
	explicit FThreadSafeCounter(int32 Value)
		: Counter(Value)
	{
	}

	/** @return the value after the change. */
	int32 Increment() { return ++Counter; }
	int32 Decrement() { return --Counter; }
	/** @return the value before the change. */
	int32 Add(int32 Amount) { return Counter.fetch_add(Amount); }
	int32 Subtract(int32 Amount) { return Counter.fetch_sub(Amount); }
	int32 Set(int32 Value) { return Counter.exchange(Value); }
	int32 Reset() { return Set(0); }
	int32 GetValue() const { return Counter.load(); }

private:
	std::atomic<int32> Counter{0};
};
