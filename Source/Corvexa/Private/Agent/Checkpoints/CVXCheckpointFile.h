#pragma once

#include "CoreMinimal.h"

/** One checkpoint file, plain or compressed. Any thread. */
namespace CVXCheckpointFile
{
/** What inflating may make of a file at most, in bytes. */
constexpr int64 MaxInflatedBytes = 524288000;

/**
 * Writes the text beside its place and then moves it there, so that the file is whole or not there.
 * @param Path without ".gz", which a compressed file has behind it. @return whether it is on disk.
 */
bool Write(const FString& Path, const FString& Json, bool bCompress);

/** Reads either form; of both the compressed one first. @param Path without ".gz". */
bool Read(const FString& Path, FString& OutJson);
} // namespace CVXCheckpointFile
