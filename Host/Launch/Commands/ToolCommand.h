#pragma once

struct FLaunchOptions;

/** `corvexa tool`: one tool call, under the approval rules of the chosen agent. @return the exit status. */
int RunToolCommand(const FLaunchOptions& Options);
