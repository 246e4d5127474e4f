#pragma once

struct FLaunchOptions;

/** `corvexa chat`: a conversation until the person leaves. @return the exit status. */
int RunChatCommand(const FLaunchOptions& Options);
