#pragma once

#include "Tools/CVXTool.h"

/** Commits the project's changes. */
class FCVXGitCommitTool final : public ICVXTool
{
public:
	FString GetName() const override;
	FString GetDescription() const override;
	FString GetInputSchemaJson() const override;
	FCVXToolExecutionResult Execute(const FString& ArgumentsJson, const FCVXAgentProfile& Profile) override;
	bool IsDestructive() const override { return true; }
	bool IsThreadSafe() const override { return true; }
};
