#pragma once

#include "Agent/Prompt/CVXPromptContext.h"

/**
 * The system prompt, built afresh for every request: the profile's text, then what the model must know this turn. What
 * long conversations lose from their history, the plan and the work done, is told here again.
 */
namespace CVXSystemPrompt
{
/** The prompt may fill two fifths of the window, and at least this many tokens. */
constexpr int32 MinTokenCap = 4000;

FString Build(const FCVXPromptContext& Context);

/** Cuts a prompt that is over its share of the window. @param MaxContextTokens the window. */
FString Cap(const FString& Prompt, int32 MaxContextTokens);
} // namespace CVXSystemPrompt
