#pragma once

#include "CoreMinimal.h"
#include "GameFramework/GameStateBase.h"

#include "SkirmishGameState.generated.h"

/** How the match stands. */
UENUM(BlueprintType)
enum class ESkirmishPhase : uint8
{
	/** Before the first wave, and between two. */
	Waiting,
	Fighting,
	Won,
	Lost
};

DECLARE_DYNAMIC_MULTICAST_DELEGATE_OneParam(FSkirmishPhaseChanged, ESkirmishPhase, Phase);

/** What everybody may know of the match. ASkirmishGameMode alone changes it. */
UCLASS()
class SKIRMISH_API ASkirmishGameState : public AGameStateBase
{
	GENERATED_BODY()

public:
	void StartWave(int32 EnemyCount);
	void EndWave();
	void EndMatch(bool bWon);

	/** Takes an enemy off the wave. The score is nought for one that nobody shot. */
	void RemoveEnemy(int32 ScoreForIt);

	void SetWaveCount(int32 InWaveCount) { WaveCount = InWaveCount; }

	UFUNCTION(BlueprintPure, Category = "Match")
	ESkirmishPhase GetPhase() const { return Phase; }

	UFUNCTION(BlueprintPure, Category = "Match")
	bool IsOver() const { return Phase == ESkirmishPhase::Won || Phase == ESkirmishPhase::Lost; }

	/** Counted from 1; 0 before the first one. */
	UFUNCTION(BlueprintPure, Category = "Match")
	int32 GetWave() const { return Wave; }

	UFUNCTION(BlueprintPure, Category = "Match")
	int32 GetWaveCount() const { return WaveCount; }

	/** Alive or still to come in this wave. */
	UFUNCTION(BlueprintPure, Category = "Match")
	int32 GetEnemiesLeft() const { return EnemiesLeft; }

	UFUNCTION(BlueprintPure, Category = "Match")
	int32 GetScore() const { return Score; }

	UPROPERTY(BlueprintAssignable, Category = "Match")
	FSkirmishPhaseChanged OnPhaseChanged;

private:
	void SetPhase(ESkirmishPhase NewPhase);

	ESkirmishPhase Phase = ESkirmishPhase::Waiting;
	int32 Wave = 0;
	int32 WaveCount = 0;
	int32 EnemiesLeft = 0;
	int32 Score = 0;
};
