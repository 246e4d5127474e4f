#pragma once

#include "Engine/EngineTypes.h"

/** What bullets are traced against: the channel "Weapon" of Config/DefaultEngine.ini. Blocked unless told otherwise. */
inline constexpr ECollisionChannel SkirmishWeaponChannel = ECC_GameTraceChannel1;
