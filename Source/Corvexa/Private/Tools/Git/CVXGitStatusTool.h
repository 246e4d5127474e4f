#pragma once

#include "Tools/CVXTool.h"

/** Asks git about the project. */
class FCVXGitStatusTool final : public ICVXTool
{
public:
	FString GetName() const override;
	FString GetDescription() const override;
	FString GetInputSchemaJson() const override;
	FCVXToolExecutionResult Execute(const FString& ArgumentsJson, const FCVXAgentProfile& Profile) override;
	bool IsReadOnly() const override { return true; }
	bool IsThreadSafe() const override { return true; }
};
