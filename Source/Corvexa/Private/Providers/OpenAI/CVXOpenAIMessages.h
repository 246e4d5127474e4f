#pragma once

#include "Core/CVXTypes.h"

/** How a piece of the history goes out. */
enum class ECVXOpenAIForm : uint8
{
	/** One tool result. */
	ToolResult,
	/** An assistant's tool calls, with what it said. */
	ToolCalls,
	/** Text and images in order. */
	Parts,
	/** One text. */
	Text
};

/** One message on the wire. */
struct FCVXOpenAIMessage
{
	ECVXOpenAIForm Form = ECVXOpenAIForm::Text;
	/** Not owned. */
	const FCVXMessage* Source = nullptr;
	/** The result, in `ToolResult`. Not owned. */
	const FCVXContentBlock* Result = nullptr;
};

namespace CVXOpenAI
{
bool IsToolUse(const FCVXContentBlock& Block);
bool IsImage(const FCVXContentBlock& Block);

/**
 * The conversation as this dialect takes it: a call that nobody answered goes with its whole message, and results move
 * up or down to stand right behind their calls, in the order of these.
 * @param Messages must outlive the result.
 */
TArray<FCVXOpenAIMessage> ArrangeMessages(const TArray<FCVXMessage>& Messages);
} // namespace CVXOpenAI
