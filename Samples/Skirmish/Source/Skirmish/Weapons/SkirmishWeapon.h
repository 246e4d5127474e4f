#pragma once

#include "CoreMinimal.h"
#include "Data/SkirmishRows.h"
#include "Engine/TimerHandle.h"
#include "GameFramework/Actor.h"

#include "SkirmishWeapon.generated.h"

class UStaticMeshComponent;

/** A hitscan weapon in a pawn's hands. The owner decides when the trigger is down, the table decides all else. */
UCLASS()
class SKIRMISH_API ASkirmishWeapon : public AActor
{
	GENERATED_BODY()

public:
	ASkirmishWeapon();

	/** Takes the table's figures for this weapon, and full ammunition. False when the table doesn't have it. */
	bool Equip(FName InWeaponName);

	/** Pulls the trigger and holds it: the weapon fires at its rate until StopFire. */
	UFUNCTION(BlueprintCallable, Category = "Weapon")
	void StartFire();

	UFUNCTION(BlueprintCallable, Category = "Weapon")
	void StopFire();

	/**
	 * Fires one round, whatever the rate of fire. An empty magazine is reloaded instead.
	 *
	 * @return whether a round was fired.
	 */
	UFUNCTION(BlueprintCallable, Category = "Weapon")
	bool TryFire();

	/** Begins to fill the magazine from the reserve. Does nothing when it's full, or the reserve is spent. */
	UFUNCTION(BlueprintCallable, Category = "Weapon")
	void StartReload();

	/** Breaks off firing and reloading, as when the weapon is put away. */
	void Holster();

	/** Adds magazines to the reserve. False when the reserve is full already. */
	bool AddMagazines(int32 Count);

	UFUNCTION(BlueprintPure, Category = "Weapon")
	int32 GetAmmoInMagazine() const { return AmmoInMagazine; }

	UFUNCTION(BlueprintPure, Category = "Weapon")
	int32 GetReserveAmmo() const { return ReserveAmmo; }

	UFUNCTION(BlueprintPure, Category = "Weapon")
	bool IsReloading() const { return bReloading; }

	UFUNCTION(BlueprintPure, Category = "Weapon")
	FName GetWeaponName() const { return WeaponName; }

protected:
	virtual void EndPlay(const EEndPlayReason::Type Reason) override;

private:
	void FireWhileTriggerIsDown();
	void FinishReload();

	/** Where rounds start and where they head. False when nobody aims: the owner has no controller. */
	bool GetAim(FVector& OutStart, FVector& OutDirection) const;

	/** Traces all pellets of one round. True when one of them hurt somebody. */
	bool FirePellets();
	bool FirePellet(const FVector& Start, const FVector& Direction);

	UPROPERTY(VisibleAnywhere, Category = "Components")
	TObjectPtr<UStaticMeshComponent> Mesh;

	UPROPERTY(VisibleInstanceOnly, Transient, Category = "Weapon")
	FName WeaponName;

	UPROPERTY(VisibleInstanceOnly, Transient, Category = "Weapon")
	FSkirmishWeaponRow Stats;

	UPROPERTY(VisibleInstanceOnly, Transient, Category = "Weapon")
	int32 AmmoInMagazine = 0;

	UPROPERTY(VisibleInstanceOnly, Transient, Category = "Weapon")
	int32 ReserveAmmo = 0;

	bool bReloading = false;

	/** World time of the last round. Long ago at first, so that the first pull fires at once. */
	double LastShotSeconds = -1000.0;

	FTimerHandle FireTimer;
	FTimerHandle ReloadTimer;
};
