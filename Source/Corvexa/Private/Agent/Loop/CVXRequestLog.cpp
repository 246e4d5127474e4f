#include "Agent/Loop/CVXRequestLog.h"

#include "Agent/CVXAgentLog.h"
#include "Providers/CVXProvider.h"

namespace
{
constexpr int32 MaxTextChars = 200;
constexpr int32 MaxResultChars = 300;

const TCHAR* GetRoleWord(ECVXMessageRole Role)
{
	switch (Role)
	{
	case ECVXMessageRole::User:
		return TEXT("User");
	case ECVXMessageRole::Assistant:
		return TEXT("Assistant");
	case ECVXMessageRole::Tool:
		return TEXT("Tool");
	default:
		return TEXT("Other");
	}
}

int32 CountRole(const TArray<FCVXMessage>& Messages, ECVXMessageRole Role)
{
	int32 Count = 0;
	for (const FCVXMessage& Message : Messages)
	{
		Count += Message.Role == Role ? 1 : 0;
	}
	return Count;
}

void WriteBlock(int32 Index, const TCHAR* Role, const FCVXContentBlock& Block)
{
	if (Block.Type == TEXT("text"))
	{
		const TCHAR* Dots = Block.Text.Len() > MaxTextChars ? TEXT("...") : TEXT("");
		UE_LOG(LogCVXAgentLoop, Verbose, TEXT("  [%d] %s | text: %s"), Index, Role,
			*(Block.Text.Left(MaxTextChars) + Dots));
	}
	else if (Block.Type == TEXT("tool_use"))
	{
		UE_LOG(LogCVXAgentLoop, Verbose, TEXT("  [%d] %s | tool_use: %s (id=%s)"), Index, Role, *Block.ToolName,
			*Block.ToolUseId);
	}
	else if (Block.Type == TEXT("tool_result"))
	{
		UE_LOG(LogCVXAgentLoop, Verbose, TEXT("  [%d] %s | tool_result: %s (id=%s) content=%s"), Index, Role,
			*Block.ToolName, *Block.ToolUseId, *Block.ToolResultContent.Left(MaxResultChars));
	}
	else
	{
		UE_LOG(LogCVXAgentLoop, Verbose, TEXT("  [%d] %s | %s"), Index, Role, *Block.Type);
	}
}
} // namespace

void CVXRequestLog::Write(const FCVXProviderRequest& Request)
{
	const TArray<FCVXMessage>& Messages = Request.Messages;
	UE_LOG(LogCVXAgentLoop, Log, TEXT("SendRequest: %d messages (User=%d, Assistant=%d, Tool=%d)"), Messages.Num(),
		CountRole(Messages, ECVXMessageRole::User), CountRole(Messages, ECVXMessageRole::Assistant),
		CountRole(Messages, ECVXMessageRole::Tool));
	if (LogCVXAgentLoop.IsSuppressed(ELogVerbosity::Verbose))
	{
		return;
	}
	for (int32 Index = 0; Index < Messages.Num(); ++Index)
	{
		for (const FCVXContentBlock& Block : Messages[Index].Content)
		{
			WriteBlock(Index, GetRoleWord(Messages[Index].Role), Block);
		}
	}
}
