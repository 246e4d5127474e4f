#pragma once

#include "Core/CVXTypes.h"

/** Messages that the agent loop adds for the model alone: user messages whose id is a readable tag. */
namespace CVXHiddenMessage
{
/** @param Tag the message's id, such as "verify-hint". */
FCVXMessage Make(const FString& Text, const FString& Tag);

/** Whether text retrieval must not take the user message of this id for the user's own words. */
bool IsSystemMade(const FString& MessageId);
} // namespace CVXHiddenMessage
