#pragma once

#include "SemanticSearch/CVXBM25Store.h"

/** Okapi BM25 with k1 = 1.5 and b = 0.75. */
namespace CVXBM25Search
{
/**
 * The documents that have a token of the query, best first; among equals the first indexed comes first. A token that
 * stands twice in the query counts twice. The store mustn't change meanwhile.
 */
TArray<FCVXBM25Result> Search(const FCVXBM25Store& Store, FStringView Query, int32 MaxResults);
} // namespace CVXBM25Search
