#pragma once

#include "Tools/CVXTool.h"

/** How one tool is run: unattended, with every exception made an error result and the output bounded. */
namespace CVXToolRun
{
/**
 * Runs a tool here and tells the performance monitor.
 * @param bBackground what the monitor is told of the thread.
 */
FCVXToolExecutionResult RunMonitored(
	ICVXTool& Tool, const FCVXToolCall& Call, const FCVXAgentProfile& Profile, bool bBackground);

/** Looks the tool up and runs it, with the words of the pool for what goes wrong. For a thread of the pool. */
FCVXToolExecutionResult RunOnPool(const FCVXToolCall& Call, const FCVXAgentProfile& Profile);
} // namespace CVXToolRun
