#include "Delegates/Delegate.h"
#include "Misc/Attribute.h"
#include "Support/HostTypePrinting.h"
#include "Templates/Function.h"

#include <gtest/gtest.h>

namespace
{
struct FReceiver : TSharedFromThis<FReceiver>
{
	TArray<FString> Got;
	void Take(int32 Number, FString Payload) { Got.Add(FString::Printf(TEXT("%d%s"), Number, *Payload)); }
	int32 Twice(int32 Number) const { return Number * 2; }
};

using FNumbers = TMulticastDelegate<void(int32)>;
} // namespace

TEST(Delegate, CallsMethodsLambdasAndFunctionsWithTheirPayload)
{
	const TSharedRef<FReceiver> Receiver = MakeShared<FReceiver>();
	TDelegate<void(int32)> Delegate;
	EXPECT_FALSE(Delegate.ExecuteIfBound(1));
	Delegate.BindSP(Receiver, &FReceiver::Take, FString(TEXT("sp")));
	EXPECT_TRUE(Delegate.ExecuteIfBound(1));
	Delegate.BindRaw(&Receiver.Get(), &FReceiver::Take, FString(TEXT("raw")));
	Delegate.Execute(2);
	const TDelegate<int32(int32)> WithResult = TDelegate<int32(int32)>::CreateSP(Receiver, &FReceiver::Twice);
	EXPECT_EQ(WithResult.Execute(21), 42);
	const auto Sum = TDelegate<int32(int32)>::CreateLambda([](int32 A, int32 B) { return A + B; }, 5);
	EXPECT_EQ(Sum.Execute(1), 6);
	const auto Absolute = TDelegate<int32(int32)>::CreateStatic(&FMath::Sign<int32>);
	EXPECT_EQ(Absolute.Execute(-9), -1);
	EXPECT_EQ(Receiver->Got, (TArray<FString>{TEXT("1sp"), TEXT("2raw")}));
}

TEST(Delegate, ABindingToAnObjectThatIsGoneDoesNothing)
{
	TSharedPtr<FReceiver> Receiver = MakeShared<FReceiver>().ToSharedPtr();
	int32 Calls = 0;
	FNumbers Numbers;
	Numbers.AddSP(Receiver, &FReceiver::Take, FString());
	Numbers.AddSPLambda(Receiver, [&Calls](int32) { ++Calls; });
	EXPECT_TRUE(Numbers.IsBoundToObject(Receiver.Get()));
	Receiver.Reset();
	Numbers.Broadcast(1);
	EXPECT_EQ(Calls, 0);
	EXPECT_FALSE(Numbers.IsBound());
}

TEST(MulticastDelegate, TheLastBoundRunsFirst)
{
	TArray<int32> Order;
	FNumbers Numbers;
	for (const int32 Each : {1, 2, 3})
	{
		Numbers.AddLambda([&Order, Each](int32) { Order.Add(Each); });
	}
	Numbers.Broadcast(0);
	EXPECT_EQ(Order, (TArray<int32>{3, 2, 1}));
}

TEST(MulticastDelegate, HandlersComeAndGoDuringABroadcast)
{
	TArray<FString> Log;
	FNumbers Numbers;
	FDelegateHandle First = Numbers.AddLambda([&](int32) { Log.Add(TEXT("removed by a later one")); });
	FDelegateHandle Self;
	Self = Numbers.AddLambda(
		[&](int32)
		{
			Log.Add(TEXT("self"));
			EXPECT_TRUE(Numbers.Remove(Self));
			EXPECT_FALSE(Numbers.Remove(Self));
			Numbers.AddLambda([&](int32) { Log.Add(TEXT("added")); });
		});
	Numbers.AddLambda(
		[&](int32 Depth)
		{
			Log.Add(FString::Printf(TEXT("outer %d"), Depth));
			Numbers.Remove(First);
			if (Depth == 0)
			{
				Numbers.Broadcast(1);
			}
		});
	Numbers.Broadcast(0);
	EXPECT_EQ(Log, (TArray<FString>{TEXT("outer 0"), TEXT("outer 1"), TEXT("self")}));
	Log.Reset();
	Numbers.Broadcast(2);
	EXPECT_EQ(Log, (TArray<FString>{TEXT("added"), TEXT("outer 2")}));
}

TEST(MulticastDelegate, TheDelegateMayBeDestroyedByItsOwnBroadcast)
{
	int32 Calls = 0;
	TUniquePtr<FNumbers> Numbers = MakeUnique<FNumbers>();
	Numbers->AddLambda([&Calls](int32) { ++Calls; });
	Numbers->AddLambda([&Numbers](int32) { Numbers.Reset(); });
	Numbers->Broadcast(1);
	EXPECT_EQ(Numbers, nullptr);
	EXPECT_EQ(Calls, 0);
}

TEST(MulticastDelegate, AllBindingsOfAnObjectGoAtOnceAndCopiesAreTheirOwn)
{
	const TSharedRef<FReceiver> Receiver = MakeShared<FReceiver>();
	FNumbers Numbers;
	Numbers.AddSP(Receiver, &FReceiver::Take, FString(TEXT("a")));
	Numbers.AddRaw(&Receiver.Get(), &FReceiver::Take, FString(TEXT("b")));
	const FNumbers Copy(Numbers);
	EXPECT_EQ(Numbers.RemoveAll(&Receiver.Get()), 2);
	Numbers.Broadcast(1);
	EXPECT_TRUE(Receiver->Got.IsEmpty());
	Copy.Broadcast(1);
	EXPECT_EQ(Receiver->Got.Num(), 2);
}

TEST(Function, CallablesOfAnySizeAreCopiedMovedAndEnded)
{
	const TSharedRef<int32> Token = MakeShared<int32>(1);
	{
		TArray<TFunction<int32(int32)>> Functions;
		struct FLarge
		{
			int64 Padding[16] = {};
		} Large;
		Functions.Add([Token](int32 X) { return X + *Token; });
		Functions.Add([Token, Large](int32 X) { return X + (int32)Large.Padding[3] + 10; });
		const TArray<TFunction<int32(int32)>> Copies = Functions;
		Functions.RemoveAt(0);
		TFunction<int32(int32)> Moved = MoveTemp(Functions[0]);
		EXPECT_FALSE(Functions[0].IsSet());
		EXPECT_EQ(Copies[0](1), 2);
		EXPECT_EQ(Moved(1), 11);
		EXPECT_EQ(Token.GetSharedReferenceCount(), 4);
		Moved = nullptr;
		EXPECT_FALSE((bool)Moved);
	}
	EXPECT_EQ(Token.GetSharedReferenceCount(), 1);
	TUniqueFunction<int32()> Unique = [Owned = MakeUnique<int32>(3)] { return *Owned; };
	TUniqueFunction<int32()> Taken = MoveTemp(Unique);
	EXPECT_EQ(Taken(), 3);
	const auto Apply = [](TFunctionRef<int32(int32)> Ref) { return Ref(4); };
	EXPECT_EQ(Apply([](int32 X) { return X * X; }), 16);
}

TEST(Attribute, AValueIsGivenOrAskedFor)
{
	TAttribute<FString> Attribute;
	EXPECT_FALSE(Attribute.IsSet());
	EXPECT_EQ(Attribute.Get(TEXT("default")), TEXT("default"));
	Attribute = FString(TEXT("given"));
	EXPECT_EQ(Attribute.Get(), TEXT("given"));
	int32 Asked = 0;
	const auto Count = TAttribute<int32>::CreateLambda([&Asked] { return ++Asked; });
	Count.Get();
	EXPECT_EQ(Count.Get(), 2);
}
