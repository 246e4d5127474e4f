#include "HttpModule.h"

#include "CoreGlobals.h"
#include "CurlHttpRequest.h"
#include "HttpThread.h"

namespace
{
TUniquePtr<FHttpModule> Module;
}

FHttpModule& FHttpModule::Get()
{
	check(IsInGameThread());
	if (!Module)
	{
		Module.Reset(new FHttpModule());
	}
	return *Module;
}

bool FHttpModule::IsAvailable()
{
	return Module.IsValid();
}

FHttpRequestRef FHttpModule::CreateRequest()
{
	return MakeShared<FCurlHttpRequest>();
}

void FHttpModule::Shutdown()
{
	Module.Reset();
}
