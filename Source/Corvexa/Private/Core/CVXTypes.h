#pragma once

#include "CoreMinimal.h"
#include "UObject/CoreStructs.h"
#include "UObject/ObjectMacros.h"

#include "CVXTypes.generated.h"

/** Who speaks in a message. */
UENUM(BlueprintType)
enum class ECVXMessageRole : uint8
{
	System = 0 UMETA(DisplayName = "System"),
	User = 1 UMETA(DisplayName = "User"),
	Assistant = 2 UMETA(DisplayName = "Assistant"),
	Tool = 3 UMETA(DisplayName = "Tool Result"),
};

/** The state of one agent loop. The numbers appear in log texts. */
UENUM(BlueprintType)
enum class ECVXTaskState : uint8
{
	Idle = 0 UMETA(DisplayName = "Idle"),
	Streaming = 1 UMETA(DisplayName = "Streaming"),
	WaitingApproval = 2 UMETA(DisplayName = "Waiting Approval"),
	WaitingForSubAgent = 3 UMETA(DisplayName = "Waiting For Sub-Agent"),
	WaitingClarification = 4 UMETA(DisplayName = "Waiting Clarification"),
	ExecutingTool = 5 UMETA(DisplayName = "Executing Tool"),
	Complete = 6 UMETA(DisplayName = "Complete"),
	Error = 7 UMETA(DisplayName = "Error"),
	Cancelled = 8 UMETA(DisplayName = "Cancelled"),
};

/** What was decided about one tool call. */
UENUM(BlueprintType)
enum class ECVXApprovalState : uint8
{
	Pending = 0 UMETA(DisplayName = "Pending"),
	Approved = 1 UMETA(DisplayName = "Approved"),
	Denied = 2 UMETA(DisplayName = "Denied"),
	AlwaysAllow = 3 UMETA(DisplayName = "Always Allow"),
	AlwaysDeny = 4 UMETA(DisplayName = "Always Deny"),
};

/** Which tool calls of an agent need the user's consent. */
UENUM(BlueprintType)
enum class ECVXApprovalMode : uint8
{
	/** Ask approval for all tools */
	AlwaysAsk = 0 UMETA(DisplayName = "Always Ask"),
	/** Ask for write/destructive tools only, auto-approve reads */
	AutoApproveReads = 1 UMETA(DisplayName = "Auto Approve Reads"),
	/** Fully autonomous (ask nothing) */
	FullyAutonomous = 2 UMETA(DisplayName = "Fully Autonomous"),
};

/**
 * One piece of a message: a flat record in which Type says which fields count. Types compare without regard to case.
 */
USTRUCT(BlueprintType)
struct FCVXContentBlock
{
	GENERATED_BODY()

	/** "text", "tool_use", "tool_result" or "image". */
	UPROPERTY()
	FString Type;

	/** The text of a "text" block. */
	UPROPERTY()
	FString Text;

	/** Ties a "tool_result" to its "tool_use". */
	UPROPERTY()
	FString ToolUseId;

	/** The tool's name, in "tool_use" and "tool_result". */
	UPROPERTY()
	FString ToolName;

	/** The raw JSON text of the tool's input, in "tool_use". */
	UPROPERTY()
	FString InputJson;

	/** The result text, in "tool_result". */
	UPROPERTY()
	FString ToolResultContent;

	/** Whether the result is a failure, in "tool_result". */
	UPROPERTY()
	bool bIsError = false;

	/** Base64 of a PNG or JPEG image, in "image". */
	UPROPERTY()
	FString ImageBase64;

	/** The image's media type, such as "image/png". */
	UPROPERTY()
	FString ImageMediaType;
};

/** One message of a conversation. */
USTRUCT(BlueprintType)
struct FCVXMessage
{
	GENERATED_BODY()

	/** 32 hexadecimal digits, or a readable tag on a message that the agent loop adds for the model alone. */
	UPROPERTY()
	FString MessageId;

	/** Who speaks. */
	UPROPERTY()
	ECVXMessageRole Role = ECVXMessageRole::User;

	/** The blocks, in order. */
	UPROPERTY()
	TArray<FCVXContentBlock> Content;

	/** UTC time of creation. */
	UPROPERTY()
	FDateTime Timestamp = FDateTime(0);

