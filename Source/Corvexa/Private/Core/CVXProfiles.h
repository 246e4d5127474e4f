#pragma once

#include "Core/CVXTypes.h"

#include "CVXProfiles.generated.h"

/** The wire protocol of a provider. The vendor's brand stands in the profile's name. */
UENUM(BlueprintType)
enum class ECVXProviderType : uint8
{
	Anthropic = 0 UMETA(DisplayName = "Anthropic  (Claude API)"),
	OpenAICompat = 1 UMETA(DisplayName = "OpenAI-Compatible  (OpenAI u00b7 OpenRouter u00b7 Ollama u00b7 LM Studio "
										 "u00b7 Mistral u00b7 Groq u00b7 xAI u00b7 u2026)"),
	Gemini = 2 UMETA(DisplayName = "Google Gemini"),
	/** Kept so that old stored files load; treated as OpenAICompat. */
	OpenRouter = 3 UMETA(Hidden),
	/** Kept so that old stored files load; treated as OpenAICompat. */
	Custom = 4 UMETA(Hidden),
};

/** How to reach one model of one vendor. */
USTRUCT(BlueprintType)
struct FCVXProviderProfile
{
	GENERATED_BODY()

	/** The name that agent profiles and selections refer to; also the vendor's brand. */
	UPROPERTY(EditAnywhere, Category = "Provider")
	FString ProfileName = TEXT("Default");

	/** Wire protocol. */
	UPROPERTY(EditAnywhere, Category = "Provider")
	ECVXProviderType ProviderType = ECVXProviderType::Anthropic;

	/** API root override; empty takes the protocol's default. */
	UPROPERTY(EditAnywhere, Category = "Provider")
	FString BaseURL;

	/** The vendor's model id. */
	UPROPERTY(EditAnywhere, Category = "Provider")
	FString ModelId = TEXT("claude-sonnet-4-6");

	/** Name of the environment variable that holds the API key. */
	UPROPERTY(EditAnywhere, Category = "Provider")
	FString ApiKeyEnvVar = TEXT("ANTHROPIC_API_KEY");

	/** Sampling temperature. */
	UPROPERTY(EditAnywhere, Category = "Provider")
	float Temperature = 0.0f;

	/** Output token limit per request. */
	UPROPERTY(EditAnywhere, Category = "Provider")
	int32 MaxTokens = 8192;

	/** Context window override in tokens; 0 means auto-detect from provider (recommended). */
	UPROPERTY(EditAnywhere, Category = "Provider")
	int32 MaxContextTokens = 0;

	/** When off, no tools are offered and the model works in plain-text chat mode. */
	UPROPERTY(EditAnywhere, Category = "Provider")
	bool bSupportsToolUse = true;

	/** When off, viewport captures are withheld from the model. */
	UPROPERTY(EditAnywhere, Category = "Provider")
	bool bSupportsVision = true;

	/** HTTP time-out in seconds; 0 means the default of 300. */
	UPROPERTY(EditAnywhere, Category = "Provider", meta = (ClampMin = "0", ClampMax = "1800"))
	float TimeoutSeconds = 0.0f;
};

/** What one agent is and may do. */
USTRUCT(BlueprintType)
struct FCVXAgentProfile
{
	GENERATED_BODY()

	/** Identity; also what a delegation names. */
	UPROPERTY(EditAnywhere, Category = "Agent")
	FString ProfileName = TEXT("Default Agent");

	/** Icon shown for the profile. */
	UPROPERTY(EditAnywhere, Category = "Agent")
	FString IconName;

	/** Which provider profile the agent uses. */
	UPROPERTY(EditAnywhere, Category = "Agent")
	FString ProviderProfileName = TEXT("Default");

	/** The agent's role prompt. */
	UPROPERTY(EditAnywhere, Category = "Agent", meta = (MultiLine = true))
	FString SystemPrompt;

	/** Tools offered to the agent; empty allows all. */
	UPROPERTY(EditAnywhere, Category = "Agent")
	TArray<FString> AllowedTools;

	/** Tools withheld from the agent. */
	UPROPERTY(EditAnywhere, Category = "Agent")
	TArray<FString> DeniedTools;

	/** The agent may not change project files. */
	UPROPERTY(EditAnywhere, Category = "Agent")
	bool bReadOnly = false;

	/** How tool calls are approved. */
	UPROPERTY(EditAnywhere, Category = "Agent")
	ECVXApprovalMode ApprovalMode = ECVXApprovalMode::AutoApproveReads;

	/** Capture the viewport after Python calls that change what is seen; needs a model with vision. */
	UPROPERTY(EditAnywhere, Category = "Agent")
	bool bAutoVisualVerification = false;
};

/** How to start one MCP server. */
USTRUCT(BlueprintType)
struct FCVXMCPServerConfig
{
	GENERATED_BODY()

	/** Unique identifier; also the tool prefix in mcp__{Name}__toolname. */
	UPROPERTY(EditAnywhere, Category = "MCP")
	FString Name = TEXT("my-server");

	/** Executable path or command. */
	UPROPERTY(EditAnywhere, Category = "MCP")
	FString Command;

	/** Arguments of the command. */
	UPROPERTY(EditAnywhere, Category = "MCP")
	TArray<FString> Args;

	/** Extra environment variables in KEY=VALUE format. */
	UPROPERTY(EditAnywhere, Category = "MCP")
	TArray<FString> Env;

	/** When off, the server is ignored at start-up. */
	UPROPERTY(EditAnywhere, Category = "MCP")
	bool bEnabled = true;
};

/** A standing decision about a tool's calls. */
USTRUCT(BlueprintType)
struct FCVXAutoApprovalRule
{
	GENERATED_BODY()

	/** Exact name or wildcard. */
	UPROPERTY(EditAnywhere, Category = "Approval")
	FString ToolName;

	/** Optional path filter. */
	UPROPERTY(EditAnywhere, Category = "Approval")
	FString PathGlob;

	/** When off, the rule is a standing denial. */
	UPROPERTY(EditAnywhere, Category = "Approval")
	bool bAutoApprove = true;
};
