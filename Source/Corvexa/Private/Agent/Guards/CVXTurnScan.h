#pragma once

#include "Agent/Guards/CVXGuardContext.h"

/** Adds the results of a turn up, and keeps account of open compile errors and validation problems. */
namespace CVXTurnScan
{
FCVXTurnFindings Scan(FCVXGuardContext& Context);
}
