#include "Misc/AssertionMacros.h"

#include "Containers/StringConv.h"

#include <cstdio>
#include <cstdlib>

namespace
{
void Print(const char* Kind, const char* Expression, const char* File, int Line, const TCHAR* Message)
{
	std::fprintf(stderr, "%s failed: %s [%s:%d]", Kind, Expression, File, Line);
	if (Message)
	{
		std::fprintf(stderr, " %s", TCHAR_TO_UTF8(Message));
	}
	std::fputc('\n', stderr);
	std::fflush(stderr);
}
} // namespace

void FDebug::CheckFailed(const char* Expression, const char* File, int Line)
{
	CheckFailed(Expression, File, Line, nullptr);
}

void FDebug::CheckFailed(const char* Expression, const char* File, int Line, const TCHAR* Message)
{
	Print("Assertion", Expression, File, Line, Message);
	std::abort();
}

bool FDebug::EnsureFailed(bool& bReported, const char* Expression, const char* File, int Line)
{
	return EnsureFailed(bReported, Expression, File, Line, nullptr);
}

bool FDebug::EnsureFailed(bool& bReported, const char* Expression, const char* File, int Line, const TCHAR* Message)
{
	if (!__atomic_exchange_n(&bReported, true, __ATOMIC_RELAXED))
	{
		Print("Ensure", Expression, File, Line, Message);
	}
	return false;
}
