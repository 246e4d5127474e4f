#pragma once

#include "Characters/SkirmishCharacter.h"
#include "CoreMinimal.h"

#include "SkirmishPlayerCharacter.generated.h"

class ASkirmishWeapon;
class UCameraComponent;
class USpringArmComponent;
struct FInputActionValue;

/** The player: seen over the shoulder, turned where the camera looks, with a weapon in hand and others on the back. */
UCLASS()
class SKIRMISH_API ASkirmishPlayerCharacter : public ASkirmishCharacter
{
	GENERATED_BODY()

public:
	ASkirmishPlayerCharacter();

	/** The weapon in hand. Null before play begins, and when no weapon of the loadout is in the table. */
	UFUNCTION(BlueprintPure, Category = "Weapon")
	ASkirmishWeapon* GetWeapon() const;

protected:
	virtual void BeginPlay() override;
	virtual void EndPlay(const EEndPlayReason::Type Reason) override;
	virtual void SetupPlayerInputComponent(UInputComponent* PlayerInputComponent) override;
	virtual void Die() override;

private:
	void Move(const FInputActionValue& Value);
	void Look(const FInputActionValue& Value);
	void StartFire();
	void StopFire();
	void Reload();
	void SwitchWeapon();

	void SpawnLoadout();

	UPROPERTY(VisibleAnywhere, Category = "Components")
	TObjectPtr<USpringArmComponent> CameraBoom;

	UPROPERTY(VisibleAnywhere, Category = "Components")
	TObjectPtr<UCameraComponent> Camera;

	/** Rows of the weapon table, the first one in hand at the start. */
	UPROPERTY(EditDefaultsOnly, Category = "Weapon")
	TArray<FName> Loadout;

	/** Where a weapon is held, in the body's space. */
	UPROPERTY(EditDefaultsOnly, Category = "Weapon")
	FVector GripOffset = FVector(45.0, 32.0, 30.0);

	UPROPERTY(Transient)
	TArray<TObjectPtr<ASkirmishWeapon>> Weapons;

	int32 WeaponInHand = 0;
};
