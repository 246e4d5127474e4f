#pragma once

#include "Containers/StringView.h"

/** Tells that a caller asked for something that a value or an object doesn't have. Any thread. */
void LogJsonError(FStringView Message);
