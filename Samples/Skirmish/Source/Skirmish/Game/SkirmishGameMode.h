#pragma once

#include "CoreMinimal.h"
#include "Data/SkirmishRows.h"
#include "Engine/TimerHandle.h"
#include "GameFramework/GameModeBase.h"

#include "SkirmishGameMode.generated.h"

class AController;
class ASkirmishEnemyCharacter;
class ASkirmishGameState;
class ASkirmishWaveSpawner;
class USkirmishHealthComponent;

/** The rules: waves come one after the other, the match is won after the last and lost with the player's death. */
UCLASS(Config = Game)
class SKIRMISH_API ASkirmishGameMode : public AGameModeBase
{
	GENERATED_BODY()

public:
	ASkirmishGameMode();

	virtual void StartPlay() override;

	/** To be called once, when the player's character dies. */
	void NotifyPlayerDied();

protected:
	virtual void EndPlay(const EEndPlayReason::Type Reason) override;

private:
	UFUNCTION()
	void HandleEnemyDied(USkirmishHealthComponent* Health, AController* Killer, AActor* Causer);

	void HandleEnemySpawned(ASkirmishEnemyCharacter& Enemy);
	void StartNextWave();
	void FinishWave();
	void FinishMatch(bool bWon);
	void Restart();

	/** Takes the step after so many seconds, in place of the step that was waiting. */
	void After(float Seconds, void (ASkirmishGameMode::*Step)());

	ASkirmishWaveSpawner* FindOrMakeSpawner();
	ASkirmishGameState& GetMatch() const;

	/** Seconds until the first wave. */
	UPROPERTY(Config, EditDefaultsOnly, Category = "Match")
	float FirstWaveDelay = 3.0f;

	/** Seconds between two waves. */
	UPROPERTY(Config, EditDefaultsOnly, Category = "Match")
	float Intermission = 5.0f;

	/** Seconds that the result stands before the match begins anew. */
	UPROPERTY(Config, EditDefaultsOnly, Category = "Match")
	float RestartDelay = 6.0f;

	UPROPERTY(Transient)
	TObjectPtr<ASkirmishWaveSpawner> Spawner;

	TArray<FSkirmishWaveRow> Waves;
	FTimerHandle PhaseTimer;
};
