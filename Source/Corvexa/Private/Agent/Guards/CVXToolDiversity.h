#pragma once

struct FCVXGuardContext;

/** Warns a model that leans on one tool alone. */
namespace CVXToolDiversity
{
/** Remembers the names of the turn's calls. */
void NoteCalls(FCVXGuardContext& Context);
/** Warns once for each user message. */
void Check(FCVXGuardContext& Context);
} // namespace CVXToolDiversity
