#pragma once

/** Names the rest of the block for a CPU profiler. This host is built without the tracing channel, so it costs nothing.
 */
#define TRACE_CPUPROFILER_EVENT_SCOPE_STR(Name) static_assert(sizeof(Name) > 1, "a scope needs a name")
