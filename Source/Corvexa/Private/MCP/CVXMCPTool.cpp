#include "MCP/CVXMCPTool.h"

#include "MCP/CVXMCPServer.h"

FCVXMCPTool::FCVXMCPTool(const TSharedPtr<FCVXMCPServer>& InServer, FCVXMCPToolInfo InInfo)
	: Server(InServer)
	, Info(MoveTemp(InInfo))
{
}

FString FCVXMCPTool::GetDescription() const
{
	const FString OwnPrefix = FString::Printf(TEXT("mcp__%s__"), *Info.OriginalName);
	return FString::Printf(TEXT("[MCP: %s] %s"), *Info.PrefixedName.Replace(*OwnPrefix, TEXT("")), *Info.Description);
}

FCVXToolExecutionResult FCVXMCPTool::Execute(const FString& ArgumentsJson, const FCVXAgentProfile&)
{
	const TSharedPtr<FCVXMCPServer> Pinned = Server.Pin();
	if (!Pinned || !Pinned->IsRunning())
	{
		return FCVXToolExecutionResult::MakeError(
			FString::Printf(TEXT("MCP server for tool '%s' is not running. Check Plugin Settings → MCP Servers and the "
								 "Output Log for startup errors."),
				*Info.PrefixedName));
	}
	bool bIsError = false;
	const FString Output = Pinned->CallTool(Info.OriginalName, ArgumentsJson, bIsError);
	return bIsError ? FCVXToolExecutionResult::MakeError(Output) : FCVXToolExecutionResult::MakeSuccess(Output);
}
