#pragma once

/** Makes the calling thread the game thread. */
void AdoptGameThread();

/** Forgets a request to end the loop. */
void ClearEngineExitRequest();
