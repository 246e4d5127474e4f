#pragma once

#include "Pickups/SkirmishPickup.h"

#include "SkirmishHealthPickup.generated.h"

/** A medical kit. */
UCLASS()
class SKIRMISH_API ASkirmishHealthPickup : public ASkirmishPickup
{
	GENERATED_BODY()

protected:
	virtual bool GiveTo(ASkirmishPlayerCharacter& Player) override;

private:
	/** Hit points that it gives back. */
	UPROPERTY(EditAnywhere, Category = "Pickup", meta = (ClampMin = "1"))
	float Amount = 35.0f;
};
