#include "Pickups/SkirmishHealthPickup.h"

#include "Characters/SkirmishPlayerCharacter.h"
#include "Health/SkirmishHealthComponent.h"

bool ASkirmishHealthPickup::GiveTo(ASkirmishPlayerCharacter& Player)
{
	return Player.GetHealth()->Heal(Amount);
}
