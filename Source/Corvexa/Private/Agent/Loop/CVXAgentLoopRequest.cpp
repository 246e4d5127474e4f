#include "Agent/Loop/CVXAgentLoop.h"

#include "Agent/CVXAgentLog.h"
#include "Agent/Loop/CVXRequestLog.h"
#include "Agent/Prompt/CVXSystemPrompt.h"
#include "Agent/Tasks/CVXTaskManager.h"
#include "Core/CVXSettings.h"
#include "Diagnostics/CVXPerformanceMonitor.h"
#include "ProfilingDebugging/CpuProfilerTrace.h"
#include "Providers/CVXProviderFactory.h"
#include "Tools/CVXToolRegistry.h"

// The first part of a turn: the request that asks the model.

namespace
{
/** Changes with everything that the provider is made from. */
FString MakeFingerprint(const FCVXProviderProfile& Profile)
{
	return FString::Printf(TEXT("%s|%d|%s|%s|%s|%d|%.2f|%d|%.0f"), *Profile.ProfileName,
		static_cast<int32>(Profile.ProviderType), *Profile.BaseURL, *Profile.ModelId, *Profile.ApiKeyEnvVar,
		Profile.MaxContextTokens, Profile.Temperature, Profile.MaxTokens, Profile.TimeoutSeconds);
}

/** For a model that takes no tools: the conversation without their traces. */
void RemoveToolTraces(TArray<FCVXMessage>& Messages)
{
	Messages.RemoveAll([](const FCVXMessage& Message) { return Message.Role == ECVXMessageRole::Tool; });
	for (FCVXMessage& Message : Messages)
	{
		Message.Content.RemoveAll([](const FCVXContentBlock& Block) { return Block.Type == TEXT("tool_use"); });
	}
}
} // namespace

void FCVXAgentLoop::SendRequest()
{
	TRACE_CPUPROFILER_EVENT_SCOPE_STR("CVX::SendRequest");
	if (!Provider)
	{
		OnError.Broadcast(TEXT("No provider configured."));
		return;
	}
	if (State == ECVXTaskState::Streaming)
	{
		UE_LOG(LogCVXAgentLoop, Warning, TEXT("SendRequest: already streaming — ignoring re-entrant call"));
		return;
	}
	BeginTurn();
	if (State != ECVXTaskState::Streaming)
	{
		return;
	}
	const FCVXProviderProfile* ProviderProfile = RefreshFromSettings();
	const FCVXProviderRequest Request = BuildRequest(ProviderProfile);
	CVXRequestLog::Write(Request);

	FCVXPerformanceMonitor::Get().OnStreamStart();
	ActiveRequestHandle = Provider->StreamRequest(Request, MakeCallbacks());
	if (!ActiveRequestHandle.IsEmpty())
	{
		UE_LOG(LogCVXAgentLoop, Log, TEXT("SendRequest: started request handle='%s'"), *ActiveRequestHandle);
		return;
	}
	UE_LOG(LogCVXAgentLoop, Error,
		TEXT("SendRequest: Provider->StreamRequest returned empty handle — request was not started"));
	if (State != ECVXTaskState::Error)
	{
		OnProviderError(TEXT("Request could not be started — check provider configuration and API key."));
	}
}

void FCVXAgentLoop::BeginTurn()
{
	FCVXPerformanceMonitor::Get().OnTurnStart(TurnCount);
	UE_LOG(
		LogCVXAgentLoop, Log, TEXT("SendRequest: turn=%d, messages=%d"), TurnCount, ContextManager.GetHistory().Num());
	CancelRetry();
	for (const auto& SubAgent : Turn.SubAgents)
	{
		FTSTicker::RemoveTicker(SubAgent.Value.Ticker);
	}
	ToolExecutor.ForgetPending();
	Turn = FTurn();
	++TurnSerial;
	SetState(ECVXTaskState::Streaming);
}

