#pragma once

struct FLaunchOptions;

/** `corvexa tasks`: the conversations that are stored in the project. @return the exit status. */
int RunTasksCommand(const FLaunchOptions& Options);
