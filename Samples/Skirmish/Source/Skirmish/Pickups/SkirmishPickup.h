#pragma once

#include "CoreMinimal.h"
#include "Engine/TimerHandle.h"
#include "GameFramework/Actor.h"

#include "SkirmishPickup.generated.h"

class ASkirmishPlayerCharacter;
class UPrimitiveComponent;
class USphereComponent;
class UStaticMeshComponent;
struct FHitResult;

/** Something that a player takes by walking over it, and that comes back after a while. Children say what it gives. */
UCLASS(Abstract)
class SKIRMISH_API ASkirmishPickup : public AActor
{
	GENERATED_BODY()

public:
	ASkirmishPickup();

	virtual void Tick(float DeltaSeconds) override;

protected:
	virtual void BeginPlay() override;
	virtual void EndPlay(const EEndPlayReason::Type Reason) override;

	/** Gives the player what this is. False leaves it lying: the player has no use for it now. */
	virtual bool GiveTo(ASkirmishPlayerCharacter& Player) PURE_VIRTUAL(ASkirmishPickup::GiveTo, return false;);

	UPROPERTY(VisibleAnywhere, Category = "Components")
	TObjectPtr<USphereComponent> Trigger;

	UPROPERTY(VisibleAnywhere, Category = "Components")
	TObjectPtr<UStaticMeshComponent> Mesh;

private:
	UFUNCTION()
	void HandleOverlap(UPrimitiveComponent* OverlappedComponent, AActor* OtherActor, UPrimitiveComponent* OtherComp,
		int32 OtherBodyIndex, bool bFromSweep, const FHitResult& SweepResult);

	void Appear();
	void SetPresent(bool bPresent);

	/** Seconds until it comes back. Zero: it's gone for good. */
	UPROPERTY(EditAnywhere, Category = "Pickup", meta = (ClampMin = "0"))
	float RespawnSeconds = 20.0f;

	UPROPERTY(EditAnywhere, Category = "Pickup")
	float TurnDegreesPerSecond = 90.0f;

	FTimerHandle RespawnTimer;
};