const FCVXProviderProfile* FCVXAgentLoop::RefreshFromSettings()
{
	const UCVXSettings* Settings = UCVXSettings::Get();
	const FCVXAgentProfile* Stored = Settings ? Settings->FindAgentProfile(AgentProfile->ProfileName) : nullptr;
	if (Stored && Stored->ProfileName == AgentProfile->ProfileName)
	{
		AgentProfile = CVXSharedProfile::Share(*Stored);
	}
	const FCVXProviderProfile* ProviderProfile =
		Settings ? Settings->FindProviderProfile(AgentProfile->ProviderProfileName) : nullptr;
	if (ProviderProfile)
	{
		RefreshProvider(*ProviderProfile);
	}
	else
	{
		UE_LOG(LogCVXAgentLoop, Warning, TEXT("SendRequest: provider profile not found, using cached provider"));
	}
	bModelHasVision = ProviderProfile && ProviderProfile->bSupportsVision;
	const bool bHasOverride = ProviderProfile && ProviderProfile->MaxContextTokens >= 1;
	ContextManager.SetMaxContextTokens(FMath::Max(
		MinContextTokens, bHasOverride ? ProviderProfile->MaxContextTokens : Provider->GetMaxContextTokens()));
	return ProviderProfile;
}

void FCVXAgentLoop::RefreshProvider(const FCVXProviderProfile& ProviderProfile)
{
	const FString Fingerprint = MakeFingerprint(ProviderProfile);
	if (Fingerprint == ProviderFingerprint)
	{
		return;
	}
	ProviderFingerprint = Fingerprint;
	if (TUniquePtr<ICVXProvider> Fresh = FCVXProviderFactory::CreateProvider(ProviderProfile))
	{
		Provider = MoveTemp(Fresh);
		UE_LOG(LogCVXAgentLoop, Log, TEXT("SendRequest: re-created provider for '%s'"), *ProviderProfile.ProfileName);
	}
}

FCVXProviderRequest FCVXAgentLoop::BuildRequest(const FCVXProviderProfile* ProviderProfile)
{
	const TSharedPtr<FCVXTask> Task = FindOwnTask();
	FCVXPromptContext PromptContext{*AgentProfile, ContextManager, LoopId, Guards.CompletedWork, InjectedKnowledgeIds};
	PromptContext.Settings = UCVXSettings::Get();
	PromptContext.ProviderProfile = ProviderProfile;
	PromptContext.TodoList = Task ? &Task->GetTodoList() : nullptr;
	PromptContext.TurnCount = TurnCount;

	FCVXProviderRequest Request;
	Request.SystemPrompt = CVXSystemPrompt::Build(PromptContext);
	Request.Messages = ContextManager.GetMessagesForRequest(Request.SystemPrompt);
	OfferTools(Request, ProviderProfile);
	if (ProviderProfile)
	{
		Request.Temperature = ProviderProfile->Temperature;
		Request.MaxTokens = ProviderProfile->MaxTokens;
	}
	return Request;
}

void FCVXAgentLoop::OfferTools(FCVXProviderRequest& Request, const FCVXProviderProfile* ProviderProfile) const
{
	if (ProviderProfile && !ProviderProfile->bSupportsToolUse)
	{
		RemoveToolTraces(Request.Messages);
		return;
	}
	Request.Tools = FCVXToolRegistry::Get().GetToolDescriptors(*AgentProfile);
	if (ProviderProfile && !ProviderProfile->bSupportsVision)
	{
		Request.Tools.RemoveAll([](const FCVXToolDescriptor& Tool) { return Tool.Name == TEXT("capture_viewport"); });
	}
}

FCVXProviderCallbacks FCVXAgentLoop::MakeCallbacks()
{
	// Holding the loop for the length of a callback, whatever the callback's listeners do to it.
	const auto Forward = [Weak = AsWeak()](auto Method)
	{
		return [Weak, Method](const auto& Argument)
		{
			if (const TSharedPtr<FCVXAgentLoop> Loop = Weak.Pin())
			{
				(Loop.Get()->*Method)(Argument);
			}
		};
	};
	FCVXProviderCallbacks Callbacks;
	Callbacks.OnTextDelta = Forward(&FCVXAgentLoop::OnProviderTextDelta);
	Callbacks.OnReasoningDelta = Forward(&FCVXAgentLoop::OnProviderReasoningDelta);
	Callbacks.OnToolCallComplete = Forward(&FCVXAgentLoop::OnProviderToolCallComplete);
	Callbacks.OnStreamFinished = Forward(&FCVXAgentLoop::OnProviderStreamFinished);
	Callbacks.OnError = Forward(&FCVXAgentLoop::OnProviderError);
	return Callbacks;
}
