#include "Agent/Context/CVXHiddenMessage.h"

#include "Algo/AnyOf.h"

FCVXMessage CVXHiddenMessage::Make(const FString& Text, const FString& Tag)
{
	FCVXMessage Message = FCVXMessage::MakeUserText(Text);
	Message.MessageId = Tag;
	return Message;
}

bool CVXHiddenMessage::IsSystemMade(const FString& MessageId)
{
	static constexpr const TCHAR* Prefixes[] = {
		TEXT("auto-retry-"), TEXT("completion-rejected-"), TEXT("output-truncated-")};
	static constexpr const TCHAR* Tags[] = {
		TEXT("verify-hint"), TEXT("no-tool-nudge"), TEXT("turn-budget-warning"), TEXT("diversity-warning")};
	return Algo::AnyOf(Prefixes, [&](const TCHAR* Prefix) { return MessageId.StartsWith(Prefix); }) ||
		Algo::AnyOf(Tags, [&](const TCHAR* Tag) { return MessageId == Tag; });
}
