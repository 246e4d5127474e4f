#include "Agent/CVXUserInput.h"

FCVXUserInput FCVXUserInput::Prepare(const FString& Text)
{
	return {FCVXMessage::MakeUserText(Text), FCVXMessage::MakeUserText(Text)};
}
