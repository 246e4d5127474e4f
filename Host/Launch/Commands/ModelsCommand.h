#pragma once

struct FLaunchOptions;

/** `corvexa models`: vendors and models, and which of them can be used now. @return the exit status. */
int RunModelsCommand(const FLaunchOptions& Options);
