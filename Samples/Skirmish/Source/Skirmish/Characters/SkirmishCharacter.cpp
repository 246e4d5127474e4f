#include "Characters/SkirmishCharacter.h"

#include "Components/CapsuleComponent.h"
#include "Components/StaticMeshComponent.h"
#include "Engine/StaticMesh.h"
#include "GameFramework/CharacterMovementComponent.h"
#include "Health/SkirmishHealthComponent.h"
#include "UObject/ConstructorHelpers.h"

ASkirmishCharacter::ASkirmishCharacter()
{
	PrimaryActorTick.bCanEverTick = false;
	GetCapsuleComponent()->InitCapsuleSize(42.0f, 96.0f);

	Body = CreateDefaultSubobject<UStaticMeshComponent>(TEXT("Body"));
	Body->SetupAttachment(GetCapsuleComponent());
	// The capsule is what moves and what is hit.
	Body->SetCollisionEnabled(ECollisionEnabled::NoCollision);
	Body->SetRelativeScale3D(FVector(0.7, 0.7, 1.9));

	static ConstructorHelpers::FObjectFinder<UStaticMesh> Shape(TEXT("/Engine/BasicShapes/Cylinder.Cylinder"));
	Body->SetStaticMesh(Shape.Object);

	Health = CreateDefaultSubobject<USkirmishHealthComponent>(TEXT("Health"));
}

void ASkirmishCharacter::BeginPlay()
{
	Super::BeginPlay();
	Health->OnDied.AddUniqueDynamic(this, &ASkirmishCharacter::HandleDied);
}

void ASkirmishCharacter::EndPlay(const EEndPlayReason::Type Reason)
{
	Health->OnDied.RemoveDynamic(this, &ASkirmishCharacter::HandleDied);
	Super::EndPlay(Reason);
}

bool ASkirmishCharacter::IsDead() const
{
	return Health->IsDead();
}

void ASkirmishCharacter::FellOutOfWorld(const UDamageType& DamageType)
{
	// The living die first, so that everybody hears of it. A body may simply vanish.
	if (IsDead())
	{
		Super::FellOutOfWorld(DamageType);
		return;
	}
	Health->Kill(nullptr, nullptr);
}

void ASkirmishCharacter::HandleDied(USkirmishHealthComponent* DeadHealth, AController* Killer, AActor* Causer)
{
	GetCharacterMovement()->StopMovementImmediately();
	GetCharacterMovement()->DisableMovement();
	GetCapsuleComponent()->SetCollisionEnabled(ECollisionEnabled::NoCollision);
	// Lie down, for want of an animation.
	Body->SetRelativeLocationAndRotation(FVector(0.0, 0.0, -60.0), FRotator(90.0, 0.0, 0.0));
	Die();
}
