#include "Logging/TerminalDevice.h"

#include "Containers/StringConv.h"

#include <cstdio>

FTerminalDevice& FTerminalDevice::Get()
{
	static FTerminalDevice* Device = new FTerminalDevice;
	return *Device;
}

void FTerminalDevice::Serialize(const TCHAR* Text, ELogVerbosity::Type MessageVerbosity, const FName& Category)
{
	if (MessageVerbosity > Verbosity)
	{
		return;
	}
	const FString Line = FormatLogLine(Text, MessageVerbosity, Category) + u'\n';
	const FTCHARToUTF8 Bytes(Line);
	(void)!std::fwrite(Bytes.Get(), 1, (SIZE_T)Bytes.Length(), stderr);
}
