#pragma once

#include "Containers/UnrealString.h"

struct FLaunchCommand;

/** The help texts, with their line ends. */
namespace LaunchHelp
{
FString ForProgram();
FString ForCommand(const FLaunchCommand& Command);
FString Version();
} // namespace LaunchHelp
