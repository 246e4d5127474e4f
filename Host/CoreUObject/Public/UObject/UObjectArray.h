#pragma once

#include "CoreMinimal.h"
#include "UObject/ObjectMacros.h"

/** The table of all objects, for counts and statistics. Game thread. */
namespace UObjectArray
{
/** Objects that exist, garbage included. */
int32 GetObjectCount();
/** Whether this address is that of an object that exists. Costs a look-up in the whole table. */
bool IsObject(const void* Address);
}
