#pragma once

struct FCVXCompletedToolResult;
struct FCVXGuardContext;

/** Notes what one result proves: Python failures, C++ written or compiled, work done. */
namespace CVXResultBookkeeping
{
void Note(FCVXGuardContext& Context, const FCVXCompletedToolResult& Result);
}
