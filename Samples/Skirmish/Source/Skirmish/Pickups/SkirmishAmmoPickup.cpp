#include "Pickups/SkirmishAmmoPickup.h"

#include "Characters/SkirmishPlayerCharacter.h"
#include "Weapons/SkirmishWeapon.h"

bool ASkirmishAmmoPickup::GiveTo(ASkirmishPlayerCharacter& Player)
{
	ASkirmishWeapon* Weapon = Player.GetWeapon();
	return Weapon && Weapon->AddMagazines(Magazines);
}
