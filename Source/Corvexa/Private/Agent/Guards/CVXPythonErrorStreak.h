#pragma once

struct FCVXGuardContext;
struct FCVXTurnFindings;

/** Stops a model that runs failing Python turn after turn. */
namespace CVXPythonErrorStreak
{
void Update(FCVXGuardContext& Context, const FCVXTurnFindings& Findings);
}
