#include "Characters/SkirmishEnemyCharacter.h"

#include "AI/SkirmishEnemyController.h"
#include "Data/SkirmishRows.h"
#include "Engine/World.h"
#include "GameFramework/CharacterMovementComponent.h"
#include "GameFramework/DamageType.h"
#include "Health/SkirmishHealthComponent.h"
#include "Kismet/GameplayStatics.h"

ASkirmishEnemyCharacter::ASkirmishEnemyCharacter()
{
	AIControllerClass = ASkirmishEnemyController::StaticClass();
	AutoPossessAI = EAutoPossessAI::PlacedInWorldOrSpawned;

	bUseControllerRotationYaw = false;
	// Turns to what the controller has its eye on at a walker's pace, instead of snapping round.
	GetCharacterMovement()->bUseControllerDesiredRotation = true;
	GetCharacterMovement()->MaxWalkSpeed = 330.0f;
	// Without avoidance a wave walks in single file, one pushing the next.
	GetCharacterMovement()->bUseRVOAvoidance = true;
}

void ASkirmishEnemyCharacter::ApplyWave(const FSkirmishWaveRow& Wave)
{
	GetHealth()->ScaleMaxHealth(Wave.HealthScale);
	GetCharacterMovement()->MaxWalkSpeed *= Wave.SpeedScale;
}

bool ASkirmishEnemyCharacter::TryStrike(AActor& Target)
{
	const double Now = GetWorld()->GetTimeSeconds();
	if (IsDead() || Now < NextStrikeSeconds || GetDistanceTo(&Target) > Reach)
	{
		return false;
	}
	NextStrikeSeconds = Now + SecondsBetweenStrikes;
	UGameplayStatics::ApplyDamage(&Target, StrikeDamage, GetController(), this, UDamageType::StaticClass());
	return true;
}

void ASkirmishEnemyCharacter::Die()
{
	DetachFromControllerPendingDestroy();
	SetLifeSpan(BodySeconds);
}
