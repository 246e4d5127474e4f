#include "HttpManager.h"

#include "Async/Async.h"
#include "CurlHttpRequest.h"
#include "HttpThread.h"

FHttpManager::FHttpManager()
	: Thread(MakeUnique<FHttpThread>())
	, Ended(MakeShared<TArray<TSharedPtr<FCurlHttpRequest>>>())
{
}

FHttpManager::~FHttpManager() = default;

bool FHttpManager::Start(const TSharedRef<FCurlHttpRequest>& Request)
{
	if (!Thread->IsRunning())
	{
		return false;
	}
	// The end travels behind all that the body's stream has posted to the game thread, so a completion never overtakes
	// its own last bytes.
	Request->GetTransfer()->OnEnded = [WeakEnded = Ended.ToWeakPtr(), WeakRequest = Request.ToWeakPtr(),
										  Transfer = Request->GetTransfer().ToWeakPtr()](EHttpFailureReason Reason)
	{
		AsyncTask(ENamedThreads::GameThread,
			[WeakEnded, WeakRequest, Transfer, Reason]
			{
				const TSharedPtr<TArray<TSharedPtr<FCurlHttpRequest>>> Target = WeakEnded.Pin();
				const TSharedPtr<FCurlHttpRequest> Owner = WeakRequest.Pin();
				if (Target && Owner && Owner->GetTransfer() == Transfer.Pin())
				{
					Owner->SetEnded(Reason);
					Target->Add(Owner);
				}
			});
	};
	Active.Add(Request);
	Thread->Add(Request->GetTransfer().ToSharedRef());
	return true;
}

void FHttpManager::Tick(float /*DeltaSeconds*/)
{
	const TArray<TSharedRef<FCurlHttpRequest>> Running = Active;
	for (const TSharedRef<FCurlHttpRequest>& Request : Running)
	{
		Request->CallProgress();
	}
	const TSharedRef<TArray<TSharedPtr<FCurlHttpRequest>>> Kept = Ended;
	const TArray<TSharedPtr<FCurlHttpRequest>> Done = MoveTemp(*Kept);
	for (const TSharedPtr<FCurlHttpRequest>& Request : Done)
	{
		Active.RemoveSingleSwap(Request.ToSharedRef());
		Request->CallComplete();
	}
}
