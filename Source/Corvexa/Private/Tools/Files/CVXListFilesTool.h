#pragma once

#include "Tools/CVXTool.h"

/** Lists a directory of the project, or the tree below it. */
class FCVXListFilesTool final : public ICVXTool
{
public:
	FString GetName() const override;
	FString GetDescription() const override;
	FString GetInputSchemaJson() const override;
	FCVXToolExecutionResult Execute(const FString& ArgumentsJson, const FCVXAgentProfile& Profile) override;
	bool IsReadOnly() const override { return true; }
	bool IsThreadSafe() const override { return true; }
};
