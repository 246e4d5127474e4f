#pragma once

#include "MCP/CVXMCPResults.h"
#include "Templates/SharedPointer.h"
#include "Tools/CVXTool.h"

class FCVXMCPServer;

/** A tool of a server, as a tool of the agent. What it does is unknown, so it counts as one that may change things. */
class FCVXMCPTool final : public ICVXTool
{
public:
	FCVXMCPTool(const TSharedPtr<FCVXMCPServer>& InServer, FCVXMCPToolInfo InInfo);

	FString GetName() const override { return Info.PrefixedName; }
	FString GetDescription() const override;
	FString GetInputSchemaJson() const override { return Info.InputSchemaJson; }
	FCVXToolExecutionResult Execute(const FString& ArgumentsJson, const FCVXAgentProfile& Profile) override;
	bool IsThreadSafe() const override { return true; }

private:
	TWeakPtr<FCVXMCPServer> Server;
	FCVXMCPToolInfo Info;
};