	/** The agent that produced an assistant message, such as "Coder"; empty on all others. */
	UPROPERTY()
	FString AgentName;

	/** The model's thinking of this turn. It goes back to vendors that refuse the turn without it. */
	UPROPERTY()
	FString ReasoningContent;

	/** A user message with one "text" block, a fresh id and the time of now. */
	static FCVXMessage MakeUserText(const FString& Text);

	/** As `MakeUserText`, with the role `System`. */
	static FCVXMessage MakeSystemText(const FString& Text);

	/** The text of the first "text" block; empty when there is none. */
	FString GetFirstTextContent() const;
};

/** Token counters of one request, or a running sum of several. */
USTRUCT(BlueprintType)
struct FCVXTokenUsage
{
	GENERATED_BODY()

	/** Tokens of the request. */
	UPROPERTY()
	int32 InputTokens = 0;

	/** Tokens of the answer. */
	UPROPERTY()
	int32 OutputTokens = 0;

	/** Tokens that the vendor read from its prompt cache. */
	UPROPERTY()
	int32 CacheRead = 0;

	/** Tokens that the vendor wrote to its prompt cache. */
	UPROPERTY()
	int32 CacheWrite = 0;

	/** Whether the vendor stopped because of the output limit. */
	bool bTruncated = false;

	/** The cost in US dollars, from prices per million tokens. Cache counters don't enter. */
	float EstimateCostUSD(float InputPricePerMillion, float OutputPricePerMillion) const;
};

/** One tool as it is offered to a model. */
struct FCVXToolDescriptor
{
	FString Name;
	FString Description;
	/** The JSON Schema of the tool's input, as text. */
	FString InputSchemaJson;
};

/** One tool call that the model requested, always complete. */
struct FCVXToolCall
{
	/** The vendor's id of the call. */
	FString Id;
	FString Name;
	/** The whole argument JSON as text. */
	FString Arguments;
};

/** One answer that the user may choose. */
struct FCVXClarificationOption
{
	FString Title;
	FString Description;
};

/** One question to the user; without options it is answered in the user's own words. */
struct FCVXClarificationQuestion
{
	FString Question;
	TArray<FCVXClarificationOption> Options;
};

/** The questions of one tool call, as the user is shown them. */
struct FCVXClarificationRequest
{
	FString ToolUseId;
	TArray<FCVXClarificationQuestion> Questions;
};

/** The outcome of one tool call. */
struct FCVXToolExecutionResult
{
	/** A plain success. @param Output what the model reads. */
	static FCVXToolExecutionResult MakeSuccess(FString Output);

	/** A failure. @param Message says why, and what to do next. */
	static FCVXToolExecutionResult MakeError(FString Message);

	/** The text that goes back to the model. */
	FString Output;
	bool bIsError = false;
	/** The task is finished and Output is its result. */
	bool bIsCompletion = false;
	/** A sub-agent must run; the fields below say which and how. */
	bool bIsDelegation = false;
	FString DelegateProfile;
	FString DelegateTask;
	FString DelegateContext;
	int32 DelegateMaxTurns = 30;
	/** 0 takes the delegation's own default. */
	float DelegateTimeoutSeconds = 0.0f;
	/** An attached image. */
	FString ImageBase64;
	FString ImageMediaType;
	/** The user must answer Questions, of which at least one has options. */
	bool bHasQuestions = false;
	TArray<FCVXClarificationQuestion> Questions;
};

/** The agent loop's record of one finished call of the current turn. */
struct FCVXCompletedToolResult
{
	FString ToolUseId;
	FString ToolName;
	FString Output;
	bool bIsError = false;
	FString ImageBase64;
	FString ImageMediaType;
};

/** Estimates and display forms of token counts and costs. */
class FCVXTokenCounter
{
public:
	/** A quick estimate for display: a quarter of the characters, at least 1. */
	static int32 EstimateTokens(const FString& Text);

	/** The cost in US dollars, from prices per million tokens. */
	static float EstimateCostUSD(int32 InputTokens, int32 OutputTokens, float InputPrice, float OutputPrice);

	/** With four, three or two decimals by size; below a hundredth of a cent "<$0.0001". */
	static FString FormatCostUSD(float Cost);

	/** "999", "1.0k", "1.0M". */
	static FString FormatTokenCount(int32 Count);
};
