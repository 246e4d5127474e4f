#pragma once

#include "Tools/CVXTool.h"

/** Runs a command of the system's shell. */
class FCVXExecuteShellTool final : public ICVXTool
{
public:
	FString GetName() const override;
	FString GetDescription() const override;
	FString GetInputSchemaJson() const override;
	FCVXToolExecutionResult Execute(const FString& ArgumentsJson, const FCVXAgentProfile& Profile) override;
	bool IsDestructive() const override { return true; }
	bool IsThreadSafe() const override { return true; }

	/** Whether the command is one of those that are never run. */
	static bool IsCommandBlocked(const FString& Command);
};
