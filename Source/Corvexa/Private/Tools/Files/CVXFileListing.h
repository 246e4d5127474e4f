#pragma once

#include "Core/CVXTypes.h"
#include "Dom/JsonObject.h"

/** The directory that a listing tool was asked about. */
struct FCVXListingDirectory
{
	FString Absolute;
	/** With a slash at its end. */
	FString ProjectDir;
	/** The path as the model wrote it, or what was made of it when it was a content path. */
	FString Shown;
	/** To put in front of the output: tells the model of a content path that was taken for one on disk. */
	FString Note;

	/** Reads the argument "path". Any thread. @return false with the result to give. */
	bool Resolve(const FJsonObject& Arguments, FCVXToolExecutionResult& OutError);
};

/**
 * Reads an argument that holds a pattern of file names. @param InOutPattern stays when there is none.
 * @return false with the result to give when it is no text or names places outside the directory.
 */
bool GetFilePattern(
	const FJsonObject& Arguments, FStringView Name, FString& InOutPattern, FCVXToolExecutionResult& OutError);

/** Cuts the project directory off the front of each path that has it. */
void MakeProjectRelative(TArray<FString>& Paths, const FString& ProjectDir);

/** Keeps the first Count paths, sorted, of all. */
void KeepFirstSorted(TArray<FString>& Paths, int32 Count);
