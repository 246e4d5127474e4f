#pragma once

struct FLaunchOptions;

/** `corvexa run`: one request to its end. @return the exit status. */
int RunRunCommand(const FLaunchOptions& Options);
