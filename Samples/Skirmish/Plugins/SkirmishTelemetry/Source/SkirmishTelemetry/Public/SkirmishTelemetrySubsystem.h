#pragma once

#include "CoreMinimal.h"
#include "Subsystems/GameInstanceSubsystem.h"

#include "SkirmishTelemetrySubsystem.generated.h"

/** What one weapon did in a session. */
USTRUCT(BlueprintType)
struct SKIRMISHTELEMETRY_API FSkirmishWeaponTally
{
	GENERATED_BODY()

	UPROPERTY(BlueprintReadOnly, Category = "Telemetry")
	int32 Shots = 0;

	/** Shots that hurt somebody; a shotgun's round counts once, however many pellets struck. */
	UPROPERTY(BlueprintReadOnly, Category = "Telemetry")
	int32 Hits = 0;

	UPROPERTY(BlueprintReadOnly, Category = "Telemetry")
	int32 Kills = 0;
};

/**
 * Counts shots, hits and kills from the game's start to its end, then writes Saved/Telemetry/<date and time>.csv.
 * Game thread only.
 */
UCLASS()
class SKIRMISHTELEMETRY_API USkirmishTelemetrySubsystem : public UGameInstanceSubsystem
{
	GENERATED_BODY()

public:
	virtual void Deinitialize() override;

	UFUNCTION(BlueprintCallable, Category = "Telemetry")
	void RecordShot(FName Weapon, bool bHit);

	UFUNCTION(BlueprintCallable, Category = "Telemetry")
	void RecordKill(FName Weapon);

	/** All zero for a weapon that was never fired. */
	UFUNCTION(BlueprintPure, Category = "Telemetry")
	FSkirmishWeaponTally GetTally(FName Weapon) const;

private:
	/** A header line, then a line for each weapon in the order of their first use. */
	FString FormatCsv() const;

	UPROPERTY(Transient)
	TMap<FName, FSkirmishWeaponTally> Tallies;
};
