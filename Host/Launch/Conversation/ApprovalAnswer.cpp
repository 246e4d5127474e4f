#include "Launch/Conversation/ApprovalAnswer.h"

namespace
{
struct FAnswerWord
{
	const TCHAR* Letter;
	const TCHAR* Word;
	FApprovalAnswer Answer;
};

using EKind = FApprovalAnswer::EKind;

constexpr FAnswerWord Words[] = {
	{TEXT("y"), TEXT("yes"), {EKind::Decision, ECVXApprovalState::Approved, false}},
	{TEXT("n"), TEXT("no"), {EKind::Decision, ECVXApprovalState::Denied, false}},
	{TEXT("a"), TEXT("always"), {EKind::Decision, ECVXApprovalState::AlwaysAllow, true}},
	{TEXT("v"), TEXT("never"), {EKind::Decision, ECVXApprovalState::AlwaysDeny, true}},
	{TEXT("m"), TEXT("more"), {EKind::More, ECVXApprovalState::Pending, false}},
};
} // namespace

FApprovalAnswer FApprovalAnswer::Parse(const FString& Line)
{
	const FString Typed = Line.TrimStartAndEnd();
	for (const FAnswerWord& Each : Words)
	{
		if (Typed == Each.Letter || Typed == Each.Word)
		{
			return Each.Answer;
		}
	}
	return FApprovalAnswer();
}
