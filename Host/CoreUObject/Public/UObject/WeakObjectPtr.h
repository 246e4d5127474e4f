#pragma once

#include "UObject/WeakObjectPtrTemplates.h"
