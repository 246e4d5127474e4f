#include "Pickups/SkirmishPickup.h"

#include "Characters/SkirmishPlayerCharacter.h"
#include "Components/SphereComponent.h"
#include "Components/StaticMeshComponent.h"
#include "Engine/StaticMesh.h"
#include "TimerManager.h"
#include "UObject/ConstructorHelpers.h"

ASkirmishPickup::ASkirmishPickup()
{
	PrimaryActorTick.bCanEverTick = true;

	Trigger = CreateDefaultSubobject<USphereComponent>(TEXT("Trigger"));
	Trigger->InitSphereRadius(80.0f);
	// Pawns alone: a pickup must neither stop bullets nor push things about.
	Trigger->SetCollisionEnabled(ECollisionEnabled::QueryOnly);
	Trigger->SetCollisionResponseToAllChannels(ECR_Ignore);
	Trigger->SetCollisionResponseToChannel(ECC_Pawn, ECR_Overlap);
	RootComponent = Trigger;

	Mesh = CreateDefaultSubobject<UStaticMeshComponent>(TEXT("Mesh"));
	Mesh->SetupAttachment(Trigger);
	Mesh->SetCollisionEnabled(ECollisionEnabled::NoCollision);
	Mesh->SetRelativeScale3D(FVector(0.4));

	static ConstructorHelpers::FObjectFinder<UStaticMesh> Shape(TEXT("/Engine/BasicShapes/Cube.Cube"));
	Mesh->SetStaticMesh(Shape.Object);
}

void ASkirmishPickup::BeginPlay()
{
	Super::BeginPlay();
	Trigger->OnComponentBeginOverlap.AddUniqueDynamic(this, &ASkirmishPickup::HandleOverlap);
}

void ASkirmishPickup::EndPlay(const EEndPlayReason::Type Reason)
{
	Trigger->OnComponentBeginOverlap.RemoveDynamic(this, &ASkirmishPickup::HandleOverlap);
	GetWorldTimerManager().ClearTimer(RespawnTimer);
	Super::EndPlay(Reason);
}

void ASkirmishPickup::Tick(float DeltaSeconds)
{
	Super::Tick(DeltaSeconds);
	Mesh->AddLocalRotation(FRotator(0.0, TurnDegreesPerSecond * DeltaSeconds, 0.0));
}

void ASkirmishPickup::HandleOverlap(UPrimitiveComponent* OverlappedComponent, AActor* OtherActor,
	UPrimitiveComponent* OtherComp, int32 OtherBodyIndex, bool bFromSweep, const FHitResult& SweepResult)
{
	ASkirmishPlayerCharacter* Player = Cast<ASkirmishPlayerCharacter>(OtherActor);
	if (!Player || !GiveTo(*Player))
	{
		return;
	}
	if (RespawnSeconds <= 0.0f)
	{
		Destroy();
		return;
	}
	SetPresent(false);
	GetWorldTimerManager().SetTimer(RespawnTimer, this, &ASkirmishPickup::Appear, RespawnSeconds, false);
}

void ASkirmishPickup::Appear()
{
	SetPresent(true);
}

void ASkirmishPickup::SetPresent(bool bPresent)
{
	SetActorHiddenInGame(!bPresent);
	SetActorEnableCollision(bPresent);
	SetActorTickEnabled(bPresent);
}
