#include "Misc/OutputDeviceRedirector.h"

#include "Logging/TerminalDevice.h"
#include "Misc/ScopeLock.h"

FOutputDeviceRedirector* GLog = FOutputDeviceRedirector::Get();

namespace
{
/** A device that logs about each message it takes would never end; past this depth messages are dropped. */
constexpr int32 MaxDepth = 8;
} // namespace

FOutputDeviceRedirector* FOutputDeviceRedirector::Get()
{
	static FOutputDeviceRedirector* Instance = []
	{
		FOutputDeviceRedirector* Made = new FOutputDeviceRedirector;
		Made->AddOutputDevice(&FTerminalDevice::Get());
		return Made;
	}();
	return Instance;
}

void FOutputDeviceRedirector::AddOutputDevice(FOutputDevice* Device)
{
	const FScopeLock Guard(&Lock);
	if (Device && !Devices.Contains(Device))
	{
		Devices.Add(Device);
	}
}

void FOutputDeviceRedirector::RemoveOutputDevice(FOutputDevice* Device)
{
	const FScopeLock Guard(&Lock);
	const int32 Index = Device ? Devices.Find(Device) : INDEX_NONE;
	if (Index == INDEX_NONE)
	{
		return;
	}
	if (Depth > 0)
	{
		Devices[Index] = nullptr;
		return;
	}
	Devices.RemoveAt(Index);
}

bool FOutputDeviceRedirector::IsRedirectingTo(FOutputDevice* Device)
{
	const FScopeLock Guard(&Lock);
	return Devices.Contains(Device);
}

template <typename CallType>
void FOutputDeviceRedirector::ForEachDevice(const CallType& Call)
{
	const FScopeLock Guard(&Lock);
	if (Depth >= MaxDepth)
	{
		return;
	}
	++Depth;
	for (int32 Index = 0; Index < Devices.Num(); ++Index)
	{
		if (FOutputDevice* Device = Devices[Index])
		{
			Call(*Device);
		}
	}
	if (--Depth == 0)
	{
		Devices.RemoveAll([](const FOutputDevice* Device) { return Device == nullptr; });
	}
}

void FOutputDeviceRedirector::Serialize(const TCHAR* Text, ELogVerbosity::Type Verbosity, const FName& Category)
{
	ForEachDevice([&](FOutputDevice& Device) { Device.Serialize(Text, Verbosity, Category); });
}

void FOutputDeviceRedirector::Flush()
{
	ForEachDevice([](FOutputDevice& Device) { Device.Flush(); });
}
