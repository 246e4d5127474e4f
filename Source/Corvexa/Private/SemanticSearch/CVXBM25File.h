#pragma once

#include "SemanticSearch/CVXBM25Types.h"

/** What the file of the index holds: the documents, without which terms they have. */
struct FCVXBM25Contents
{
	TArray<FCVXBM25Doc> Docs;
	float AverageDocLength = 0.f;
};

/** The file of the index as JSON. Any thread. */
namespace CVXBM25File
{
/**
 * Times are written with all their digits, which no reader that takes numbers for doubles minds.
 * @param OutJson empty at first. @return false when the text would be too long for one file.
 */
bool Write(const TArray<FCVXBM25Doc>& Docs, float AverageDocLength, FString& OutJson);

/**
 * Takes fields of another kind than theirs for absent, numbers outside their range for the nearest inside, and skips
 * documents without a path.
 * @return false, with OutContents as good as empty, for what isn't JSON or has no array of documents.
 */
bool Read(FStringView Json, FCVXBM25Contents& OutContents);
} // namespace CVXBM25File
