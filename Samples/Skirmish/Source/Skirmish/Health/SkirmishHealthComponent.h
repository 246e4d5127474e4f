#pragma once

#include "Components/ActorComponent.h"
#include "CoreMinimal.h"

#include "SkirmishHealthComponent.generated.h"

class AController;
class UDamageType;
class USkirmishHealthComponent;

DECLARE_DYNAMIC_MULTICAST_DELEGATE_ThreeParams(
	FSkirmishHealthChanged, USkirmishHealthComponent*, Health, float, OldHealth, float, NewHealth);
DECLARE_DYNAMIC_MULTICAST_DELEGATE_ThreeParams(
	FSkirmishDied, USkirmishHealthComponent*, Health, AController*, Killer, AActor*, Causer);

/** Hit points of an actor. Listens to the owner's damage, so that anything the engine can hurt can carry one. */
UCLASS(ClassGroup = (Skirmish), meta = (BlueprintSpawnableComponent))
class SKIRMISH_API USkirmishHealthComponent : public UActorComponent
{
	GENERATED_BODY()

public:
	USkirmishHealthComponent();

	/** Adds hit points, up to the maximum. False when nothing was added: the owner is dead, or as healthy as can be. */
	UFUNCTION(BlueprintCallable, Category = "Health")
	bool Heal(float Amount);

	/** Takes all hit points at once, whatever the owner's resistance. Does nothing to the dead. */
	UFUNCTION(BlueprintCallable, Category = "Health")
	void Kill(AController* Killer, AActor* Causer);

	/** Multiplies the maximum. Call it before the owner begins play: current hit points don't follow later. */
	void ScaleMaxHealth(float Scale);

	UFUNCTION(BlueprintPure, Category = "Health")
	bool IsDead() const { return bDead; }

	UFUNCTION(BlueprintPure, Category = "Health")
	float GetHealth() const { return CurrentHealth; }

	/** From 0 (dead) to 1 (untouched). */
	UFUNCTION(BlueprintPure, Category = "Health")
	float GetHealthFraction() const;

	/** Told after each change, before OnDied. */
	UPROPERTY(BlueprintAssignable, Category = "Health")
	FSkirmishHealthChanged OnHealthChanged;

	/** Told once. Killer and causer may be null: falling out of the world has neither. */
	UPROPERTY(BlueprintAssignable, Category = "Health")
	FSkirmishDied OnDied;

protected:
	virtual void BeginPlay() override;
	virtual void EndPlay(const EEndPlayReason::Type Reason) override;

private:
	UFUNCTION()
	void HandleDamage(AActor* DamagedActor, float Damage, const UDamageType* DamageType, AController* InstigatedBy,
		AActor* DamageCauser);

	void SetHealth(float NewHealth);
	void TakeHealth(float Amount, AController* Killer, AActor* Causer);

	UPROPERTY(EditAnywhere, Category = "Health", meta = (ClampMin = "1"))
	float MaxHealth = 100.0f;

	UPROPERTY(VisibleInstanceOnly, Transient, Category = "Health")
	float CurrentHealth = 0.0f;

	bool bDead = false;
};
