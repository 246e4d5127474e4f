#include "Host/CoreUObject/Fixtures/Creature.h"
#include "UObject/StrongObjectPtr.h"
#include "UObject/UObjectArray.h"
#include "UObject/UObjectGlobals.h"
#include "UObject/UObjectHash.h"

#include <gtest/gtest.h>

namespace
{
TEST(ObjectLife, NamesAreUniqueInTheirOuterAndRenamesAreFound)
{
	UCreature* First = NewObject<UCreature>();
	UCreature* Second = NewObject<UCreature>();
	EXPECT_EQ(First->GetName(), TEXT("Creature_0"));
	EXPECT_EQ(Second->GetName(), TEXT("Creature_1"));
	EXPECT_FALSE(Second->Rename(TEXT("Creature_0"))) << "a taken name is refused";
	EXPECT_TRUE(Second->Rename(TEXT("Inner"), First));
	EXPECT_EQ(Second->GetPathName(), TEXT("/Engine/Transient.Creature_0:Inner"));
	EXPECT_EQ(FindObject<UCreature>(First, TEXT("Inner")), Second);
	EXPECT_EQ(FindObject<UCreature>(GetTransientPackage(), TEXT("Creature_1")), nullptr);
	const TWeakObjectPtr<UCreature> Old = Second;
	UCreature* Third = NewObject<UCreature>(First, TEXT("Inner"));
	EXPECT_EQ(FindObject<UCreature>(First, TEXT("Inner")), Third);
	EXPECT_EQ(Old.Get(), nullptr) << "the new object takes the name, the old one is garbage";
}

TEST(ObjectLife, CollectionFreesWhatNothingHolds)
{
	NewObject<UCreature>();
	CollectGarbage(RF_NoFlags);
	const int32 Before = UObjectArray::GetObjectCount();
	UCreature* Root = NewObject<UCreature>();
	Root->AddToRoot();
	Root->Parent = NewObject<UCreature>();
	Root->Parent->Children.Add(NewObject<UCreature>());
	Root->Grudges.Add(NewObject<UCreature>(), 1);
	const TStrongObjectPtr<UCreature> Strong(NewObject<UCreature>());
	TStrongObjectPtr<UCreature> Moved = Strong;
	UCreature* Kept = NewObject<UCreature>(nullptr, TEXT("Asset"), RF_Standalone);
	const TWeakObjectPtr<UCreature> Cycle = NewObject<UCreature>();
	Cycle->Parent = NewObject<UCreature>();
	Cycle->Parent->Parent = Cycle.Get();
	Root->Rival = NewObject<UCreature>();
	CollectGarbage(GARBAGE_COLLECTION_KEEPFLAGS);
	EXPECT_EQ(Cycle.Get(), nullptr) << "a cycle doesn't hold itself";
	EXPECT_EQ(Root->Rival.Get(), nullptr) << "a weak reference doesn't hold";
	EXPECT_EQ(UObjectArray::GetObjectCount(), Before + 6);
	EXPECT_TRUE(IsValid(Kept));
	Moved.Reset();
	Kept->ClearFlags(RF_Standalone);
	Root->RemoveFromRoot();
	CollectGarbage(GARBAGE_COLLECTION_KEEPFLAGS);
	EXPECT_EQ(UObjectArray::GetObjectCount(), Before + 1) << "the other strong pointer still holds";
}

TEST(ObjectLife, GarbageIsNullForWeakPointersAndLeavesNoReferenceBehind)
{
	const TStrongObjectPtr<UCreature> Holder(NewObject<UCreature>());
	UCreature* Victim = NewObject<UCreature>();
	UCreature* Other = NewObject<UCreature>();
	Holder->Parent = Victim;
	Holder->Children = {Victim, Other};
	Holder->Grudges.Add(Victim, 1);
	Holder->Grudges.Add(Other, 2);
	const TWeakObjectPtr<UCreature> Weak = Victim;
	Victim->MarkAsGarbage();
	EXPECT_FALSE(IsValid(Victim));
	EXPECT_EQ(Weak.Get(), nullptr);
	EXPECT_EQ(Weak.Get(true), Victim);
	CollectGarbage(RF_NoFlags);
	EXPECT_EQ(Weak.Get(true), nullptr);
	EXPECT_EQ(Holder->Parent, nullptr);
	EXPECT_EQ(Holder->Children[0], nullptr);
	EXPECT_EQ(Holder->Grudges.FindRef(Other), 2);
	EXPECT_EQ(Holder->Grudges.FindRef((UCreature*)nullptr), 1) << "a map is hashed anew when its keys become null";
	NewObject<UCreature>();
	EXPECT_EQ(Weak.Get(true), nullptr) << "a new object in the same place isn't the old one";
}

TEST(ObjectLife, PartsComeWithTheirOwnerAndDuplicatesOwnTheirs)
{
	UHerd* Herd = NewObject<UHerd>();
	ASSERT_NE(Herd->Leader, nullptr);
	EXPECT_EQ(Herd->Leader->GetOuter(), Herd);
	EXPECT_EQ(Herd->GetDefaultSubobjectByName(TEXT("Leader")), Herd->Leader);
	EXPECT_NE(Herd->Leader, GetDefault<UHerd>()->Leader);
	Herd->Leader->Eaten = 9;
	Herd->Leader->Parent = Herd->Leader;
	UHerd* Copy = DuplicateObject(Herd, GetTransientPackage());
	EXPECT_EQ(Copy->Leader->GetOuter(), Copy);
	EXPECT_EQ(Copy->Leader->Eaten, 9);
	EXPECT_EQ(Copy->Leader->Parent, Copy->Leader);
}

TEST(ObjectLife, ClassesMadeAtRunTimeLayOutConstructAndEndTheirProperties)
{
	UClass* Class = NewObject<UClass>(GetTransientPackage(), TEXT("Dragon"));
	const TStrongObjectPtr<UClass> HoldClass(Class);
	Class->SetSuperStruct(UCreature::StaticClass());
	Class->Bind();
	FStrProperty* Hoard = new FStrProperty(Class, TEXT("Hoard"));
	FBoolProperty* Winged = new FBoolProperty(Class, TEXT("bWinged"));
	FArrayProperty* Foes = new FArrayProperty(Class, TEXT("Foes"));
	FObjectProperty* Foe = new FObjectProperty(Foes, TEXT("Foes_Inner"));
	Foe->PropertyClass = UCreature::StaticClass();
	Foes->AddCppProperty(Foe);
	for (FProperty* Property : {(FProperty*)Hoard, (FProperty*)Winged, (FProperty*)Foes})
	{
		Class->AddCppProperty(Property);
	}
	Class->StaticLink(true);
	EXPECT_GE(Hoard->GetOffset_ForInternal(), (int32)sizeof(UCreature));
	EXPECT_EQ(Foes->GetOffset_ForInternal() % 8, 0);
	EXPECT_EQ(Class->FindPropertyByName(TEXT("Eaten")), UCreature::StaticClass()->FindPropertyByName(TEXT("Eaten")));

	const FString Gold = TEXT("a long enough heap of gold");
	Hoard->SetPropertyValue_InContainer(Class->GetDefaultObject(), Gold);
	const TStrongObjectPtr<UCreature> Dragon(NewObject<UCreature>(nullptr, Class));
	EXPECT_EQ(Hoard->GetPropertyValue_InContainer(Dragon.Get()), Gold) << "instances start with the class's defaults";
	FScriptArrayHelper_InContainer Helper(Foes, Dragon.Get());
	Foe->SetObjectPropertyValue(Helper.GetRawPtr(Helper.AddValue()), NewObject<UCreature>());
	const TWeakObjectPtr<UObject> Held = Foe->GetObjectPropertyValue(Helper.GetRawPtr(0));
	CollectGarbage(RF_NoFlags);
	EXPECT_TRUE(Held.IsValid()) << "a reference of a run-time property holds";
	Winged->Rename(TEXT("bFlies"));
	EXPECT_EQ(Class->FindPropertyByName(TEXT("bFlies")), Winged);
	TArray<UObject*> Creatures;
	GetObjectsOfClass(UCreature::StaticClass(), Creatures);
	EXPECT_TRUE(Creatures.Contains(Dragon.Get()));
}

TEST(ObjectLife, ShutdownFreesAllAndTheTypesComeUpAgain)
{
	UCreature* Creature = NewObject<UCreature>();
	Creature->AddToRoot();
	ShutdownUObjects();
	EXPECT_EQ(UObjectArray::GetObjectCount(), 0);
	EXPECT_EQ(NewObject<UCreature>()->GetClass()->GetName(), TEXT("Creature"));
	ShutdownUObjects();
}
} // namespace
