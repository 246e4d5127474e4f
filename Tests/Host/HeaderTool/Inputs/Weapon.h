#pragma once

#include "CoreMinimal.h"
#include "UObject/Object.h"

#include "Weapon.generated.h"

class ACharacter;
struct FHitResult;

/** How a weapon fires. */
UENUM(BlueprintType)
enum class EFireMode : uint8
{
	/** One shot a pull. */
	Single UMETA(DisplayName = "Single shot"),
	Burst = 3,
	Automatic = Burst + 2 UMETA(Hidden),
};

UENUM()
enum EOldStyle : int
{
	OLD_First,
	OLD_Second
};

DECLARE_DYNAMIC_MULTICAST_DELEGATE_TwoParams(FOnFired, UWeapon*, Weapon, int32, RoundsLeft);
DECLARE_DYNAMIC_DELEGATE_RetVal_OneParam(bool, FMayFire, const FString&, Reason);

// A struct nobody reflects, with members that look reflected.
struct FPlain
{
	TArray<TMap<FName, int32>> Anything{{}};
	int32 Function() const { return Anything.Num() > 0 ? 1 : 0; }
};

USTRUCT(BlueprintType)
struct WEAPONS_API FAmmunition : public FTableRowBase
{
	GENERATED_BODY()

	UPROPERTY(EditAnywhere, BlueprintReadWrite, Category = "Ammo|Basic", meta = (ClampMin = "0", ClampMax = 300))
	int32 Rounds = 30;

	UPROPERTY()
	uint8 bTracer : 1;

	UPROPERTY(meta = (EditCondition = "bTracer", EditConditionHides))
	FLinearColor Colour{1.f, 0.f, 0.f, 1.f};

	bool operator==(const FAmmunition& Other) const { return Rounds == Other.Rounds; }
	int32 operator()(int32 Value) { return Value; }
};

/**
 * A thing that shoots.
 *
 * Second paragraph with a "quote" and ünïcode.
 */
UCLASS(Abstract, Blueprintable, Config = Game, DefaultConfig, meta = (DisplayName = "Gun"),
	HideCategories = (Tags, "My Things"))
class WEAPONS_API UWeapon
	: public UObject
	, public IDamageSource
{
	GENERATED_BODY()

public:
	UWeapon(const FObjectInitializer& Initializer);
	virtual ~UWeapon() override = default;

	/** Fires once. */
	UFUNCTION(BlueprintCallable, Category = "Weapon")
	bool Fire(ACharacter* Shooter, const FVector& Direction, UPARAM(ref) FHitResult& Trace, FHitResult& Hit,
		float Spread = 1.5f, EFireMode Mode = EFireMode::Burst, const FString& Sound = TEXT("bang, \"loud\""),
		FName Tag = NAME_None);

	UFUNCTION(BlueprintPure, Category = "Weapon")
	static TArray<TSubclassOf<UWeapon>> GetKnownWeapons(
		const UObject* WorldContext, FVector Place = FVector(1, 2.5f, -3));

	UFUNCTION(BlueprintCallable)
	int32 GetRounds() const { return Magazine.Rounds; }

	UFUNCTION(BlueprintCallable, BlueprintPure = false)
	int32 CountRounds() const;

	UFUNCTION(BlueprintImplementableEvent)
	void OnJammed(int32 Severity, FString& Message);

	UFUNCTION(BlueprintNativeEvent)
	bool CanFire(const FString& Reason) const;

	UPROPERTY(BlueprintAssignable)
	FOnFired OnFired;

	UPROPERTY(Config, EditAnywhere)
	TMap<FName, TObjectPtr<ACharacter>> Owners;

	UPROPERTY(EditAnywhere, Instanced)
	TArray<TObjectPtr<UWeapon>> Attachments;

	UPROPERTY(Transient)
	TSet<FString> Names;

	UPROPERTY()
	TWeakObjectPtr<ACharacter> Holder;

	UPROPERTY()
	TSoftObjectPtr<UObject> Mesh;

	UPROPERTY(EditDefaultsOnly)
	TEnumAsByte<EOldStyle> Old;

	UPROPERTY()
	UClass* Kind;

#if WITH_EDITORONLY_DATA
	UPROPERTY(VisibleAnywhere)
	FText Note;
#endif

#if 0
	UPROPERTY()
	SomethingBroken<<< Nonsense;
#endif

protected:
	static constexpr int32 Table[] = {1, 2, 3};

	UPROPERTY()
	FAmmunition Magazine;

	UPROPERTY()
	float Damage[EFireMode_Count];

private:
	struct FNested
	{
		int32 Inside;
	};

	TUniquePtr<FNested> Nested;
};
