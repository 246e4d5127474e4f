#pragma once

#include "Tools/CVXTool.h"

/** Ends a task with its result. */
class FCVXAttemptCompletionTool final : public ICVXTool
{
public:
	FString GetName() const override;
	FString GetDescription() const override;
	FString GetInputSchemaJson() const override;
	FCVXToolExecutionResult Execute(const FString& ArgumentsJson, const FCVXAgentProfile& Profile) override;
	bool IsReadOnly() const override { return true; }
};
