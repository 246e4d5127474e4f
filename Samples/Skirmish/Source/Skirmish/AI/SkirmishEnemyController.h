#pragma once

#include "AIController.h"
#include "CoreMinimal.h"
#include "Engine/TimerHandle.h"

#include "SkirmishEnemyController.generated.h"

class ASkirmishEnemyCharacter;
class ASkirmishPlayerCharacter;

/** Sends an enemy after the player. It thinks a few times a second, which is plenty for a walk across an arena. */
UCLASS()
class SKIRMISH_API ASkirmishEnemyController : public AAIController
{
	GENERATED_BODY()

public:
	ASkirmishEnemyController();

protected:
	virtual void OnPossess(APawn* InPawn) override;
	virtual void OnUnPossess() override;

private:
	void Think();
	void Chase(const ASkirmishEnemyCharacter& Enemy, ASkirmishPlayerCharacter& Target);

	/** The player, or null when there's nobody left to fight. */
	ASkirmishPlayerCharacter* FindTarget() const;

	UPROPERTY(EditDefaultsOnly, Category = "AI", meta = (ClampMin = "0.05"))
	float SecondsBetweenThoughts = 0.25f;

	FTimerHandle ThinkTimer;
};
