#include "Host/CoreUObject/Fixtures/Creature.h"
#include "UObject/UObjectGlobals.h"
#include "UObject/UObjectHash.h"

#include <gtest/gtest.h>

namespace
{
/** Reads a value into a property of the creature. @return how many units were read, or -1. */
int32 Import(UCreature* Creature, const TCHAR* Name, const FString& Text)
{
	const FProperty* Property = Creature->GetClass()->FindPropertyByName(Name);
	const TCHAR* Behind = Property->ImportText_InContainer(*Text, Creature, Creature, PPF_None);
	return Behind ? (int32)(Behind - *Text) : -1;
}

FString Export(UCreature* Creature, const TCHAR* Name)
{
	FString Text;
	Creature->GetClass()->FindPropertyByName(Name)->ExportTextItem_InContainer(
		Text, Creature, nullptr, Creature, PPF_None);
	return Text;
}

TEST(PropertyText, ValuesAreWrittenInTheHostsForm)
{
	UCreature* Creature = NewObject<UCreature>();
	Creature->Meal.Tags = {TEXT("a"), TEXT("b c")};
	Creature->Meal.Food = TEXT("x \"y\"\\\n");
	Creature->Notes.Add(TEXT("k"), 2);
	Creature->Notes.Add(TEXT("l"), 3);
	Creature->Kind = UCreature::StaticClass();
	const TPair<const TCHAR*, const TCHAR*> Cases[] = {{TEXT("Eaten"), TEXT("0")}, {TEXT("Speed"), TEXT("0.100000")},
		{TEXT("Big"), TEXT("-9223372036854775808")}, {TEXT("Bigger"), TEXT("18446744073709551615")},
		{TEXT("bAlive"), TEXT("True")}, {TEXT("Mood"), TEXT("Afraid")}, {TEXT("OldMood"), TEXT("MOOD_High")},
		{TEXT("Place"), TEXT("(X=1.000000,Y=2.000000,Z=3.000000)")}, {TEXT("Nickname"), TEXT("Nobody")},
		{TEXT("Meal"), TEXT("(Food=\"x \\\"y\\\"\\\\\\n\",Amount=1,Tags=(\"a\",\"b c\"),bFresh=True,bWarm=False)")},
		{TEXT("Notes"), TEXT("((\"k\", 2),(\"l\", 3))")}, {TEXT("Meals"), TEXT("()")}, {TEXT("Parent"), TEXT("None")},
		{TEXT("Kind"), TEXT("/Script/CoreUObject.Class'/Script/ReflectionTests.Creature'")}};
	for (const auto& [Name, Text] : Cases)
	{
		EXPECT_EQ(Export(Creature, Name), Text) << TCHAR_TO_UTF8(Name);
	}
}

TEST(PropertyText, ReadersTakeTheFormsThatPeopleWrite)
{
	UCreature* Creature = NewObject<UCreature>();
	EXPECT_GT(Import(Creature, TEXT("Place"), TEXT("( Y = 5 , X=-1.5 )")), 0);
	EXPECT_EQ(Creature->Place, FVector(-1.5, 5, 3)) << "members that aren't named keep their value";
	EXPECT_GT(Import(Creature, TEXT("Meal"), TEXT("(Unknown=(a,\"b)\",c),Amount=7)")), 0);
	EXPECT_EQ(Creature->Meal.Amount, 7);
	EXPECT_GT(Import(Creature, TEXT("Mood"), TEXT("EMood::calm")), 0);
	EXPECT_EQ(Creature->Mood, EMood::Calm);
	EXPECT_GT(Import(Creature, TEXT("bAlive"), TEXT("no")), 0);
	EXPECT_FALSE(Creature->bAlive);
	EXPECT_GT(Import(Creature, TEXT("Meals"), TEXT("((Food=\"a\"),(Amount=3),)")), 0);
	ASSERT_EQ(Creature->Meals.Num(), 2);
	EXPECT_EQ(Creature->Meals[1].Food, TEXT("grass")) << "elements start with the struct's defaults";
	EXPECT_GT(Import(Creature, TEXT("Eaten"), TEXT("0x10")), 0);
	EXPECT_EQ(Creature->Eaten, 16);
	EXPECT_GT(Import(Creature, TEXT("Speed"), TEXT("2.5f")), 0);
	EXPECT_EQ(Creature->Speed, 2.5f);
	EXPECT_GT(Import(Creature, TEXT("Title"), TEXT("NSLOCTEXT(\"ns\", \"key\", \"Shown\")")), 0);
	EXPECT_EQ(Creature->Title.GetKey(), TEXT("key"));
	EXPECT_GT(Import(Creature, TEXT("Kind"), TEXT("/Script/ReflectionTests.Creature")), 0);
	EXPECT_EQ(Creature->Kind, UCreature::StaticClass());
}

TEST(PropertyText, MalformedTextIsRefusedAndLeavesTheValue)
{
	const TPair<const TCHAR*, const TCHAR*> Cases[] = {{TEXT("Eaten"), TEXT("")}, {TEXT("Eaten"), TEXT("abc")},
		{TEXT("Eaten"), TEXT("99999999999")}, {TEXT("Tiny"), TEXT("128")}, {TEXT("Bigger"), TEXT("-1")},
		{TEXT("Speed"), TEXT("1.2.3")}, {TEXT("bAlive"), TEXT("maybe")}, {TEXT("Mood"), TEXT("Happy")},
		{TEXT("Meal"), TEXT("(Food=\"x\",Amount=no)")}, {TEXT("Meal"), TEXT("(Food=\"unclosed")},
		{TEXT("Meal"), TEXT("(Food")}, {TEXT("Meal"), TEXT("(Amount=1")}, {TEXT("Meal"), TEXT("Amount=1")},
		{TEXT("Meal"), TEXT("(Amount=1 Food=a)")}, {TEXT("Meal"), TEXT("(Unknown=(((")},
		{TEXT("Meals"), TEXT("((Amount=1),(Amount=x))")}, {TEXT("Notes"), TEXT("((\"a\",1),(\"b\"))")},
		{TEXT("Notes"), TEXT("((\"a\",1,2))")}, {TEXT("Kind"), TEXT("/Script/CoreUObject.Object")},
		{TEXT("Parent"), TEXT("/Script/Nothing.There")}, {TEXT("MayEat"), TEXT("NoSuchFunction")}};
	UCreature* Creature = NewObject<UCreature>();
	for (const auto& [Name, Text] : Cases)
	{
		const FString Before = Export(Creature, Name);
		EXPECT_EQ(Import(Creature, Name, Text), -1) << TCHAR_TO_UTF8(Text);
		EXPECT_EQ(Export(Creature, Name), Before) << TCHAR_TO_UTF8(Text);
	}
}

TEST(PropertyText, EveryTruncationOfALongTextEndsInAnAnswer)
{
	UCreature* Creature = NewObject<UCreature>();
	const FString Text =
		TEXT("((Food=\"a\\\"b\",Amount=3,Tags=(\"x\",\"y\"),bFresh=False),(Unknown=(1,(2)),Amount=0x7f))");
	for (int32 Length = 0; Length < Text.Len(); ++Length)
	{
		// Exactly as long as its text, so that a sanitizer sees any step behind the end.
		TArray<TCHAR> Exact(*Text, Length);
		Exact.Add(0);
		Exact.Shrink();
		EXPECT_EQ(Import(Creature, TEXT("Meals"), Exact.GetData()), Length == 0 ? 0 : -1);
	}
	EXPECT_EQ(Import(Creature, TEXT("Meals"), Text), Text.Len());
	const FString Deep = FString::ChrN(100000, TEXT('('));
	EXPECT_EQ(Import(Creature, TEXT("Meals"), Deep), -1);
	EXPECT_EQ(Import(Creature, TEXT("Meal"), TEXT("(Unknown=") + Deep), -1);
}

/** A value of every property that differs from its default where a kind allows, read back from its own text. */
void ExpectRoundTrip(const FProperty* Property, void* Container, UObject* Owner)
{
	for (int32 Index = 0; Index < Property->ArrayDim; ++Index)
	{
		for (const int32 Flags : {(int32)PPF_None, (int32)PPF_Delimited})
		{
			void* Value = Property->ContainerPtrToValuePtr<void>(Container, Index);
			FString Text;
			Property->ExportTextItem_Direct(Text, Value, nullptr, Owner, Flags);
			void* Copy = FMemory::Malloc((SIZE_T)Property->GetSize(), (uint32)Property->GetMinAlignment());
			FMemory::Memzero(Copy, (SIZE_T)Property->GetSize());
			Property->InitializeValue(Copy);
			const TCHAR* Behind = Property->ImportText_Direct(*Text, Copy, Owner, Flags);
			const FString Path = Property->GetPathName();
			EXPECT_TRUE(Behind && *Behind == 0) << TCHAR_TO_UTF8(*Path) << " doesn't read " << TCHAR_TO_UTF8(*Text);
			EXPECT_TRUE(Property->Identical(Copy, Value)) << TCHAR_TO_UTF8(*Path) << " loses " << TCHAR_TO_UTF8(*Text);
			Property->DestroyValue(Copy);
			FMemory::Free(Copy);
		}
	}
}

TEST(PropertyText, EveryPropertyOfEveryClassAndStructRoundTrips)
{
	int32 Checked = 0;
	TArray<UObject*> Classes;
	GetObjectsOfClass(UClass::StaticClass(), Classes);
	for (UObject* Each : Classes)
	{
		UClass* Class = (UClass*)Each;
		UObject* Defaults = Class->GetDefaultObject();
		ASSERT_NE(Defaults, nullptr);
		for (TFieldIterator<FProperty> It(Class); It; ++It, ++Checked)
		{
			ExpectRoundTrip(*It, Defaults, Defaults);
		}
	}
	TArray<UObject*> Structs;
	GetObjectsOfClass(UScriptStruct::StaticClass(), Structs);
	for (UObject* Each : Structs)
	{
		const UScriptStruct* Struct = (UScriptStruct*)Each;
		void* Value = FMemory::Malloc((SIZE_T)Struct->GetStructureSize(), (uint32)Struct->GetMinAlignment());
		Struct->InitializeStruct(Value);
		for (TFieldIterator<FProperty> It(Struct); It; ++It, ++Checked)
		{
			ExpectRoundTrip(*It, Value, nullptr);
		}
		Struct->DestroyStruct(Value);
		FMemory::Free(Value);
	}
	EXPECT_GT(Checked, 40);
}

TEST(PropertyText, AFilledObjectRoundTripsThroughText)
{
	UCreature* Source = NewObject<UCreature>();
	Source->Meals.SetNum(3);
	Source->Meals[1].Food = TEXT("a,b)(\"'\\\r\n\tü𝄞");
	Source->Notes.Add(TEXT("quote\"d"), -1);
	Source->Friends = {TEXT("One"), TEXT("Two_3")};
	Source->Children.Add(NewObject<UCreature>(Source, TEXT("Child")));
	Source->Parent = Source;
	Source->Rival = Source;
	Source->Ancestor = Source;
	Source->Kind = UCreature::StaticClass();
	Source->Grudges.Add(Source, 3);
	Source->OnFed.AddDynamic(Source, &UCreature::NoteFood);
	Source->MayEat.BindUFunction(Source, TEXT("Feed"));
	Source->Title = FText::AsLocalizable(TEXT("n"), TEXT("k"), TEXT("say \"so\""));
	for (TFieldIterator<FProperty> It(Source->GetClass()); It; ++It)
	{
		ExpectRoundTrip(*It, Source, Source);
	}
}
} // namespace
