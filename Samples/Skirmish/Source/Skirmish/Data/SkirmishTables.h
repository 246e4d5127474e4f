#pragma once

#include "CoreMinimal.h"
#include "Subsystems/GameInstanceSubsystem.h"

#include "SkirmishTables.generated.h"

class UDataTable;
struct FSkirmishWaveRow;
struct FSkirmishWeaponRow;

/** The tables under Content/Data, read once when the game starts. */
UCLASS()
class SKIRMISH_API USkirmishTables : public UGameInstanceSubsystem
{
	GENERATED_BODY()

public:
	virtual void Initialize(FSubsystemCollectionBase& Collection) override;

	/** Null, with a warning in the log, when no weapon has this name. The row lives as long as the game. */
	const FSkirmishWeaponRow* FindWeapon(FName WeaponName) const;

	/** All waves in the file's order. Empty when the file is missing. */
	TArray<FSkirmishWaveRow*> GetWaves() const;

private:
	UPROPERTY(Transient)
	TObjectPtr<UDataTable> Weapons;

	UPROPERTY(Transient)
	TObjectPtr<UDataTable> Waves;
};
