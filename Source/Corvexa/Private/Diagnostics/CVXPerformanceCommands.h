#pragma once

/** The console commands of the performance monitor: `cvx.perfstats` and `cvx.perfreset`. Game thread. */
namespace CVXPerformanceCommands
{
void Register();
/** Does nothing when they aren't registered. */
void Unregister();
} // namespace CVXPerformanceCommands
