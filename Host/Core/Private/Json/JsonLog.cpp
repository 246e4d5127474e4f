#include "Json/JsonLog.h"

#include "Containers/StringConv.h"

#include <cstdio>

void LogJsonError(FStringView Message)
{
	std::fprintf(stderr, "LogJson: Error: %s\n", FTCHARToUTF8(Message.GetData(), Message.Len()).Get());
}
