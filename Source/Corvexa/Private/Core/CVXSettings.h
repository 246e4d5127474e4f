#pragma once

#include "Core/CVXProfiles.h"
#include "Engine/DeveloperSettings.h"

#include "CVXSettings.generated.h"

/** What answers a search by meaning. */
UENUM(BlueprintType)
enum class ECVXEmbeddingBackend : uint8
{
	Local = 0 UMETA(DisplayName = "Local BM25  (no API required, default)"),
	ExternalAPI = 1 UMETA(DisplayName = "External API  (vector embeddings, requires API key)"),
};

/**
 * The one persisted configuration, on the page Plugins > Corvexa. Its class default object is the settings. API keys
 * never stand here: a profile names the environment variable of its key. Game thread.
 */
UCLASS(config = Editor, defaultconfig, meta = (DisplayName = "Corvexa"))
class UCVXSettings : public UDeveloperSettings
{
	GENERATED_BODY()

public:
	/** The models that agents may use. */
	UPROPERTY(Config, EditAnywhere, Category = "Providers", meta = (TitleProperty = "ProfileName"))
	TArray<FCVXProviderProfile> ProviderProfiles;

	/** The agents. The five built-in ones are restored at each start. */
	UPROPERTY(Config, EditAnywhere, Category = "Agents", meta = (TitleProperty = "ProfileName"))
	TArray<FCVXAgentProfile> AgentProfiles;

	/** The provider profile of new conversations. */
	UPROPERTY(Config, EditAnywhere, Category = "Active",
		meta = (DisplayName = "Active Provider Profile", GetOptions = "GetProviderProfileNames"))
	FString ActiveProviderProfile = TEXT("Default");

	/** The agent profile of new conversations. */
	UPROPERTY(Config, EditAnywhere, Category = "Active",
		meta = (DisplayName = "Active Agent Profile", GetOptions = "GetAgentProfileNames"))
	FString ActiveAgentProfile = TEXT("Orchestrator");

	/** Standing decisions about tool calls. */
	UPROPERTY(Config, EditAnywhere, Category = "Approval",
		meta = (DisplayName = "Auto-Approval Rules", TitleProperty = "ToolName"))
	TArray<FCVXAutoApprovalRule> AutoApprovalRules;

	/** Globs relative to the project root that no tool may write, whatever the approval mode. */
	UPROPERTY(Config, EditAnywhere, Category = "Approval", meta = (DisplayName = "Protected Paths  (glob)"))
	TArray<FString> ProtectedPaths;

	/** Patterns with .gitignore syntax, whose matches the tools neither list nor search. */
	UPROPERTY(Config, EditAnywhere, Category = "Approval", meta = (DisplayName = "Ignore Patterns  (glob)"))
	TArray<FString> IgnorePatterns;

	/** Most model requests that one user message may cause. */
	UPROPERTY(Config, EditAnywhere, Category = "Agents",
		meta = (DisplayName = "Max Turns Per Message", ClampMin = "1", ClampMax = "500", UIMin = "10", UIMax = "200"))
	int32 MaxAgentTurns = 100;

	/** Answer the agent's questions with their first option, without asking. */
	UPROPERTY(Config, EditAnywhere, Category = "Agents", meta = (DisplayName = "Auto-Select Clarifications"))
	bool bAutoSelectClarifications = false;

	/** Show tokens and cost under the conversation. */
	UPROPERTY(Config, EditAnywhere, Category = "UI", meta = (DisplayName = "Show Token Usage Bar"))
	bool bShowTokenUsageBar = true;

	/** Show the arguments and results of tool calls unfolded. */
	UPROPERTY(Config, EditAnywhere, Category = "UI", meta = (DisplayName = "Show Tool Details"))
	bool bShowToolDetails = false;

	/** Most messages that the conversation view holds; 0 means unlimited. */
	UPROPERTY(Config, EditAnywhere, Category = "UI",
		meta = (DisplayName = "Max Messages In View", ClampMin = "0", ClampMax = "2000", UIMin = "50", UIMax = "500"))
	int32 MaxMessagesInView = 200;

	/** External tool servers. */
	UPROPERTY(
		Config, EditAnywhere, Category = "MCP Servers", meta = (DisplayName = "MCP Servers", TitleProperty = "Name"))
	TArray<FCVXMCPServerConfig> MCPServers;

	/** What answers a search by meaning. */
	UPROPERTY(Config, EditAnywhere, Category = "Semantic Search", meta = (DisplayName = "Search Backend"))
	ECVXEmbeddingBackend EmbeddingBackend = ECVXEmbeddingBackend::Local;

	/** Root of the embedding service, to which the endpoint's path is added. */
	UPROPERTY(Config, EditAnywhere, Category = "Semantic Search",
		meta = (DisplayName = "Embedding Base URL",
			EditCondition = "EmbeddingBackend == ECVXEmbeddingBackend::ExternalAPI", EditConditionHides))
	FString EmbeddingBaseURL = TEXT("https://api.openai.com/v1");

