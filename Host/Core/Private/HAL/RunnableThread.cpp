#include "HAL/RunnableThread.h"

#include "Containers/StringConv.h"
#include "HAL/Runnable.h"
#include "HAL/ThreadName.h"
#include "Templates/UniquePtr.h"

#include <algorithm>
#include <pthread.h>
#include <string>
#include <system_error>

FRunnableThread* FRunnableThread::Create(FRunnable* Runnable, const TCHAR* Name, uint32, EThreadPriority)
{
	check(Runnable != nullptr);
	TUniquePtr<FRunnableThread> Result(new FRunnableThread(Runnable, Name));
	try
	{
		Result->Thread = std::thread(&FRunnableThread::Main, Result.Get());
	}
	catch (const std::system_error&)
	{
		return nullptr;
	}
	return Result.Release();
}

FRunnableThread::FRunnableThread(FRunnable* InRunnable, const TCHAR* InName)
	: Runnable(InRunnable)
	, Name(InName)
{
}

FRunnableThread::~FRunnableThread()
{
	Kill(true);
}

bool FRunnableThread::Kill(bool bShouldWait)
{
	if (Thread.joinable())
	{
		Runnable->Stop();
	}
	if (bShouldWait)
	{
		WaitForCompletion();
	}
	return true;
}

void FRunnableThread::WaitForCompletion()
{
	if (Thread.joinable())
	{
		Thread.join();
	}
}

void FRunnableThread::Main()
{
	SetCurrentThreadName(*Name);
	if (Runnable->Init())
	{
		Runnable->Run();
		Runnable->Exit();
	}
}

void SetCurrentThreadName(const TCHAR* Name)
{
	const FTCHARToUTF8 Utf8(Name);
	const std::string Short(Utf8.Get(), (SIZE_T)std::min(Utf8.Length(), 15));
	pthread_setname_np(pthread_self(), Short.c_str());
}
