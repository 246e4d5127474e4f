#pragma once

#include "HAL/Platform.h"

/** Names the calling thread for debuggers; the system keeps 15 bytes. */
void SetCurrentThreadName(const TCHAR* Name);
