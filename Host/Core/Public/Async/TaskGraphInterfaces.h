#pragma once

#include "HAL/Platform.h"

/** Where a task may run. Every value but the game thread means the process's one pool. */
namespace ENamedThreads
{
enum Type : int32
{
	GameThread,
	AnyThread,
	AnyNormalThreadNormalTask,
	AnyNormalThreadHiPriTask,
	AnyHiPriThreadNormalTask,
	AnyHiPriThreadHiPriTask,
	AnyBackgroundThreadNormalTask,
	AnyBackgroundHiPriTask
};
}
