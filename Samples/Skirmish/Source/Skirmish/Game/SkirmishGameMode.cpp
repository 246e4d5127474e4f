#include "Game/SkirmishGameMode.h"

#include "Characters/SkirmishEnemyCharacter.h"
#include "Characters/SkirmishPlayerCharacter.h"
#include "Data/SkirmishTables.h"
#include "Engine/GameInstance.h"
#include "Engine/World.h"
#include "EngineUtils.h"
#include "Game/SkirmishGameState.h"
#include "Game/SkirmishPlayerController.h"
#include "Game/SkirmishWaveSpawner.h"
#include "GameFramework/PlayerStart.h"
#include "Health/SkirmishHealthComponent.h"
#include "Kismet/GameplayStatics.h"
#include "Skirmish.h"
#include "SkirmishTelemetrySubsystem.h"
#include "TimerManager.h"
#include "UI/SkirmishHUD.h"
#include "Weapons/SkirmishWeapon.h"

ASkirmishGameMode::ASkirmishGameMode()
{
	DefaultPawnClass = ASkirmishPlayerCharacter::StaticClass();
	PlayerControllerClass = ASkirmishPlayerController::StaticClass();
	GameStateClass = ASkirmishGameState::StaticClass();
	HUDClass = ASkirmishHUD::StaticClass();
}

void ASkirmishGameMode::StartPlay()
{
	Super::StartPlay();

	if (const auto* Tables = UGameInstance::GetSubsystem<USkirmishTables>(GetGameInstance()))
	{
		for (const FSkirmishWaveRow* Row : Tables->GetWaves())
		{
			// A wave of nobody would never come to its end.
			if (Row->EnemyCount > 0)
			{
				Waves.Add(*Row);
			}
		}
	}
	GetMatch().SetWaveCount(Waves.Num());
	Spawner = FindOrMakeSpawner();
	if (Waves.IsEmpty() || !Spawner)
	{
		UE_LOG(LogSkirmish, Error, TEXT("There is nothing to fight: %d waves, spawner %s"), Waves.Num(),
			*GetNameSafe(Spawner));
		return;
	}
	Spawner->OnEnemySpawned.AddUObject(this, &ASkirmishGameMode::HandleEnemySpawned);
	After(FirstWaveDelay, &ASkirmishGameMode::StartNextWave);
}

void ASkirmishGameMode::EndPlay(const EEndPlayReason::Type Reason)
{
	GetWorldTimerManager().ClearTimer(PhaseTimer);
	if (IsValid(Spawner))
	{
		Spawner->OnEnemySpawned.RemoveAll(this);
	}
	Super::EndPlay(Reason);
}

void ASkirmishGameMode::NotifyPlayerDied()
{
	FinishMatch(false);
}

void ASkirmishGameMode::StartNextWave()
{
	const FSkirmishWaveRow& Wave = Waves[GetMatch().GetWave()];
	GetMatch().StartWave(Wave.EnemyCount);
	Spawner->StartWave(Wave);
	UE_LOG(LogSkirmish, Log, TEXT("Wave %d: %d enemies"), GetMatch().GetWave(), Wave.EnemyCount);
}

void ASkirmishGameMode::HandleEnemySpawned(ASkirmishEnemyCharacter& Enemy)
{
	Enemy.GetHealth()->OnDied.AddUniqueDynamic(this, &ASkirmishGameMode::HandleEnemyDied);
}

void ASkirmishGameMode::HandleEnemyDied(USkirmishHealthComponent* Health, AController* Killer, AActor* Causer)
{
	Health->OnDied.RemoveDynamic(this, &ASkirmishGameMode::HandleEnemyDied);
	if (GetMatch().IsOver())
	{
		return;
	}

	const auto* Enemy = Cast<ASkirmishEnemyCharacter>(Health->GetOwner());
	const auto* Weapon = Cast<ASkirmishWeapon>(Causer);
	GetMatch().RemoveEnemy(Enemy && Weapon ? Enemy->GetScore() : 0);
	auto* Telemetry = UGameInstance::GetSubsystem<USkirmishTelemetrySubsystem>(GetGameInstance());
	if (Telemetry && Weapon)
	{
		Telemetry->RecordKill(Weapon->GetWeaponName());
	}
	if (GetMatch().GetEnemiesLeft() == 0)
	{
		FinishWave();
	}
}

void ASkirmishGameMode::FinishWave()
{
	if (GetMatch().GetWave() >= Waves.Num())
	{
		FinishMatch(true);
		return;
	}
	GetMatch().EndWave();
	After(Intermission, &ASkirmishGameMode::StartNextWave);
}

void ASkirmishGameMode::FinishMatch(bool bWon)
{
	if (GetMatch().IsOver())
	{
		return;
	}
	if (Spawner)
	{
		Spawner->StopWave();
	}
	GetMatch().EndMatch(bWon);
	After(RestartDelay, &ASkirmishGameMode::Restart);
}

void ASkirmishGameMode::Restart()
{
	UGameplayStatics::OpenLevel(this, FName(*UGameplayStatics::GetCurrentLevelName(this)));
}

void ASkirmishGameMode::After(float Seconds, void (ASkirmishGameMode::*Step)())
{
	// A timer of no length would be cleared instead of set.
	GetWorldTimerManager().SetTimer(PhaseTimer, this, Step, FMath::Max(0.05f, Seconds), false);
}

ASkirmishWaveSpawner* ASkirmishGameMode::FindOrMakeSpawner()
{
	const TActorIterator<ASkirmishWaveSpawner> Placed(GetWorld());
	if (Placed)
	{
		return *Placed;
	}
	// A level that nobody has prepared gets a ring of enemies around the place where players start.
	const AActor* Start = UGameplayStatics::GetActorOfClass(this, APlayerStart::StaticClass());
	const FVector Where = Start ? Start->GetActorLocation() : FVector::ZeroVector;
	return GetWorld()->SpawnActor<ASkirmishWaveSpawner>(Where, FRotator::ZeroRotator);
}

ASkirmishGameState& ASkirmishGameMode::GetMatch() const
{
	return *CastChecked<ASkirmishGameState>(GameState);
}
