#pragma once

#include "Tools/CVXTool.h"

/** Stops for the user's answer. */
class FCVXAskFollowupQuestionTool final : public ICVXTool
{
public:
	FString GetName() const override;
	FString GetDescription() const override;
	FString GetInputSchemaJson() const override;
	FCVXToolExecutionResult Execute(const FString& ArgumentsJson, const FCVXAgentProfile& Profile) override;
	bool IsReadOnly() const override { return true; }
};
