#pragma once

#include "HAL/Platform.h"

class FConfigCacheIni;
class FOutputDeviceRedirector;

/** The log of the process; always there. */
extern FOutputDeviceRedirector* GLog;

/** The configuration of the project while the engine loop is up, else null. */
extern FConfigCacheIni* GConfig;

/** The project's name: the base name of its project file, or of its folder. Set when the project is set. */
extern TCHAR GInternalProjectName[64];

/** Set while a script runs that nobody watches: nothing may ask the user. Game thread. */
extern bool GIsRunningUnattendedScript;

extern bool GIsEditor;

/** Ticks of the engine loop since it was started. Game thread. */
extern uint64 GFrameCounter;

/** The thread that the engine loop was started on; the process's first thread before that. */
bool IsInGameThread();

/** Whether somebody has asked the loop to end. Any thread. */
bool IsEngineExitRequested();

/** Asks the loop to end after the present tick. @param Reason for the log; may be null. Any thread. */
void RequestEngineExit(const TCHAR* Reason);
