#pragma once

#include "Templates/UnrealTemplate.h"
