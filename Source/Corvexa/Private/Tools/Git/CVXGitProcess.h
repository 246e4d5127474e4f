#pragma once

#include "Containers/UnrealString.h"

/**
 * Runs git, for 15 seconds at most; what it has written by then counts as its output. Any thread but the game's.
 * @param Arguments blanks separate them, double quotes keep blanks together, `\"` is a plain quote; no shell reads
 * them. @param OutError git's own words when it failed, else empty. @return its output without white space at the end.
 */
FString RunGit(const FString& Arguments, const FString& WorkingDir, FString& OutError);
