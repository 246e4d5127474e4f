#include "Templates/SharedPointer.h"
#include "Containers/Array.h"
#include "Templates/UniquePtr.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace
{
struct FBase : TSharedFromThis<FBase>
{
	explicit FBase(int32& InAlive)
		: Alive(InAlive)
	{
		++Alive;
	}
	virtual ~FBase() { --Alive; }

	int32& Alive;
	int32 Field = 5;
};

struct FPlainShared : TSharedFromThis<FPlainShared>
{
};

struct FDerived : FBase
{
	using FBase::FBase;
};
} // namespace

TEST(SharedPointer, TheObjectEndsWithItsLastStrongPointer)
{
	int32 Alive = 0;
	TWeakPtr<FBase> Weak;
	{
		TSharedPtr<FBase> Pointer = MakeShared<FDerived>(Alive);
		const TSharedRef<FBase> Ref = Pointer.ToSharedRef();
		Weak = Ref;
		EXPECT_EQ(Pointer.GetSharedReferenceCount(), 2);
		Pointer.Reset();
		EXPECT_EQ(Alive, 1);
		EXPECT_EQ(Weak.Pin().Get(), &Ref.Get());
		// The alias keeps the whole object.
		const TSharedPtr<int32> Alias(Ref.ToSharedPtr(), &Ref->Field);
		EXPECT_EQ(*Alias, 5);
		EXPECT_EQ(Ref.GetSharedReferenceCount(), 2);
	}
	EXPECT_EQ(Alive, 0);
	EXPECT_FALSE(Weak.IsValid());
	EXPECT_EQ(Weak.Pin(), nullptr);
}

TEST(SharedPointer, AnObjectHandsOutPointersToItself)
{
	int32 Alive = 0;
	for (const bool bInPlace : {true, false})
	{
		TSharedPtr<FDerived> Pointer;
		if (bInPlace)
		{
			Pointer = MakeShared<FDerived>(Alive).ToSharedPtr();
		}
		else
		{
			Pointer = MakeShareable(new FDerived(Alive));
		}
		EXPECT_EQ(&Pointer->AsShared().Get(), Pointer.Get());
		EXPECT_EQ(StaticCastSharedRef<FDerived>(Pointer->AsShared()), Pointer);
		EXPECT_EQ(Pointer.GetSharedReferenceCount(), 1);
		const TSharedRef<FPlainShared> Plain = MakeShared<FPlainShared>();
		const FPlainShared Copy(*Plain);
		EXPECT_FALSE(Copy.DoesSharedInstanceExist());
	}
	EXPECT_EQ(Alive, 0);
}

TEST(SharedPointer, ADeleterEndsTheObject)
{
	int32 Deleted = 0;
	int32 Value = 7;
	{
		const TSharedPtr<int32> Pointer = MakeShareable(&Value, [&Deleted](int32* Object) { Deleted = *Object; });
		const TSharedPtr<const int32> Copy = Pointer;
		EXPECT_EQ(Copy, Pointer);
	}
	EXPECT_EQ(Deleted, 7);
}

TEST(SharedPointer, ThreadsShareAndPinWithoutLosingOrKeepingTheObject)
{
	int32 Alive = 0;
	for (int32 Round = 0; Round < 50; ++Round)
	{
		TSharedPtr<FBase> Owner = MakeShared<FBase>(Alive).ToSharedPtr();
		const TWeakPtr<FBase> Weak = Owner;
		std::vector<std::thread> Threads;
		for (int32 Each = 0; Each < 3; ++Each)
		{
			Threads.emplace_back(
				[Weak]
				{
					for (int32 Index = 0; Index < 200; ++Index)
					{
						if (const TSharedPtr<FBase> Pinned = Weak.Pin())
						{
							const TSharedPtr<FBase> Copy = Pinned;
							ASSERT_EQ(Copy->Field, 5);
						}
					}
				});
		}
		Owner.Reset();
		for (std::thread& Thread : Threads)
		{
			Thread.join();
		}
		ASSERT_EQ(Alive, 0);
		ASSERT_FALSE(Weak.IsValid());
	}
}

TEST(UniquePtr, OwnershipMovesAndEndsOnce)
{
	int32 Alive = 0;
	TUniquePtr<FBase> Pointer = MakeUnique<FDerived>(Alive);
	TArray<TUniquePtr<FBase>> Array;
	Array.Add(MoveTemp(Pointer));
	Array.Add(MakeUnique<FBase>(Alive));
	EXPECT_EQ(Pointer, nullptr);
	EXPECT_EQ(Alive, 2);
	Array.RemoveAt(0);
	EXPECT_EQ(Alive, 1);
	FBase* Released = Array[0].Release();
	Array.Empty();
	EXPECT_EQ(Alive, 1);
	delete Released;
	EXPECT_EQ(Alive, 0);
}
