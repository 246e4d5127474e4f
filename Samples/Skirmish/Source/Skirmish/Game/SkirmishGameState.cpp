#include "Game/SkirmishGameState.h"

void ASkirmishGameState::StartWave(int32 EnemyCount)
{
	++Wave;
	EnemiesLeft = EnemyCount;
	SetPhase(ESkirmishPhase::Fighting);
}

void ASkirmishGameState::EndWave()
{
	SetPhase(ESkirmishPhase::Waiting);
}

void ASkirmishGameState::EndMatch(bool bWon)
{
	SetPhase(bWon ? ESkirmishPhase::Won : ESkirmishPhase::Lost);
}

void ASkirmishGameState::RemoveEnemy(int32 ScoreForIt)
{
	EnemiesLeft = FMath::Max(0, EnemiesLeft - 1);
	Score += ScoreForIt;
}

void ASkirmishGameState::SetPhase(ESkirmishPhase NewPhase)
{
	if (Phase == NewPhase)
	{
		return;
	}
	Phase = NewPhase;
	OnPhaseChanged.Broadcast(Phase);
}
