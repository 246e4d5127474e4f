#pragma once

#include "CoreMinimal.h"
#include "Data/SkirmishRows.h"
#include "Engine/TimerHandle.h"
#include "GameFramework/Actor.h"

#include "SkirmishWaveSpawner.generated.h"

class ASkirmishEnemyCharacter;

DECLARE_MULTICAST_DELEGATE_OneParam(FSkirmishEnemySpawned, ASkirmishEnemyCharacter&);

/** Brings a wave into the arena, one enemy after the other: at its points in turn, or in a ring around itself. */
UCLASS()
class SKIRMISH_API ASkirmishWaveSpawner : public AActor
{
	GENERATED_BODY()

public:
	ASkirmishWaveSpawner();

	/** Begins a wave. One that is under way is given up: what it hasn't spawned, it never will. */
	void StartWave(const FSkirmishWaveRow& InWave);

	void StopWave();

	/** Told as soon as an enemy is in play. */
	FSkirmishEnemySpawned OnEnemySpawned;

protected:
	virtual void EndPlay(const EEndPlayReason::Type Reason) override;

private:
	void SpawnNext();
	FTransform GetSpawnTransform(int32 Index) const;

	UPROPERTY(EditAnywhere, Category = "Spawner")
	TSubclassOf<ASkirmishEnemyCharacter> EnemyClass;

	/** Where enemies appear, in turn. When it's empty, they appear in a ring around the spawner. */
	UPROPERTY(EditInstanceOnly, Category = "Spawner")
	TArray<TObjectPtr<AActor>> SpawnPoints;

	/** In centimetres. */
	UPROPERTY(EditAnywhere, Category = "Spawner", meta = (ClampMin = "100"))
	float RingRadius = 1200.0f;

	FSkirmishWaveRow Wave;
	int32 SpawnedCount = 0;
	FTimerHandle SpawnTimer;
};
