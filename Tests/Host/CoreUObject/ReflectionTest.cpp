#include "Host/CoreUObject/Fixtures/Creature.h"
#include "UObject/StructOnScope.h"
#include "UObject/UObjectGlobals.h"
#include "UObject/UObjectHash.h"
#include "UObject/UObjectIterator.h"

#include <gtest/gtest.h>

namespace
{
TEST(Reflection, ClassKnowsItsNameSuperPackageAndMetaData)
{
	UClass* Class = UCreature::StaticClass();
	EXPECT_EQ(Class->GetName(), TEXT("Creature"));
	EXPECT_EQ(Class->GetPathName(), TEXT("/Script/ReflectionTests.Creature"));
	EXPECT_EQ(Class->GetFullName(), TEXT("Class /Script/ReflectionTests.Creature"));
	EXPECT_EQ(Class->GetSuperClass(), UObject::StaticClass());
	EXPECT_EQ(Class->GetMetaData(TEXT("ToolTip")), TEXT("A living thing."));
	EXPECT_EQ(Class->GetMetaData(TEXT("IsBlueprintBase")), TEXT("true"));
	EXPECT_TRUE(UAbstractThing::StaticClass()->HasAnyClassFlags(CLASS_Abstract));
	EXPECT_TRUE(Class->ImplementsInterface(UFeedable::StaticClass()));
	EXPECT_EQ(UClass::StaticClass()->GetClass(), UClass::StaticClass());
}

TEST(Reflection, LookUpsFindByPathByNameAndByOuter)
{
	UClass* Class = UCreature::StaticClass();
	EXPECT_EQ(StaticFindObject(UClass::StaticClass(), nullptr, TEXT("/Script/ReflectionTests.Creature")), Class);
	EXPECT_EQ(StaticFindObject(UClass::StaticClass(), nullptr, TEXT("/script/reflectiontests.CREATURE")), Class);
	EXPECT_EQ(StaticFindObject(UEnum::StaticClass(), nullptr, TEXT("/Script/ReflectionTests.Creature")), nullptr);
	EXPECT_EQ(StaticFindObject(UClass::StaticClass(), nullptr, TEXT("Creature")), nullptr)
		<< "a short name is a package's";
	EXPECT_EQ(FindFirstObject<UClass>(TEXT("Creature")), Class);
	EXPECT_EQ(FindObject<UFunction>(Class, TEXT("Feed"))->GetPathName(), TEXT("/Script/ReflectionTests.Creature:Feed"));
	for (const TCHAR* Broken : {TEXT(""), TEXT("."), TEXT("/Script/"), TEXT("/Script/ReflectionTests."), TEXT("..."),
			 TEXT("/Script/ReflectionTests.Creature:"), TEXT("Class'"), TEXT("''")})
	{
		EXPECT_EQ(StaticFindObject(nullptr, nullptr, Broken), nullptr);
	}
}

TEST(Reflection, PropertiesLieWhereTheCompilerPutThem)
{
	UCreature* Creature = NewObject<UCreature>();
	UClass* Class = Creature->GetClass();
	EXPECT_EQ(
		FindFProperty<FIntProperty>(Class, TEXT("eaten"))->ContainerPtrToValuePtr<int32>(Creature), &Creature->Eaten);
	const FDoubleProperty* Weights = FindFProperty<FDoubleProperty>(Class, TEXT("Weights"));
	EXPECT_EQ(Weights->ArrayDim, 3);
	EXPECT_EQ(Weights->ContainerPtrToValuePtr<double>(Creature, 2), &Creature->Weights[2]);
	EXPECT_EQ(Class->FindPropertyByName(TEXT("Unreflected")), nullptr);
	const FBoolProperty* Fresh = FindFProperty<FBoolProperty>(FMeal::StaticStruct(), TEXT("bFresh"));
	const FBoolProperty* Warm = FindFProperty<FBoolProperty>(FMeal::StaticStruct(), TEXT("bWarm"));
	EXPECT_TRUE(Fresh->GetPropertyValue_InContainer(&Creature->Meal));
	Fresh->SetPropertyValue_InContainer(&Creature->Meal, false);
	Warm->SetPropertyValue_InContainer(&Creature->Meal, true);
	EXPECT_EQ(Creature->Meal.bFresh, 0);
	EXPECT_EQ(Creature->Meal.bWarm, 1);
}

TEST(Reflection, TypeTextsReadLikeTheSource)
{
	const TPair<const TCHAR*, const TCHAR*> Cases[] = {{TEXT("Eaten"), TEXT("int32")}, {TEXT("Mood"), TEXT("EMood")},
		{TEXT("OldMood"), TEXT("TEnumAsByte<EOldMood>")}, {TEXT("Place"), TEXT("FVector")},
		{TEXT("Meals"), TEXT("TArray<FMeal>")}, {TEXT("Notes"), TEXT("TMap<FString,int32>")},
		{TEXT("Friends"), TEXT("TSet<FName>")}, {TEXT("Parent"), TEXT("TObjectPtr<UCreature>")},
		{TEXT("Rival"), TEXT("TWeakObjectPtr<UCreature>")}, {TEXT("Ancestor"), TEXT("TSoftObjectPtr<UCreature>")},
		{TEXT("Kind"), TEXT("TSubclassOf<UCreature>")}, {TEXT("bAlive"), TEXT("bool")}};
	for (const auto& [Name, Type] : Cases)
	{
		EXPECT_EQ(UCreature::StaticClass()->FindPropertyByName(Name)->GetCPPType(), Type);
	}
}

TEST(Reflection, EnumerationsAnswerByNameValueAndDisplayText)
{
	UEnum* Enum = StaticEnum<EMood>();
	ASSERT_EQ(Enum->NumEnums(), 4) << "the hidden maximum counts";
	EXPECT_EQ(Enum->GetNameByIndex(1), FName(TEXT("EMood::Afraid")));
	EXPECT_EQ(Enum->GetNameStringByIndex(3), TEXT("EMood_MAX"));
	EXPECT_EQ(Enum->GetValueByIndex(3), 6);
	EXPECT_EQ(Enum->GetValueByNameString(TEXT("EMood::VeryAngry")), 5);
	EXPECT_EQ(Enum->GetValueByNameString(TEXT("veryangry")), 5);
	EXPECT_EQ(Enum->GetValueByNameString(TEXT("Happy")), INDEX_NONE);
	EXPECT_EQ(Enum->GetDisplayNameTextByIndex(0).ToString(), TEXT("At rest"));
	EXPECT_EQ(Enum->GetDisplayNameTextByIndex(2).ToString(), TEXT("Very Angry"));
	EXPECT_EQ(Enum->GetMetaData(TEXT("ToolTip"), 1), TEXT("Runs away."));
	EXPECT_EQ(StaticEnum<EOldMood>()->GetNameStringByIndex(1), TEXT("MOOD_High"));
	EXPECT_EQ(UEnum::GetValueAsString(EMood::Calm), TEXT("EMood::Calm"));
}

TEST(Reflection, WalksKnowOwnAndInheritedFieldsInTheirOrder)
{
	TArray<FString> Names;
	for (TFieldIterator<FProperty> It(FMeal::StaticStruct()); It; ++It)
	{
		Names.Add(It->GetName());
	}
	EXPECT_EQ(FString::Join(Names, TEXT(" ")), TEXT("Food Amount Tags bFresh bWarm"));
	int32 Functions = 0;
	for (TFieldIterator<UFunction> It(UCreature::StaticClass(), EFieldIteratorFlags::IncludeSuper); It; ++It)
	{
		++Functions;
	}
	EXPECT_EQ(Functions, 6);
	TArray<UClass*> Derived;
	GetDerivedClasses(UObject::StaticClass(), Derived);
	EXPECT_TRUE(Derived.Contains(UHerd::StaticClass()));
	TArray<UObject*> Classes;
	GetObjectsOfClass(UClass::StaticClass(), Classes);
	EXPECT_TRUE(Classes.Contains(UCreature::StaticClass()));
}

TEST(Reflection, CallsPassArgumentsOutValuesAndResultsThroughAFrame)
{
	UCreature* Creature = NewObject<UCreature>();
	UFunction* Add = Creature->FindFunctionChecked(TEXT("Add"));
	EXPECT_TRUE(Add->HasAllFunctionFlags(FUNC_Static | FUNC_BlueprintPure | FUNC_Native));
	EXPECT_EQ(Add->GetMetaData(TEXT("CPP_Default_B")), TEXT("5"));
	FStructOnScope Frame(Add);
	FindFProperty<FIntProperty>(Add, TEXT("A"))->SetPropertyValue_InContainer(Frame.GetStructMemory(), 2);
	FindFProperty<FIntProperty>(Add, TEXT("B"))->SetPropertyValue_InContainer(Frame.GetStructMemory(), 40);
	Creature->ProcessEvent(Add, Frame.GetStructMemory());
	EXPECT_EQ(*Add->GetReturnProperty()->ContainerPtrToValuePtr<int32>(Frame.GetStructMemory()), 42);

	UFunction* Describe = Creature->FindFunctionChecked(TEXT("Describe"));
	EXPECT_TRUE(Describe->HasAllFunctionFlags(FUNC_HasOutParms | FUNC_Const | FUNC_BlueprintPure));
	FStructOnScope Call(Describe);
	*Describe->FindPropertyByName(TEXT("Prefix"))->ContainerPtrToValuePtr<FString>(Call.GetStructMemory()) =
		TEXT("I am ");
	Creature->ProcessEvent(Describe, Call.GetStructMemory());
	EXPECT_EQ(*Describe->FindPropertyByName(TEXT("Text"))->ContainerPtrToValuePtr<FString>(Call.GetStructMemory()),
		TEXT("I am Nobody"));
}

TEST(Reflection, EventsRunTheBodyGivenAtRunTimeElseTheNativeOne)
{
	UCreature* Creature = NewObject<UCreature>();
	EXPECT_EQ(Creature->OnTouched(3), 0) << "an event without a body gives the default";
	EXPECT_EQ(Creature->Call(TEXT("x")), TEXT("native x"));

	UClass* Class = NewObject<UClass>(GetTransientPackage(), TEXT("TouchyCreature"));
	Class->SetSuperStruct(UCreature::StaticClass());
	Class->Bind();
	UFunction* Override = NewObject<UFunction>(Class, TEXT("OnTouched"));
	Override->FunctionFlags = FUNC_Event;
	for (const TCHAR* Name : {TEXT("Strength"), TEXT("ReturnValue")})
	{
		FIntProperty* Property = new FIntProperty(Override, Name);
		Property->SetPropertyFlags(
			CPF_Parm | (FName(Name) == TEXT("ReturnValue") ? CPF_OutParm | CPF_ReturnParm : CPF_None));
		Override->AddCppProperty(Property);
	}
	Override->StaticLink(true);
	Override->SetScript([](UObject*, void* Parms) { ((int32*)Parms)[1] = ((int32*)Parms)[0] * 2; });
	Class->AddChild(Override);
	Class->AddFunctionToFunctionMap(Override, Override->GetFName());
	Class->StaticLink(true);
	EXPECT_TRUE(Override->IsSignatureCompatibleWith(UCreature::StaticClass()->FindFunctionByName(TEXT("OnTouched"))));
	EXPECT_EQ(NewObject<UCreature>(nullptr, Class)->OnTouched(21), 42);
}

TEST(Reflection, InterfacesAreReachedByCastAndByName)
{
	UCreature* Creature = NewObject<UCreature>();
	IFeedable* Feedable = Cast<IFeedable>((UObject*)Creature);
	ASSERT_NE(Feedable, nullptr);
	EXPECT_EQ(Feedable->Feed(FMeal()), 1);
	UFunction* Feed = UFeedable::StaticClass()->FindFunctionByName(TEXT("Feed"));
	FStructOnScope Frame(Feed);
	Creature->ProcessEvent(Feed, Frame.GetStructMemory());
	EXPECT_EQ(Creature->Eaten, 2);
	EXPECT_EQ(Cast<IFeedable>((UObject*)NewObject<UHerd>()), nullptr);
}

TEST(Reflection, DynamicDelegatesCallByNameAndForgetTheDead)
{
	UCreature* Source = NewObject<UCreature>();
	UCreature* Target = NewObject<UCreature>();
	Source->OnFed.AddDynamic(Target, &UCreature::NoteFood);
	Source->OnFed.AddUniqueDynamic(Target, &UCreature::NoteFood);
	Source->Feed(FMeal());
	EXPECT_EQ(Target->Notes.FindRef(TEXT("grass")), 1);
	Target->MarkAsGarbage();
	EXPECT_FALSE(Source->OnFed.IsBound());
	Source->Feed(FMeal());
	EXPECT_EQ(Target->Notes.FindRef(TEXT("grass")), 1);
}
} // namespace
