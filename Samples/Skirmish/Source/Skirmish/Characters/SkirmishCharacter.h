#pragma once

#include "CoreMinimal.h"
#include "GameFramework/Character.h"

#include "SkirmishCharacter.generated.h"

class AController;
class UDamageType;
class USkirmishHealthComponent;
class UStaticMeshComponent;

/** What players and enemies share: a body, hit points, and a death. */
UCLASS(Abstract)
class SKIRMISH_API ASkirmishCharacter : public ACharacter
{
	GENERATED_BODY()

public:
	ASkirmishCharacter();

	/** Never null. */
	UFUNCTION(BlueprintPure, Category = "Health")
	USkirmishHealthComponent* GetHealth() const { return Health; }

	UFUNCTION(BlueprintPure, Category = "Health")
	bool IsDead() const;

	/** Who leaves the arena dies, so that a wave always comes to its end. */
	virtual void FellOutOfWorld(const UDamageType& DamageType) override;

protected:
	virtual void BeginPlay() override;
	virtual void EndPlay(const EEndPlayReason::Type Reason) override;

	/** Called once. Children add what their death means; the body is out of the game already. */
	virtual void Die() {}

	/** Stands in for a skeletal mesh, and can be hidden by a Blueprint that brings one. */
	UPROPERTY(VisibleAnywhere, Category = "Components")
	TObjectPtr<UStaticMeshComponent> Body;

private:
	UFUNCTION()
	void HandleDied(USkirmishHealthComponent* DeadHealth, AController* Killer, AActor* Causer);

	UPROPERTY(VisibleAnywhere, Category = "Components")
	TObjectPtr<USkirmishHealthComponent> Health;
};
