#pragma once

#include "Misc/AssertionMacros.h"
#include "Templates/UnrealTemplate.h"

#include <initializer_list>

/** A range of elements that somebody else owns. Copies are cheap; the owner must outlive the view. */
template <typename T>
class TArrayView
{
public:
	using ElementType = T;

	constexpr TArrayView() = default;
	constexpr TArrayView(T* InData, int32 InNum)
		: Data(InData)
		, ArrayNum(InNum)
	{
	}
	template <SIZE_T N>
	constexpr TArrayView(T (&Array)[N])
		: Data(Array)
		, ArrayNum((int32)N)
	{
	}
	constexpr TArrayView(std::initializer_list<std::remove_const_t<T>> List) requires std::is_const_v<T>
		: Data(List.begin())
		, ArrayNum((int32)List.size())
	{
	}
	template <typename ContainerType>
	requires requires(ContainerType& Container)
	{
		{
			Container.GetData()
			} -> std::convertible_to<T*>;
		{
			Container.Num()
			} -> std::convertible_to<int32>;
	}
	constexpr TArrayView(ContainerType&& Container)
		: Data(Container.GetData())
		, ArrayNum((int32)Container.Num())
	{
	}

	constexpr T* GetData() const { return Data; }
	constexpr int32 Num() const { return ArrayNum; }
	constexpr bool IsEmpty() const { return ArrayNum == 0; }
	constexpr bool IsValidIndex(int32 Index) const { return (uint32)Index < (uint32)ArrayNum; }
	constexpr T& operator[](int32 Index) const
	{
		check(IsValidIndex(Index));
		return Data[Index];
	}
	constexpr T& Last(int32 IndexFromTheEnd = 0) const { return (*this)[ArrayNum - IndexFromTheEnd - 1]; }

	/** The part from Index on with at most InNum elements; what lies outside is cut. */
	constexpr TArrayView Mid(int32 Index, int32 InNum = MAX_int32) const
	{
		const int32 First = Index < 0 ? 0 : (Index > ArrayNum ? ArrayNum : Index);
		const int32 Rest = ArrayNum - First;
		return TArrayView(Data + First, InNum < 0 ? 0 : (InNum < Rest ? InNum : Rest));
	}
	constexpr TArrayView Left(int32 Count) const { return Mid(0, Count); }
	constexpr TArrayView RightChop(int32 Count) const { return Mid(Count); }
	constexpr TArrayView Slice(int32 Index, int32 InNum) const
	{
		check(Index >= 0 && InNum >= 0 && Index <= ArrayNum - InNum);
		return TArrayView(Data + Index, InNum);
	}

	constexpr int32 Find(const T& Item) const
	{
		for (int32 Index = 0; Index < ArrayNum; ++Index)
		{
			if (Data[Index] == Item)
			{
				return Index;
			}
		}
		return INDEX_NONE;
	}
	constexpr bool Contains(const T& Item) const { return Find(Item) != INDEX_NONE; }

	constexpr T* begin() const { return Data; }
	constexpr T* end() const { return Data + ArrayNum; }

private:
	T* Data = nullptr;
	int32 ArrayNum = 0;
};

template <typename T>
using TConstArrayView = TArrayView<const T>;

template <typename T>
TArrayView<T> MakeArrayView(T* Data, int32 Num)
{
	return TArrayView<T>(Data, Num);
}

template <typename ContainerType>
auto MakeArrayView(ContainerType&& Container)
{
	return TArrayView<std::remove_pointer_t<decltype(Container.GetData())>>(Container.GetData(), Container.Num());
}
