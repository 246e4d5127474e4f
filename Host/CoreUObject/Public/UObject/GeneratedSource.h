#pragma once

#include "Templates/SubclassOf.h"
#include "UObject/CoreStructs.h"
#include "UObject/GarbageCollection.h"
#include "UObject/ReflectionTables.h"
#include "UObject/ScriptInterface.h"
#include "UObject/UnrealType.h"

#include <cstddef>
