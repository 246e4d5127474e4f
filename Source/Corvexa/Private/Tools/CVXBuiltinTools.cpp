#include "Tools/CVXBuiltinTools.h"

#include "Core/CVXLog.h"
#include "Tools/CVXToolRegistry.h"
#include "Tools/Conversation/CVXAskFollowupQuestionTool.h"
#include "Tools/Conversation/CVXAttemptCompletionTool.h"
#include "Tools/Conversation/CVXDelegateToAgentTool.h"
#include "Tools/Conversation/CVXForkConversationTool.h"
#include "Tools/Conversation/CVXUpdateTodoListTool.h"
#include "Tools/Edit/CVXApplyPatchTool.h"
#include "Tools/Edit/CVXEditFileTool.h"
#include "Tools/Files/CVXListFilesTool.h"
#include "Tools/Files/CVXReadFileTool.h"
#include "Tools/Files/CVXSearchFilesTool.h"
#include "Tools/Files/CVXSearchInFilesTool.h"
#include "Tools/Files/CVXWriteFileTool.h"
#include "Tools/Git/CVXGitCommitTool.h"
#include "Tools/Git/CVXGitStatusTool.h"
#include "Tools/Shell/CVXExecuteShellTool.h"

namespace
{
struct FBuiltinTool
{
	/** The tool's own name, for who reads the table. */
	const TCHAR* Name;
	/** @return the tool, or null where it can't work. */
	TUniquePtr<ICVXTool> (*Make)();
};

template <typename ToolType>
TUniquePtr<ICVXTool> Make()
{
	return MakeUnique<ToolType>();
}

constexpr FBuiltinTool BuiltinTools[] = {
	{TEXT("read_file"), &Make<FCVXReadFileTool>},
	{TEXT("write_file"), &Make<FCVXWriteFileTool>},
	{TEXT("edit_file"), &Make<FCVXEditFileTool>},
	{TEXT("list_files"), &Make<FCVXListFilesTool>},
	{TEXT("search_files"), &Make<FCVXSearchFilesTool>},
	{TEXT("search_in_files"), &Make<FCVXSearchInFilesTool>},
	{TEXT("apply_patch"), &Make<FCVXApplyPatchTool>},
	{TEXT("execute_shell"), &Make<FCVXExecuteShellTool>},
	{TEXT("git_query"), &Make<FCVXGitStatusTool>},
	{TEXT("git_commit"), &Make<FCVXGitCommitTool>},
	{TEXT("attempt_completion"), &Make<FCVXAttemptCompletionTool>},
	{TEXT("ask_followup_question"), &Make<FCVXAskFollowupQuestionTool>},
	{TEXT("update_todo_list"), &Make<FCVXUpdateTodoListTool>},
	{TEXT("delegate_to_agent"), &Make<FCVXDelegateToAgentTool>},
	{TEXT("fork_conversation"), &Make<FCVXForkConversationTool>},
};
} // namespace

void RegisterBuiltinTools()
{
	FCVXToolRegistry& Registry = FCVXToolRegistry::Get();
	for (const FBuiltinTool& Builtin : BuiltinTools)
	{
		TUniquePtr<ICVXTool> Tool = Builtin.Make();
		if (Tool.IsValid())
		{
			check(Tool->GetName() == Builtin.Name);
			Registry.RegisterTool(MoveTemp(Tool));
		}
	}
	UE_LOG(LogCorvexa, Log, TEXT("Registered %d built-in tools"), Registry.GetAllTools().Num());
}