	/** The embedding service's model id. */
	UPROPERTY(Config, EditAnywhere, Category = "Semantic Search",
		meta = (DisplayName = "Embedding Model",
			EditCondition = "EmbeddingBackend == ECVXEmbeddingBackend::ExternalAPI", EditConditionHides))
	FString EmbeddingModel = TEXT("text-embedding-3-small");

	/** Name of the environment variable that holds the embedding service's key. */
	UPROPERTY(Config, EditAnywhere, Category = "Semantic Search",
		meta = (DisplayName = "API Key  (env var name)",
			EditCondition = "EmbeddingBackend == ECVXEmbeddingBackend::ExternalAPI", EditConditionHides))
	FString EmbeddingApiKeyEnvVar = TEXT("OPENAI_API_KEY");

	/** Add matching knowledge modules to the system prompt. */
	UPROPERTY(Config, EditAnywhere, Category = "Knowledge", meta = (DisplayName = "Enable Knowledge Injection"))
	bool bEnableKnowledgeInjection = true;

	/** Most tokens of knowledge in one request. */
	UPROPERTY(Config, EditAnywhere, Category = "Knowledge",
		meta = (DisplayName = "Knowledge Token Budget", ClampMin = "500", ClampMax = "50000", UIMin = "2000",
			UIMax = "30000", EditCondition = "bEnableKnowledgeInjection"))
	int32 KnowledgeInjectionTokenBudget = 12000;

	/** Add matching source snippets of the project to the system prompt. */
	UPROPERTY(Config, EditAnywhere, Category = "Semantic Search", meta = (DisplayName = "Enable Auto-RAG"))
	bool bEnableAutoRAG = true;

	/** Most source snippets in one request. */
	UPROPERTY(Config, EditAnywhere, Category = "Semantic Search",
		meta = (DisplayName = "Auto-RAG Max Results", ClampMin = "1", ClampMax = "10", UIMin = "1", UIMax = "10"))
	int32 AutoRAGMaxResults = 5;

	/** Most tokens of source snippets in one request. */
	UPROPERTY(Config, EditAnywhere, Category = "Semantic Search",
		meta = (DisplayName = "Auto-RAG Token Budget", ClampMin = "500", ClampMax = "8000", UIMin = "500",
			UIMax = "4000"))
	int32 AutoRAGTokenBudget = 2000;

	/** Most documents in the lexical index; 0 means unlimited. */
	UPROPERTY(Config, EditAnywhere, Category = "Semantic Search",
		meta = (DisplayName = "BM25 Max Indexed Documents", ClampMin = "0", ClampMax = "50000", UIMin = "1000",
			UIMax = "10000"))
	int32 BM25MaxIndexedDocs = 5000;

	/** Keep conversations across restarts. */
	UPROPERTY(Config, EditAnywhere, Category = "Checkpoints", meta = (DisplayName = "Enable Checkpoints"))
	bool bEnableCheckpoints = true;

	/** Most checkpoint files of one conversation. */
	UPROPERTY(Config, EditAnywhere, Category = "Checkpoints",
		meta = (DisplayName = "Max Checkpoints Per Task", ClampMin = "1", ClampMax = "100", UIMin = "5", UIMax = "50"))
	int32 MaxCheckpointsPerTask = 20;

	/** Most megabytes of checkpoint files in all; 0 means unlimited. */
	UPROPERTY(Config, EditAnywhere, Category = "Checkpoints",
		meta = (DisplayName = "Max Checkpoint Storage (MB)", ClampMin = "0", ClampMax = "10000", UIMin = "100",
			UIMax = "2000"))
	int32 MaxCheckpointStorageMB = 500;

	/** Write checkpoint files compressed. */
	UPROPERTY(Config, EditAnywhere, Category = "Checkpoints", meta = (DisplayName = "Compress Checkpoints (gzip)"))
	bool bCompressCheckpoints = true;

	/** The number of the newest migration that these settings have been through. */
	UPROPERTY(Config)
	int32 SettingsVersion = 0;

	/** Id of the last active task, with which the next start restores its chat. */
	UPROPERTY(Config)
	FString LastActiveTaskId;

	/** The class default object, with the configuration in it. Never null once the engine loop is up. */
	static UCVXSettings* Get();

	/**
	 * The first profile of this name, without regard to case.
	 * @return the first profile of all for an unknown name, null only without any. Valid until the array changes.
	 */
	const FCVXProviderProfile* FindProviderProfile(const FString& Name) const;
	/** As `FindProviderProfile`, for agents. */
	const FCVXAgentProfile* FindAgentProfile(const FString& Name) const;

	/** The names of the provider profiles, in order. */
	UFUNCTION()
	TArray<FString> GetProviderProfileNames() const;

	/** The names of the agent profiles, in order. */
	UFUNCTION()
	TArray<FString> GetAgentProfileNames() const;

	/** Writes all settings to the project's default config file, without what holds for this run alone. A failure isn't
	 * reported here: the config logs it. */
	void SaveToDefaultConfig();

	void PostInitProperties() override;
	void PostEditChangeProperty(FPropertyChangedEvent& PropertyChangedEvent) override;
	FName GetCategoryName() const override;
	FName GetSectionName() const override;
};
