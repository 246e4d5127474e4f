#pragma once

#include "Tools/CVXTool.h"
#include "Tools/Edit/CVXPatch.h"

/** Applies a unified diff to files of the project, each by itself. */
class FCVXApplyPatchTool final : public ICVXTool
{
public:
	FString GetName() const override;
	FString GetDescription() const override;
	FString GetInputSchemaJson() const override;
	FCVXToolExecutionResult Execute(const FString& ArgumentsJson, const FCVXAgentProfile& Profile) override;

	/** As `ParsePatch`. */
	static TArray<FCVXFilePatch> ParseUnifiedDiff(const FString& Patch);

	/** As `ApplyHunks`. */
	static bool ApplyHunksToLines(TArray<FString>& Lines, const FCVXFilePatch& File, FString& OutError);
};
