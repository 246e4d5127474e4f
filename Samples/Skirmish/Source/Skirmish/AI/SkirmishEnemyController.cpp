#include "AI/SkirmishEnemyController.h"

#include "Characters/SkirmishEnemyCharacter.h"
#include "Characters/SkirmishPlayerCharacter.h"
#include "Kismet/GameplayStatics.h"
#include "Navigation/PathFollowingComponent.h"
#include "TimerManager.h"

ASkirmishEnemyController::ASkirmishEnemyController()
{
	PrimaryActorTick.bCanEverTick = true;
}

void ASkirmishEnemyController::OnPossess(APawn* InPawn)
{
	Super::OnPossess(InPawn);
	// A wave that spawns together must not think in the same frame.
	const float FirstDelay = FMath::FRandRange(0.0f, SecondsBetweenThoughts);
	GetWorldTimerManager().SetTimer(
		ThinkTimer, this, &ASkirmishEnemyController::Think, SecondsBetweenThoughts, true, FirstDelay);
}

void ASkirmishEnemyController::OnUnPossess()
{
	GetWorldTimerManager().ClearTimer(ThinkTimer);
	Super::OnUnPossess();
}

void ASkirmishEnemyController::Think()
{
	ASkirmishEnemyCharacter* Enemy = GetPawn<ASkirmishEnemyCharacter>();
	ASkirmishPlayerCharacter* Target = FindTarget();
	if (!Enemy || !Target)
	{
		StopMovement();
		ClearFocus(EAIFocusPriority::Gameplay);
		return;
	}
	SetFocus(Target);
	if (!Enemy->TryStrike(*Target))
	{
		Chase(*Enemy, *Target);
	}
}

void ASkirmishEnemyController::Chase(const ASkirmishEnemyCharacter& Enemy, ASkirmishPlayerCharacter& Target)
{
	// A move under way follows its goal by itself.
	if (GetMoveStatus() != EPathFollowingStatus::Idle)
	{
		return;
	}
	// Stop well inside the reach: who stops at its edge strikes at air when the target takes half a step.
	const float Nearness = Enemy.GetReach() * 0.75f;
	if (MoveToActor(&Target, Nearness, false) == EPathFollowingRequestResult::Failed)
	{
		// A level without a navigation mesh is played all the same, as long as nothing stands in the way.
		MoveToActor(&Target, Nearness, false, false);
	}
}

ASkirmishPlayerCharacter* ASkirmishEnemyController::FindTarget() const
{
	auto* Player = Cast<ASkirmishPlayerCharacter>(UGameplayStatics::GetPlayerPawn(this, 0));
	return Player && !Player->IsDead() ? Player : nullptr;
}
