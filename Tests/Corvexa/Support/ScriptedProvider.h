#pragma once

#include "Providers/CVXProvider.h"

/** What a scripted model answers to one request. */
struct FScriptedAnswer
{
	FString Text;
	FString Reasoning;
	TArray<FCVXToolCall> Calls;
	FCVXTokenUsage Usage;
	/** Ends the request in this error instead, when not empty. */
	FString Error;
	/** Sends nothing at all: the request stays open until it is cancelled. */
	bool bStall = false;

	static FScriptedAnswer Say(const FString& Text);
	static FScriptedAnswer Call(const FString& Name, const FString& Arguments, const FString& Id = FString());
	static FScriptedAnswer Fail(const FString& Error);
	static FScriptedAnswer Stall();
	/** Adds a further call to the same answer. */
	FScriptedAnswer& And(const FString& Name, const FString& Arguments, const FString& Id = FString());
};

/** What a scripted provider and its test share; it outlives the provider. */
struct FScriptedModel
{
	/** Given one a request, in order. When they are used up, `Otherwise` is asked. */
	TArray<FScriptedAnswer> Answers;
	TFunction<FScriptedAnswer(const FCVXProviderRequest&)> Otherwise;
	/** The requests as they came. */
	TArray<FCVXProviderRequest> Requests;
	bool bKeepRequests = true;
	int32 CancelledCount = 0;
	int32 StartedCount = 0;
	int32 ContextTokens = 200000;

	FScriptedModel& Then(FScriptedAnswer Answer);
};

/** An ICVXProvider that answers from a script, from game-thread tasks as real ones do. */
class FScriptedProvider final : public ICVXProvider
{
public:
	explicit FScriptedProvider(TSharedRef<FScriptedModel> InModel);
	~FScriptedProvider() override;

	FString GetProviderName() const override { return TEXT("Scripted"); }
	FString StreamRequest(const FCVXProviderRequest& Request, const FCVXProviderCallbacks& Callbacks) override;
	void CancelRequest(const FString& Handle) override;
	bool IsConfigured() const override { return true; }
	int32 GetMaxContextTokens() const override { return Model->ContextTokens; }

private:
	FScriptedAnswer NextAnswer(const FCVXProviderRequest& Request);

	TSharedRef<FScriptedModel> Model;
	/** The requests under way. Posted work holds it and stops when its request is gone. */
	TSharedRef<TSet<FString>> Active;
};
