#include "Agent/Context/CVXContextManager.h"
#include "Agent/Context/CVXHiddenMessage.h"
#include "Agent/Prompt/CVXPromptBlocks.h"
#include "Agent/Prompt/CVXPromptSources.h"
#include "Core/CVXSettings.h"
#include "Tools/CVXToolRegistry.h"

namespace
{
/** A shorter text says too little to search by. */
constexpr int32 MinQueryChars = 30;
constexpr int32 MaxQueryChars = 500;
constexpr int32 MaxRecentUserMessages = 3;
/** Source snippets are looked up on every such turn. */
constexpr int32 CodeContextInterval = 3;

/** Of the newest message of that role that says enough, the beginning of the text. @param Field the block's text. */
FString FindNewestText(
	const FCVXContextManager& ContextManager, ECVXMessageRole Role, const TCHAR* Type, FString FCVXContentBlock::*Field)
{
	const TArray<FCVXMessage>& History = ContextManager.GetHistory();
	for (int32 Index = History.Num() - 1; Index >= 0; --Index)
	{
		if (History[Index].Role != Role)
		{
			continue;
		}
		for (const FCVXContentBlock& Block : History[Index].Content)
		{
			if (Block.Type == Type && (Block.*Field).Len() >= MinQueryChars)
			{
				return (Block.*Field).Left(MaxQueryChars);
			}
		}
	}
	return FString();
}

FString FindAssistantContext(const FCVXPromptContext& Context)
{
	return FindNewestText(Context.ContextManager, ECVXMessageRole::Assistant, TEXT("text"), &FCVXContentBlock::Text);
}

/** What the user last said in their own words. */
FString FindUserText(const FCVXContextManager& ContextManager)
{
	const TArray<FCVXMessage>& History = ContextManager.GetHistory();
	for (int32 Index = History.Num() - 1; Index >= 0; --Index)
	{
		const FCVXMessage& Message = History[Index];
		if (Message.Role != ECVXMessageRole::User || CVXHiddenMessage::IsSystemMade(Message.MessageId))
		{
			continue;
		}
		const FCVXContentBlock* Block = Message.Content.FindByPredicate(
			[](const FCVXContentBlock& Each) { return Each.Type == TEXT("text") && !Each.Text.IsEmpty(); });
		return Block ? Block->Text.Left(MaxQueryChars) : FString();
	}
	return FString();
}

FString ChooseCodeQuery(const FCVXPromptContext& Context)
{
	FString Query;
	if (Context.TurnCount > 0)
	{
		Query = FindAssistantContext(Context);
		if (Query.IsEmpty())
		{
			Query = FindNewestText(Context.ContextManager, ECVXMessageRole::Tool, TEXT("tool_result"),
				&FCVXContentBlock::ToolResultContent);
		}
	}
	return Query.IsEmpty() ? FindUserText(Context.ContextManager) : Query;
}

TArray<FCVXMessage> FindRecentUserMessages(const FCVXContextManager& ContextManager)
{
	const TArray<FCVXMessage>& History = ContextManager.GetHistory();
	TArray<FCVXMessage> Messages;
	for (int32 Index = History.Num() - 1; Index >= 0 && Messages.Num() < MaxRecentUserMessages; --Index)
	{
		if (History[Index].Role == ECVXMessageRole::User)
		{
			Messages.Add(History[Index]);
		}
	}
	return Messages;
}

TSet<FString> FindActiveTools(const FCVXAgentProfile& Profile)
{
	TSet<FString> Names(Profile.AllowedTools);
	if (Names.IsEmpty())
	{
		for (const ICVXTool* Tool : FCVXToolRegistry::Get().GetAllTools())
		{
			Names.Add(Tool->GetName());
		}
	}
	return Names;
}
} // namespace

FString CVXPromptBlocks::Knowledge(const FCVXPromptContext& Context)
{
	const auto& Source = FCVXPromptSources::Get().Knowledge;
	if (!Source || !Context.Settings || !Context.Settings->bEnableKnowledgeInjection)
	{
		return FString();
	}
	FCVXKnowledgeQuery Query;
	Query.RecentUserMessages = FindRecentUserMessages(Context.ContextManager);
	if (Query.RecentUserMessages.IsEmpty())
	{
		return FString();
	}
	Query.AssistantContext = Context.TurnCount > 0 ? FindAssistantContext(Context) : FString();
	Query.ActiveTools = FindActiveTools(Context.Profile);
	Query.AgentProfileName = Context.Profile.ProfileName;
	Query.TokenBudget = Context.Settings->KnowledgeInjectionTokenBudget;
	return Source(Query, Context.InjectedKnowledgeIds);
}

FString CVXPromptBlocks::CodeContext(const FCVXPromptContext& Context)
{
	const auto& Source = FCVXPromptSources::Get().CodeContext;
	if (!Source || !Context.Settings || !Context.Settings->bEnableAutoRAG ||
		Context.TurnCount % CodeContextInterval != 0)
	{
		return FString();
	}
	const FString Query = ChooseCodeQuery(Context);
	return Query.IsEmpty() ? FString()
						   : Source(Query, Context.Settings->AutoRAGMaxResults, Context.Settings->AutoRAGTokenBudget);
}
