#pragma once

struct FLaunchOptions;

/** `corvexa tools`: what the chosen agent is offered. @return the exit status. */
int RunToolsCommand(const FLaunchOptions& Options);
