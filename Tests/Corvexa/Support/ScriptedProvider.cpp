#include "Corvexa/Support/ScriptedProvider.h"

#include "Async/Async.h"
#include "Misc/Guid.h"

namespace
{
FString MakeCallId(const FString& Id)
{
	return Id.IsEmpty() ? TEXT("call_") + FGuid::NewGuid().ToString(EGuidFormats::Digits) : Id;
}

/** Plays an answer; each callback may cancel the request, after which nothing more comes. */
void Play(const FScriptedAnswer& Answer, const FCVXProviderCallbacks& Callbacks, const FString& Handle,
	const TSharedRef<TSet<FString>>& Active)
{
	const auto IsLive = [&] { return Active->Contains(Handle); };
	if (IsLive() && !Answer.Reasoning.IsEmpty())
	{
		Callbacks.OnReasoningDelta(Answer.Reasoning);
	}
	if (IsLive() && !Answer.Text.IsEmpty())
	{
		Callbacks.OnTextDelta(Answer.Text);
	}
	for (const FCVXToolCall& Call : Answer.Calls)
	{
		if (IsLive())
		{
			Callbacks.OnToolCallComplete(Call);
		}
	}
	if (Active->Remove(Handle) == 0)
	{
		return;
	}
	if (Answer.Error.IsEmpty())
	{
		Callbacks.OnStreamFinished(Answer.Usage);
		return;
	}
	Callbacks.OnError(Answer.Error);
}
} // namespace

FScriptedAnswer FScriptedAnswer::Say(const FString& Text)
{
	FScriptedAnswer Answer;
	Answer.Text = Text;
	return Answer;
}

FScriptedAnswer FScriptedAnswer::Call(const FString& Name, const FString& Arguments, const FString& Id)
{
	FScriptedAnswer Answer;
	return Answer.And(Name, Arguments, Id);
}

FScriptedAnswer FScriptedAnswer::Fail(const FString& Error)
{
	FScriptedAnswer Answer;
	Answer.Error = Error;
	return Answer;
}

FScriptedAnswer FScriptedAnswer::Stall()
{
	FScriptedAnswer Answer;
	Answer.bStall = true;
	return Answer;
}

FScriptedAnswer& FScriptedAnswer::And(const FString& Name, const FString& Arguments, const FString& Id)
{
	Calls.Add({MakeCallId(Id), Name, Arguments});
	return *this;
}

FScriptedModel& FScriptedModel::Then(FScriptedAnswer Answer)
{
	Answers.Add(MoveTemp(Answer));
	return *this;
}

FScriptedProvider::FScriptedProvider(TSharedRef<FScriptedModel> InModel)
	: Model(MoveTemp(InModel))
	, Active(MakeShared<TSet<FString>>())
{
}

FScriptedProvider::~FScriptedProvider()
{
	Active->Empty();
}

FString FScriptedProvider::StreamRequest(const FCVXProviderRequest& Request, const FCVXProviderCallbacks& Callbacks)
{
	++Model->StartedCount;
	if (Model->bKeepRequests)
	{
		Model->Requests.Add(Request);
	}
	const FScriptedAnswer Answer = NextAnswer(Request);
	const FString Handle = FGuid::NewGuid().ToString(EGuidFormats::Digits);
	Active->Add(Handle);
	if (!Answer.bStall)
	{
		AsyncTask(ENamedThreads::GameThread,
			[Answer, Callbacks, Handle, Kept = Active] { Play(Answer, Callbacks, Handle, Kept); });
	}
	return Handle;
}

void FScriptedProvider::CancelRequest(const FString& Handle)
{
	Model->CancelledCount += Active->Remove(Handle);
}

FScriptedAnswer FScriptedProvider::NextAnswer(const FCVXProviderRequest& Request)
{
	if (!Model->Answers.IsEmpty())
	{
		FScriptedAnswer Answer = MoveTemp(Model->Answers[0]);
		Model->Answers.RemoveAt(0);
		return Answer;
	}
	return Model->Otherwise ? Model->Otherwise(Request) : FScriptedAnswer::Fail(TEXT("the script is at its end"));
}
