#pragma once

#include "Agent/Prompt/CVXPromptContext.h"

/** The blocks of the system prompt. Each gives its text with its heading, or nothing at all. */
namespace CVXPromptBlocks
{
/** The agent's own text, its placeholders replaced. */
FString Profile(const FCVXPromptContext& Context);
FString ProjectDescription(const FCVXPromptContext& Context);
FString ProjectFramework(const FCVXPromptContext& Context);
/** What the agent was told to remember. */
FString Memory(const FCVXPromptContext& Context);
/** Knowledge modules that match the conversation. */
FString Knowledge(const FCVXPromptContext& Context);
/** Source snippets, every third turn. */
FString CodeContext(const FCVXPromptContext& Context);
FString CompletedDelegations(const FCVXPromptContext& Context);
FString TodoState(const FCVXPromptContext& Context);
FString CompletedWork(const FCVXPromptContext& Context);
/** For a model that can't read images. */
FString NoVision(const FCVXPromptContext& Context);
} // namespace CVXPromptBlocks
