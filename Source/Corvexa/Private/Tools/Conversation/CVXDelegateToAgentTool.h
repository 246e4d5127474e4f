#pragma once

#include "Tools/CVXTool.h"

/** Asks for a sub-agent. The agent loop starts it. */
class FCVXDelegateToAgentTool final : public ICVXTool
{
public:
	FString GetName() const override;
	FString GetDescription() const override;
	FString GetInputSchemaJson() const override;
	FCVXToolExecutionResult Execute(const FString& ArgumentsJson, const FCVXAgentProfile& Profile) override;
};
