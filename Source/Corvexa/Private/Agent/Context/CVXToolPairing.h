#pragma once

#include "Core/CVXTypes.h"

/**
 * Vendors refuse a tool use without its result and a result without its use. Cutting a conversation in two breaks such
 * pairs; this makes a request's messages whole again without losing what sub-agents reported.
 */
namespace CVXToolPairing
{
/** @param Messages a copy made for one request; afterwards empty, or beginning with a user message, all pairs whole. */
void Restore(TArray<FCVXMessage>& Messages);
} // namespace CVXToolPairing
