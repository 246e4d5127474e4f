#pragma once

#include "HAL/Platform.h"

/** Asks a constructor to leave the object without meaningful content. */
enum ENoInit
{
	NoInit
};

/** Asks a constructor to build from arguments in place. */
enum EInPlace
{
	InPlace
};
