#pragma once

#include "Containers/UnrealString.h"

/** What is done to a shell command before it runs. Any thread. */
namespace CVXShellCommandRules
{
/** Whether the command has a text of those that destroy too much to be run at all. */
bool IsBlocked(const FString& Command);

/** Takes out redirections to the null device, which some shells would write to as a file. */
FString StripNullDevice(const FString& Command);

/** Adapts what a model writes for another system's shell. */
FString AdaptToShell(const FString& Command);

/** Deletes files whose names are devices on some system and can hardly be deleted there. @param Directory absolute. */
void SweepReservedNames(const FString& Directory);
} // namespace CVXShellCommandRules
