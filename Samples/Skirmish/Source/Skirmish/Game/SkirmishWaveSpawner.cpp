#include "Game/SkirmishWaveSpawner.h"

#include "Characters/SkirmishEnemyCharacter.h"
#include "Components/SceneComponent.h"
#include "Engine/World.h"
#include "TimerManager.h"

ASkirmishWaveSpawner::ASkirmishWaveSpawner()
{
	PrimaryActorTick.bCanEverTick = false;
	RootComponent = CreateDefaultSubobject<USceneComponent>(TEXT("Root"));
	EnemyClass = ASkirmishEnemyCharacter::StaticClass();
}

void ASkirmishWaveSpawner::EndPlay(const EEndPlayReason::Type Reason)
{
	StopWave();
	Super::EndPlay(Reason);
}

void ASkirmishWaveSpawner::StartWave(const FSkirmishWaveRow& InWave)
{
	Wave = InWave;
	SpawnedCount = 0;
	const float Interval = FMath::Max(0.05f, Wave.SpawnInterval);
	GetWorldTimerManager().SetTimer(SpawnTimer, this, &ASkirmishWaveSpawner::SpawnNext, Interval, true, 0.0f);
}

void ASkirmishWaveSpawner::StopWave()
{
	GetWorldTimerManager().ClearTimer(SpawnTimer);
}

void ASkirmishWaveSpawner::SpawnNext()
{
	if (SpawnedCount >= Wave.EnemyCount)
	{
		StopWave();
		return;
	}
	const FTransform Where = GetSpawnTransform(SpawnedCount);
	auto* Enemy = GetWorld()->SpawnActorDeferred<ASkirmishEnemyCharacter>(
		EnemyClass, Where, this, nullptr, ESpawnActorCollisionHandlingMethod::AdjustIfPossibleButAlwaysSpawn);
	if (!Enemy)
	{
		// Not counted: the timer tries again, and the wave stays as large as the table says.
		return;
	}
	++SpawnedCount;
	Enemy->ApplyWave(Wave);
	Enemy->FinishSpawning(Where);
	OnEnemySpawned.Broadcast(*Enemy);
}

FTransform ASkirmishWaveSpawner::GetSpawnTransform(int32 Index) const
{
	if (!SpawnPoints.IsEmpty())
	{
		const AActor* Point = SpawnPoints[Index % SpawnPoints.Num()];
		return IsValid(Point) ? FTransform(Point->GetActorRotation(), Point->GetActorLocation()) : GetActorTransform();
	}
	const double Degrees = 360.0 * Index / FMath::Max(1, Wave.EnemyCount);
	const FVector Outward = FRotator(0.0, Degrees, 0.0).Vector();
	return FTransform(FRotator(0.0, Degrees + 180.0, 0.0), GetActorLocation() + Outward * RingRadius);
}
