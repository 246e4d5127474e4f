#pragma once

struct FCVXGuardContext;
struct FCVXTurnFindings;

/** Shows a model with eyes what its Python did to the scene. */
namespace CVXVisualVerification
{
/** Captures the viewport after a turn that likely changed what is seen, and adds the picture to the findings. */
void Verify(FCVXGuardContext& Context, FCVXTurnFindings& Findings);
} // namespace CVXVisualVerification
