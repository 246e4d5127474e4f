#pragma once

#include "HAL/Platform.h"

#include <atomic>

enum class EMemoryOrder
{
	Relaxed,
	SequentiallyConsistent
};

/** A value that any thread may read and change as one. */
template <typename T>
class TAtomic
{
public:
	constexpr TAtomic() = default;
	constexpr TAtomic(T Value)
		: Element(Value)
	{
	}
	TAtomic(const TAtomic&) = delete;
	TAtomic& operator=(const TAtomic&) = delete;

	T Load(EMemoryOrder Order = EMemoryOrder::SequentiallyConsistent) const { return Element.load(ToStd(Order)); }
	void Store(T Value, EMemoryOrder Order = EMemoryOrder::SequentiallyConsistent)
	{
		Element.store(Value, ToStd(Order));
	}
	T Exchange(T Value) { return Element.exchange(Value); }
	/** On failure Expected becomes the value that was there. */
	bool CompareExchange(T& Expected, T Value) { return Element.compare_exchange_strong(Expected, Value); }

	operator T() const { return Load(); }
	T operator=(T Value)
	{
		Store(Value);
		return Value;
	}
	T operator++() { return ++Element; }
	T operator++(int) { return Element++; }
	T operator--() { return --Element; }
	T operator--(int) { return Element--; }
	T operator+=(T Value) { return Element += Value; }
	T operator-=(T Value) { return Element -= Value; }

private:
	static constexpr std::memory_order ToStd(EMemoryOrder Order)
	{
		return Order == EMemoryOrder::Relaxed ? std::memory_order_relaxed : std::memory_order_seq_cst;
	}

	std::atomic<T> Element{};
};
