#pragma once

#include "Containers/UnrealString.h"

/**
 * Makes a path that a model wrote into an absolute one in the project. Where symbolic links lead counts: a path whose
 * deepest part that exists lies outside is refused. Any thread.
 * @param Path relative to the project or absolute; empty means the project directory.
 * @param OutProjectDir absolute, with a slash at its end.
 * @param OutError why not, for the model. @return whether the path may be used.
 */
bool ResolveProjectPath(const FString& Path, FString& OutAbsolute, FString& OutProjectDir, FString& OutError);

/** Makes a content path, which begins with "/Game/", one on disk. @return whether it was one. */
bool TranslateContentPath(FString& Path);

/**
 * Whether the settings protect a path from being written, as it is written or where links lead. Any thread.
 * @param Absolute and ProjectDir as `ResolveProjectPath` gave them. @param ShownPath as the model wrote it.
 * @param OutError says so, for the model.
 */
bool CheckProtectedPath(
	const FString& Absolute, const FString& ProjectDir, const FString& ShownPath, FString& OutError);

/**
 * Whether a path has a part that some system keeps for a device, or a character that some system doesn't take, so that
 * nothing new should be written there. Any thread. The arguments are those of `CheckProtectedPath`.
 */
bool CheckReservedPath(const FString& Absolute, const FString& ProjectDir, const FString& ShownPath, FString& OutError);

/** A path without the project directory in front; whole when it lies elsewhere. */
FString MakeProjectRelative(const FString& Absolute, const FString& ProjectDir);
