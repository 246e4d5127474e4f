#pragma once

#include "Pickups/SkirmishPickup.h"

#include "SkirmishAmmoPickup.generated.h"

/** A crate of ammunition for the weapon in hand. */
UCLASS()
class SKIRMISH_API ASkirmishAmmoPickup : public ASkirmishPickup
{
	GENERATED_BODY()

protected:
	virtual bool GiveTo(ASkirmishPlayerCharacter& Player) override;

private:
	UPROPERTY(EditAnywhere, Category = "Pickup", meta = (ClampMin = "1"))
	int32 Magazines = 2;
};
