#pragma once

#include "Core/CVXTypes.h"

/** What becomes of a text that the user submits: the panel shows what was typed, the model reads what it stands for. */
struct FCVXUserInput
{
	/** For the panel. */
	FCVXMessage DisplayMessage;
	/** For the history, under an id of its own. */
	FCVXMessage ConversationMessage;

	/** Game thread. */
	static FCVXUserInput Prepare(const FString& Text);
};
