#pragma once

#include "SemanticSearch/CVXBM25Types.h"

/** Cuts source files into windows of lines that overlap, so that what stands at a seam is whole in one of them. */
namespace CVXBM25Chunker
{
constexpr int32 ChunkLines = 80;
/** Lines from the start of one chunk to the start of the next. */
constexpr int32 ChunkStep = 60;

/** The lines without their ends (CR LF, LF or CR), empty ones included; an end at the end begins no further line. */
TArray<FStringView> SplitLines(FStringView Text);

/** The chunks of a file in their order, not yet with their `TokenCount`; the last may lie within the one before it. */
TArray<FCVXBM25Doc> ChunkFile(const FString& Path, TArrayView<const FStringView> Lines, int64 Timestamp);
} // namespace CVXBM25Chunker
