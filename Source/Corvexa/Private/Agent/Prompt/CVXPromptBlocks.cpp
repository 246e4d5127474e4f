#include "Agent/Prompt/CVXPromptBlocks.h"

#include "Agent/Prompt/CVXPromptSources.h"
#include "Agent/Tasks/CVXDelegationHistory.h"
#include "Agent/Tasks/CVXTodoList.h"
#include "Core/CVXProfiles.h"
#include "CoreGlobals.h"
#include "Misc/DateTime.h"
#include "Misc/Paths.h"
#include "Tools/CVXToolRegistry.h"

namespace
{
constexpr int32 MaxMemoryChars = 8000;
/** The newest delegations are told in full, the earlier ones to so many characters. */
constexpr int32 RecentDelegations = 5;
constexpr int32 MaxEarlierSummary = 1000;

FString Ask(const TFunction<FString()>& Source)
{
	return Source ? Source() : FString();
}

/** @param Text empty gives nothing. */
FString WithHeading(const TCHAR* Heading, const FString& Text)
{
	return Text.IsEmpty() ? FString() : Heading + Text;
}

FString DescribeDelegation(int32 Number, const FCVXDelegationRecord& Record, int32 MaxSummary)
{
	return FString::Printf(TEXT("%d. [%s -> %s] %s\n"), Number, *Record.AgentProfile, *Record.GetStatus(),
		*Record.ResultSummary.Left(MaxSummary));
}
} // namespace

FString CVXPromptBlocks::Profile(const FCVXPromptContext& Context)
{
	FString Text = Context.Profile.SystemPrompt;
	const auto Replace = [&Text](const TCHAR* Placeholder, const FString& Value)
	{ Text.ReplaceInline(Placeholder, *Value, ESearchCase::IgnoreCase); };
	Replace(TEXT("{{project_name}}"), GInternalProjectName);
	Replace(TEXT("{{project_path}}"), FPaths::ProjectDir());
	Replace(TEXT("{{agent_name}}"), Context.Profile.ProfileName);
	Replace(TEXT("{{current_date}}"), FDateTime::Now().ToString(TEXT("%Y-%m-%d")));
	Replace(TEXT("{{platform}}"), TEXT("WindowsEditor"));
	Replace(TEXT("{{tool_count}}"), FString::FromInt(FCVXToolRegistry::Get().GetAllTools().Num()));
	return Text;
}

FString CVXPromptBlocks::ProjectDescription(const FCVXPromptContext&)
{
	const FString Text = Ask(FCVXPromptSources::Get().ProjectDescription);
	return Text.IsEmpty() ? FString() : TEXT("\n\n[Project Description]\n") + Text + TEXT("\n");
}

FString CVXPromptBlocks::ProjectFramework(const FCVXPromptContext&)
{
	return WithHeading(TEXT("\n[Project Framework]\n"), Ask(FCVXPromptSources::Get().ProjectFramework));
}

FString CVXPromptBlocks::Memory(const FCVXPromptContext&)
{
	const FString Text = Ask(FCVXPromptSources::Get().Memory);
	if (Text.Len() <= MaxMemoryChars)
	{
		return Text;
	}
	return Text.Left(MaxMemoryChars) +
		TEXT("\n[Memory truncated — too many entries. Consider using cvx_forget to clean up.]\n");
}

FString CVXPromptBlocks::CompletedDelegations(const FCVXPromptContext& Context)
{
	const TArray<FCVXDelegationRecord>& Records = FCVXDelegationHistory::Get().GetRecords(Context.LoopId);
	if (Records.IsEmpty())
	{
		return FString();
	}
	FString Text = TEXT("\n\n## COMPLETED DELEGATIONS (already done — DO NOT re-delegate)\n");
	const int32 Earlier = FMath::Max(0, Records.Num() - RecentDelegations);
	Text += Earlier > 0 ? TEXT("Earlier (completed, do not re-delegate):\n") : TEXT("");
	for (int32 Index = 0; Index < Records.Num(); ++Index)
	{
		Text += Earlier > 0 && Index == Earlier ? TEXT("Recent (full detail):\n") : TEXT("");
		Text += DescribeDelegation(Index + 1, Records[Index], Index < Earlier ? MaxEarlierSummary : MAX_int32);
	}
	Text += TEXT(
		"\nAll work listed above is FINISHED. Your TODO list has been auto-updated to reflect completions.\nDo NOT "
		"call delegate_to_agent for any of these tasks again.\nRe-delegation attempts are BLOCKED at the code level "
		"and will return an error.\nIf unsure, use read-only tools (list_files, read_file) to verify assets exist "
		"before continuing.\n");
	return Text;
}

FString CVXPromptBlocks::TodoState(const FCVXPromptContext& Context)
{
	if (!Context.TodoList || Context.TodoList->GetItems().IsEmpty())
	{
		return FString();
	}
	FString Text = TEXT("\n\n## Current TODO list state (authoritative — trust this over conversation history)\n");
	for (const FCVXTodoItem& Item : Context.TodoList->GetItems())
	{
		Text += FString::Printf(
			TEXT("- [%s] %s: %s\n"), *FCVXTodoList::StatusToString(Item.Status), *Item.Id, *Item.Content);
	}
	return Text;
}

FString CVXPromptBlocks::CompletedWork(const FCVXPromptContext& Context)
{
	if (Context.CompletedWork.IsEmpty())
	{
		return FString();
	}
	FString Text = TEXT("\n\n## Completed work this session (DO NOT repeat these operations)\n");
	for (const FString& Line : Context.CompletedWork)
	{
		Text += FString::Printf(TEXT("- %s\n"), *Line);
	}
	Text += TEXT("\nAll items above are DONE. Verify with read_file/list_files if needed, but do NOT re-create or "
				 "re-edit.\n");
	return Text;
}

FString CVXPromptBlocks::NoVision(const FCVXPromptContext& Context)
{
	if (!Context.ProviderProfile || Context.ProviderProfile->bSupportsVision)
	{
		return FString();
	}
	return TEXT(
		"\n\n[Note: Current model does not support vision. Visual verification (capture_viewport) is "
		"unavailable.\nQuality of spatial/visual work may be reduced. Use text-based verification:\nprint actor "
		"positions, check transforms, audit results with print() after each step.]");
}
