#pragma once

#include "UObject/CoreStructs.h"
#include "UObject/Interface.h"
#include "UObject/UnrealType.h"

#include "Creature.generated.h"

class UHerd;

UENUM(BlueprintType)
enum class EMood : uint8
{
	Calm UMETA(DisplayName = "At rest"),
	/** Runs away. */
	Afraid = 4,
	VeryAngry
};

UENUM()
enum EOldMood : int
{
	MOOD_Low,
	MOOD_High
};

DECLARE_DYNAMIC_MULTICAST_DELEGATE_TwoParams(FOnFed, FString, Food, int32, Amount);
DECLARE_DYNAMIC_DELEGATE_RetVal_OneParam(bool, FMayEat, const FString&, Food);

USTRUCT(BlueprintType)
struct FMeal
{
	GENERATED_BODY()

	UPROPERTY(EditAnywhere, Category = "Meal")
	FString Food = TEXT("grass");

	UPROPERTY()
	int32 Amount = 1;

	UPROPERTY()
	TArray<FName> Tags;

	UPROPERTY()
	uint8 bFresh : 1 = 1;

	UPROPERTY()
	uint8 bWarm : 1 = 0;
};

UINTERFACE()
class UFeedable : public UInterface
{
	GENERATED_BODY()
};

class IFeedable
{
	GENERATED_BODY()

public:
	UFUNCTION()
	virtual int32 Feed(const FMeal& Meal) = 0;
};

/** A living thing. */
UCLASS(Blueprintable)
class UCreature
	: public UObject
	, public IFeedable
{
	GENERATED_BODY()

public:
	UFUNCTION(BlueprintCallable, Category = "Creature")
	int32 Feed(const FMeal& Meal) override
	{
		Eaten += Meal.Amount;
		OnFed.Broadcast(Meal.Food, Meal.Amount);
		return Eaten;
	}

	/** Adds and says so. */
	UFUNCTION(BlueprintPure, Category = "Creature")
	static int32 Add(int32 A, int32 B = 5) { return A + B; }

	UFUNCTION(BlueprintCallable)
	bool Describe(const FString& Prefix, FString& Text, TArray<int32>& Numbers) const
	{
		Text = Prefix + Nickname;
		Numbers.Add(Eaten);
		return Eaten > 0;
	}

	UFUNCTION(BlueprintImplementableEvent)
	int32 OnTouched(int32 Strength);

	UFUNCTION(BlueprintNativeEvent)
	FString Call(const FString& Name);
	virtual FString Call_Implementation(const FString& Name) { return TEXT("native ") + Name; }

	UFUNCTION()
	void NoteFood(FString Food, int32 Amount) { Notes.Add(Food, Amount); }

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Creature", meta = (ClampMin = "0"))
	int32 Eaten = 0;

	UPROPERTY()
	FString Nickname = TEXT("Nobody");

	UPROPERTY()
	FText Title;

	UPROPERTY()
	EMood Mood = EMood::Afraid;

	UPROPERTY()
	TEnumAsByte<EOldMood> OldMood = MOOD_High;

	UPROPERTY()
	FVector Place = FVector(1, 2, 3);

	UPROPERTY()
	FMeal Meal;

	UPROPERTY()
	TArray<FMeal> Meals;

	UPROPERTY()
	TMap<FString, int32> Notes;

	UPROPERTY()
	TSet<FName> Friends;

	UPROPERTY()
	TObjectPtr<UCreature> Parent;

	UPROPERTY()
	TArray<TObjectPtr<UCreature>> Children;

	UPROPERTY()
	TMap<TObjectPtr<UCreature>, int32> Grudges;

	UPROPERTY()
	TWeakObjectPtr<UCreature> Rival;

	UPROPERTY()
	TSoftObjectPtr<UCreature> Ancestor;

	UPROPERTY()
	TSubclassOf<UCreature> Kind;

	UPROPERTY()
	TObjectPtr<UHerd> Herd;

	UPROPERTY()
	FOnFed OnFed;

	UPROPERTY()
	FMayEat MayEat;

	UPROPERTY()
	double Weights[3] = {1.5, 0.1, 1e-9};

	UPROPERTY()
	float Speed = 0.1f;

	UPROPERTY()
	int64 Big = MIN_int64;

	UPROPERTY()
	uint64 Bigger = MAX_uint64;

	UPROPERTY()
	int8 Tiny = -128;

	UPROPERTY()
	bool bAlive = true;

	int32 Unreflected = 7;
};

UCLASS()
class UHerd : public UObject
{
	GENERATED_BODY()

public:
	UHerd() { Leader = CreateDefaultSubobject<UCreature>(TEXT("Leader")); }

	UPROPERTY()
	TObjectPtr<UCreature> Leader;
};

UCLASS(Abstract)
class UAbstractThing : public UObject
{
	GENERATED_BODY()
};
