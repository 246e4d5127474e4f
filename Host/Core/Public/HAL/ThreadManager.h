#pragma once

#include "CoreGlobals.h"
