#pragma once

#include "CoreMinimal.h"
#include "Engine/DataTable.h"

#include "SkirmishRows.generated.h"

/** A row of Content/Data/Weapons.csv. */
USTRUCT(BlueprintType)
struct SKIRMISH_API FSkirmishWeaponRow : public FTableRowBase
{
	GENERATED_BODY()

	/** Hit points that one pellet takes. */
	UPROPERTY(EditAnywhere, BlueprintReadOnly, Category = "Weapon")
	float Damage = 10.0f;

	UPROPERTY(EditAnywhere, BlueprintReadOnly, Category = "Weapon")
	float RoundsPerSecond = 1.0f;

	UPROPERTY(EditAnywhere, BlueprintReadOnly, Category = "Weapon")
	int32 MagazineSize = 1;

	/** Rounds carried beside a full magazine, at the start and at most. */
	UPROPERTY(EditAnywhere, BlueprintReadOnly, Category = "Weapon")
	int32 ReserveAmmo = 0;

	/** Traces that leave the muzzle for each round. */
	UPROPERTY(EditAnywhere, BlueprintReadOnly, Category = "Weapon")
	int32 Pellets = 1;

	/** Half angle of the cone that pellets scatter in. */
	UPROPERTY(EditAnywhere, BlueprintReadOnly, Category = "Weapon")
	float SpreadDegrees = 0.0f;

	/** In centimetres. */
	UPROPERTY(EditAnywhere, BlueprintReadOnly, Category = "Weapon")
	float Range = 5000.0f;

	UPROPERTY(EditAnywhere, BlueprintReadOnly, Category = "Weapon")
	float ReloadSeconds = 1.0f;
};

/** A row of Content/Data/Waves.csv. */
USTRUCT(BlueprintType)
struct SKIRMISH_API FSkirmishWaveRow : public FTableRowBase
{
	GENERATED_BODY()

	UPROPERTY(EditAnywhere, BlueprintReadOnly, Category = "Wave")
	int32 EnemyCount = 1;

	/** Seconds between two enemies. */
	UPROPERTY(EditAnywhere, BlueprintReadOnly, Category = "Wave")
	float SpawnInterval = 1.0f;

	/** Multiplies the enemies' hit points. */
	UPROPERTY(EditAnywhere, BlueprintReadOnly, Category = "Wave")
	float HealthScale = 1.0f;

	/** Multiplies the enemies' walking speed. */
	UPROPERTY(EditAnywhere, BlueprintReadOnly, Category = "Wave")
	float SpeedScale = 1.0f;
};
