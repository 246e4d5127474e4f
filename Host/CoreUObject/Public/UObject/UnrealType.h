#pragma once

#include "Templates/SubclassOf.h"
#include "UObject/ContainerProperties.h"
#include "UObject/DelegateProperties.h"
#include "UObject/EnumProperty.h"
#include "UObject/FieldIterator.h"
#include "UObject/NumericProperty.h"
#include "UObject/ObjectProperties.h"
#include "UObject/Property.h"
#include "UObject/PropertyChangedEvent.h"
#include "UObject/ScriptContainers.h"
#include "UObject/StructProperty.h"
#include "UObject/TextProperties.h"
