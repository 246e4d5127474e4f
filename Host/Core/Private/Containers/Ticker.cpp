#include "Containers/Ticker.h"

#include "HAL/PlatformTime.h"
#include "Misc/ScopeLock.h"

#include <thread>

class FTSTicker::FElement
{
public:
	FElement(const FTickerDelegate& InDelegate, float InDelay)
		: Delegate(InDelegate)
		, Delay(InDelay)
		, FireTime(FPlatformTime::Seconds() + (double)InDelay)
	{
	}

	/** @return false when the element was removed or is inside a call. */
	bool BeginCall()
	{
		const std::lock_guard Guard(Mutex);
		if (bRemoved || Caller != std::thread::id())
		{
			return false;
		}
		Caller = std::this_thread::get_id();
		return true;
	}

	void EndCall(bool bAgain)
	{
		const std::lock_guard Guard(Mutex);
		Caller = std::thread::id();
		bRemoved |= !bAgain;
		FireTime = FPlatformTime::Seconds() + (double)Delay;
		Idle.notify_all();
	}

	void Remove()
	{
		std::unique_lock Guard(Mutex);
		bRemoved = true;
		Idle.wait(Guard, [this] { return Caller == std::thread::id() || Caller == std::this_thread::get_id(); });
	}

	double GetFireTime() const
	{
		const std::lock_guard Guard(Mutex);
		return FireTime;
	}
	bool IsRemoved() const
	{
		const std::lock_guard Guard(Mutex);
		return bRemoved;
	}

	const FTickerDelegate Delegate;

private:
	mutable std::mutex Mutex;
	std::condition_variable Idle;
	const float Delay;
	double FireTime;
	bool bRemoved = false;
	/** The thread that is inside the delegate. */
	std::thread::id Caller;
};

FTSTicker& FTSTicker::GetCoreTicker()
{
	static FTSTicker Ticker;
	return Ticker;
}

FTSTicker::FDelegateHandle FTSTicker::AddTicker(const FTickerDelegate& Delegate, float InDelay)
{
	const TSharedRef<FElement> Element = MakeShared<FElement>(Delegate, InDelay);
	const FScopeLock Guard(&Lock);
	Elements.Add(Element);
	return Element;
}

FTSTicker::FDelegateHandle FTSTicker::AddTicker(const TCHAR*, float InDelay, TFunction<bool(float)> Function)
{
	return AddTicker(FTickerDelegate::CreateLambda(MoveTemp(Function)), InDelay);
}

void FTSTicker::RemoveTicker(FDelegateHandle Handle)
{
	if (const TSharedPtr<FElement> Element = Handle.Pin())
	{
		Element->Remove();
	}
}

void FTSTicker::Tick(float DeltaTime)
{
	TArray<TSharedRef<FElement>> Due;
	TArray<TSharedRef<FElement>> Gone;
	{
		const double Now = FPlatformTime::Seconds();
		const FScopeLock Guard(&Lock);
		Elements.RemoveAll(
			[&](const TSharedRef<FElement>& Element)
			{
				const bool bRemoved = Element->IsRemoved();
				if (bRemoved)
				{
					Gone.Add(Element);
				}
				else if (Element->GetFireTime() <= Now)
				{
					Due.Add(Element);
				}
				return bRemoved;
			});
	}
	for (const TSharedRef<FElement>& Element : Due)
	{
		CallElement(*Element, DeltaTime);
	}
}

void FTSTicker::CallElement(FElement& Element, float DeltaTime)
{
	if (Element.BeginCall())
	{
		Element.EndCall(Element.Delegate.IsBound() && Element.Delegate.Execute(DeltaTime));
	}
}

void FTSTicker::Reset()
{
	TArray<TSharedRef<FElement>> Ended;
	{
		const FScopeLock Guard(&Lock);
		Ended = MoveTemp(Elements);
	}
	for (const TSharedRef<FElement>& Element : Ended)
	{
		Element->Remove();
	}
}

double FTSTicker::GetSecondsToNextTick() const
{
	const FScopeLock Guard(&Lock);
	const double Now = FPlatformTime::Seconds();
	double Nearest = 1e30;
	for (const TSharedRef<FElement>& Element : Elements)
	{
		Nearest = std::min(Nearest, Element->GetFireTime() - Now);
	}
	return std::max(Nearest, 0.0);
}
