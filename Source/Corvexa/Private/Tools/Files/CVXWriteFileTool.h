#pragma once

#include "Tools/CVXTool.h"

/** Writes a whole file of the project. */
class FCVXWriteFileTool final : public ICVXTool
{
public:
	FString GetName() const override;
	FString GetDescription() const override;
	FString GetInputSchemaJson() const override;
	FCVXToolExecutionResult Execute(const FString& ArgumentsJson, const FCVXAgentProfile& Profile) override;
	FCVXApprovalRequest BuildApprovalRequest(const FString& ArgumentsJson) const override;
	bool IsDestructive() const override { return true; }
};
