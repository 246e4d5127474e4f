#pragma once

#include <sys/types.h>

/**
 * Kills a child with all that descends from it: its session, and what has left the session but still has its parents.
 * Everything is stopped first, so that nothing can start more meanwhile. @param Leader an unreaped child of ours that
 * leads a session.
 */
void KillProcessTree(pid_t Leader);
