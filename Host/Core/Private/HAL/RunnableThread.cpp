#include "HAL/RunnableThread.h"

#include "Containers/StringConv.h"
#include "HAL/Runnable.h"
#include "HAL/ThreadName.h"
#include "Templates/UniquePtr.h"

#include <pthread.h>
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
	char Short[16] = {};
	std::strncpy(Short, TCHAR_TO_UTF8(Name), sizeof(Short) - 1);
	pthread_setname_np(pthread_self(), Short);
}
