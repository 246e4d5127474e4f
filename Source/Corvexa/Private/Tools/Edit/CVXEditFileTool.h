#pragma once

#include "Tools/CVXTool.h"

/** Replaces a text in a file of the project. */
class FCVXEditFileTool final : public ICVXTool
{
public:
	FString GetName() const override;
	FString GetDescription() const override;
	FString GetInputSchemaJson() const override;
	FCVXToolExecutionResult Execute(const FString& ArgumentsJson, const FCVXAgentProfile& Profile) override;
	FCVXApprovalRequest BuildApprovalRequest(const FString& ArgumentsJson) const override;
};
