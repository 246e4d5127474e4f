#pragma once

#include "Characters/SkirmishCharacter.h"
#include "CoreMinimal.h"

#include "SkirmishEnemyCharacter.generated.h"

struct FSkirmishWaveRow;

/** An enemy that walks up to the player and strikes. ASkirmishEnemyController decides when. */
UCLASS()
class SKIRMISH_API ASkirmishEnemyCharacter : public ASkirmishCharacter
{
	GENERATED_BODY()

public:
	ASkirmishEnemyCharacter();

	/** Makes it as tough and as fast as the wave wants. Call it before the enemy begins play. */
	void ApplyWave(const FSkirmishWaveRow& Wave);

	/** Strikes when the target is in reach and the last blow is long enough ago. True when a blow landed. */
	bool TryStrike(AActor& Target);

	/** How near a target must be, between centres, in centimetres. */
	float GetReach() const { return Reach; }

	/** What the player gets for it. */
	int32 GetScore() const { return Score; }

protected:
	virtual void Die() override;

private:
	UPROPERTY(EditDefaultsOnly, Category = "Attack")
	float Reach = 170.0f;

	UPROPERTY(EditDefaultsOnly, Category = "Attack")
	float StrikeDamage = 12.0f;

	UPROPERTY(EditDefaultsOnly, Category = "Attack")
	float SecondsBetweenStrikes = 1.1f;

	UPROPERTY(EditDefaultsOnly, Category = "Score")
	int32 Score = 100;

	/** Seconds that the body stays. */
	UPROPERTY(EditDefaultsOnly, Category = "Death")
	float BodySeconds = 4.0f;

	double NextStrikeSeconds = 0.0;
};
