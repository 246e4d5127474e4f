#pragma once

#include "Tools/CVXTool.h"

/** Branches a conversation. */
class FCVXForkConversationTool final : public ICVXTool
{
public:
	FString GetName() const override;
	FString GetDescription() const override;
	FString GetInputSchemaJson() const override;
	FCVXToolExecutionResult Execute(const FString& ArgumentsJson, const FCVXAgentProfile& Profile) override;
};
