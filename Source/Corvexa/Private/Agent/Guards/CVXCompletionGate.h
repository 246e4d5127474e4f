#pragma once

#include "CoreMinimal.h"

struct FCVXGuardContext;

/** What becomes of a call of attempt_completion. */
struct FCVXGateVerdict
{
	enum class EKind : uint8
	{
		/** The task is complete. */
		Accept,
		/** The model gets the message and another turn. */
		Refuse,
		/** The completion is dropped and the turn goes on as any other. */
		Drop,
	};

	EKind Kind = EKind::Accept;
	/** Of a refusal: what the model reads, and the message's id. */
	FString Message;
	FString Tag;
	/** Of a refusal: whether the turn's results join the history. */
	bool bKeepResults = true;
};

/** Holds a model to its work: rules in order, of which the first that objects decides. */
namespace CVXCompletionGate
{
/** Compile errors refuse a completion so many times. */
constexpr int32 MaxCompileRejections = 5;

FCVXGateVerdict Judge(FCVXGuardContext& Context);
} // namespace CVXCompletionGate
