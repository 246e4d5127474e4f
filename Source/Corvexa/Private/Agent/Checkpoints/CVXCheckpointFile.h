#pragma once

#include "CoreMinimal.h"

/** One checkpoint file, plain or compressed. Any thread. */
namespace CVXCheckpointFile
{
/** What a file may hold at most, and what inflating may make of it, in bytes. */
constexpr int64 MaxInflatedBytes = 524288000;

/**
 * Makes a file that is whole or not there, and is none that was there before: of several that write under one name, one
 * succeeds. @param Path without ".gz", which a compressed file has behind it. @return whether it is on disk.
 */
bool Write(const FString& Path, const FString& Json, bool bCompress);

/** Reads either form; of both the compressed one first. @param Path without ".gz". */
bool Read(const FString& Path, FString& OutJson);
} // namespace CVXCheckpointFile
