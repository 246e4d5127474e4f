#include "Containers/Array.h"
#include "Support/HostTypePrinting.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace
{
/** Counts its living objects and holds a pointer to itself, so that a byte-wise move would be seen. */
struct FWitness
{
	static inline int32 Alive = 0;

	int32 Value;
	FWitness* Self;

	FWitness(int32 InValue = 0)
		: Value(InValue)
		, Self(this)
	{
		++Alive;
	}
	FWitness(const FWitness& Other)
		: FWitness(Other.Value)
	{
		EXPECT_EQ(Other.Self, &Other);
	}
	FWitness& operator=(const FWitness& Other)
	{
		EXPECT_EQ(Self, this);
		EXPECT_EQ(Other.Self, &Other);
		Value = Other.Value;
		return *this;
	}
	~FWitness()
	{
		EXPECT_EQ(Self, this);
		--Alive;
	}
	bool operator==(const FWitness& Other) const { return Value == Other.Value; }
	bool operator<(const FWitness& Other) const { return Value < Other.Value; }
};

template <typename ArrayType>
void CompareWithVector(const ArrayType& Array, const std::vector<int32>& Model)
{
	ASSERT_EQ(Array.Num(), (int32)Model.size());
	for (int32 Index = 0; Index < Array.Num(); ++Index)
	{
		ASSERT_EQ(Array[Index].Value, Model[(size_t)Index]) << "at " << Index;
		ASSERT_EQ(Array[Index].Self, &Array[Index]);
	}
}

/** One random operation on both the array and its model. */
template <typename ArrayType>
void Step(ArrayType& Array, std::vector<int32>& Model, std::mt19937& Random)
{
	const int32 Value = (int32)(Random() % 20);
	const int32 Place = Model.empty() ? 0 : (int32)(Random() % Model.size());
	switch (Random() % 9)
	{
	case 0:
	case 1:
		Array.Add(Value);
		Model.push_back(Value);
		break;
	case 2:
		Array.Insert(FWitness(Value), Place);
		Model.insert(Model.begin() + Place, Value);
		break;
	case 3:
		if (!Model.empty())
		{
			const int32 Count = (int32)(Random() % (Model.size() - (size_t)Place + 1));
			Array.RemoveAt(Place, Count);
			Model.erase(Model.begin() + Place, Model.begin() + Place + Count);
		}
		break;
	case 4:
		Array.RemoveAll([Value](const FWitness& Each) { return Each.Value == Value; });
		std::erase(Model, Value);
		break;
	case 5:
		if (!Model.empty())
		{
			Array.RemoveAtSwap(Place);
			Model[(size_t)Place] = Model.back();
			Model.pop_back();
		}
		break;
	case 6:
		if (!Model.empty())
		{
			// The added element lives in the array itself.
			Array.Add(Array[Place]);
			Model.push_back(Model[(size_t)Place]);
		}
		break;
	case 7:
		Array.Append(Array.GetData(), Place);
		for (int32 Index = 0; Index < Place; ++Index)
		{
			Model.push_back(Model[(size_t)Index]);
		}
		break;
	case 8:
	{
		ArrayType Copy(Array);
		ArrayType Moved(MoveTemp(Array));
		EXPECT_TRUE(Array.IsEmpty());
		EXPECT_TRUE(Copy == Moved);
		Array = MoveTemp(Moved);
		break;
	}
	}
	if (Model.size() > 200)
	{
		Array.SetNum(3);
		Model.resize(3);
	}
}
} // namespace

TEST(Array, RandomOperationsAgreeWithTheStandardVectorAndLoseNoObject)
{
	std::mt19937 Random(17);
	{
		TArray<FWitness> Heap;
		TArray<FWitness, TInlineAllocator<6>> Inline;
		std::vector<int32> HeapModel;
		std::vector<int32> InlineModel;
		for (int32 Round = 0; Round < 6000 && !testing::Test::HasFatalFailure(); ++Round)
		{
			Step(Heap, HeapModel, Random);
			Step(Inline, InlineModel, Random);
			CompareWithVector(Heap, HeapModel);
			CompareWithVector(Inline, InlineModel);
		}
		EXPECT_EQ(FWitness::Alive, (int32)(HeapModel.size() + InlineModel.size()));
	}
	EXPECT_EQ(FWitness::Alive, 0);
}

TEST(Array, AReferenceToWhatWasAddedSurvivesTheGrowth)
{
	TArray<int32> Array;
	for (int32 Index = 0; Index < 300; Index += 3)
	{
		Array.AddDefaulted_GetRef() = Index;
		Array.Emplace_GetRef(0) = Index + 1;
		Array.Add_GetRef(Index) += 2;
	}
	for (int32 Index = 0; Index < 300; ++Index)
	{
		EXPECT_EQ(Index, Array[Index]);
	}
}

TEST(Array, SearchesAndSorts)
{
	TArray<FString> Words{TEXT("pear"), TEXT("Apple"), TEXT("fig"), TEXT("apple")};
	EXPECT_EQ(Words.Find(TEXT("APPLE")), 1);
	EXPECT_EQ(Words.FindLast(TEXT("APPLE")), 3);
	EXPECT_TRUE(Words.Contains(TEXT("fig")));
	EXPECT_EQ(Words.AddUnique(TEXT("FIG")), 2);
	EXPECT_EQ(Words.IndexOfByPredicate([](const FString& Each) { return Each.Len() == 3; }), 2);
	EXPECT_EQ(Words.FindByPredicate([](const FString& Each) { return Each.IsEmpty(); }), nullptr);
	Words.StableSort();
	EXPECT_TRUE(Words[0].Equals(TEXT("Apple")) && Words[1].Equals(TEXT("apple")) && Words[3] == TEXT("pear"));
	EXPECT_EQ(Words.Remove(TEXT("apple")), 2);
	EXPECT_EQ(Words.FilterByPredicate([](const FString& Each) { return Each.Len() > 3; }).Num(), 1);

	int32 Values[] = {5, 2, 9};
	TArray<int32*> Pointers{&Values[0], &Values[1], &Values[2]};
	Pointers.Sort([](const int32& A, const int32& B) { return A < B; });
	EXPECT_EQ(*Pointers[0], 2);

	TArray<int32> Heap;
	for (const int32 Value : {5, 1, 4, 2, 3})
	{
		Heap.HeapPush(Value);
	}
	int32 Smallest = 0;
	Heap.HeapPop(Smallest);
	EXPECT_EQ(Smallest, 1);
	EXPECT_EQ(Heap.HeapTop(), 2);
}

TEST(Array, AnIteratorRemovesWhereItStands)
{
	TArray<int32> Numbers{1, 2, 3, 4, 5, 6};
	for (auto It = Numbers.CreateIterator(); It; ++It)
	{
		if (*It % 2 == 0)
		{
			It.RemoveCurrent();
		}
	}
	EXPECT_EQ(Numbers, (TArray<int32>{1, 3, 5}));
}

TEST(ArrayDeathTest, AnIndexOutsideAborts)
{
	TArray<int32> Numbers{1};
	EXPECT_DEATH(Numbers[1] = 2, "IsValidIndex");
	EXPECT_DEATH(Numbers.RemoveAt(0, 2), "Assertion failed");
	EXPECT_DEATH(Numbers.Last(1) = 2, "IsValidIndex");
}
