#pragma once

struct FCVXGuardContext;
struct FCVXTurnFindings;

/** Reminds a model whose Python prints nothing that could prove its work. */
namespace CVXVerificationHint
{
void Check(FCVXGuardContext& Context, const FCVXTurnFindings& Findings);
}
