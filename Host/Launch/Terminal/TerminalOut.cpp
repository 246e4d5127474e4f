#include "Launch/Terminal/TerminalOut.h"

#include "Containers/StringConv.h"

#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace
{
constexpr const TCHAR* PlainSequence = TEXT("\x1b[0m");
constexpr const TCHAR* EraseLineSequence = TEXT("\r\x1b[2K");
} // namespace

FTerminalOut::FTerminalOut(const FTerminalStyle& InStyle, FSink InSink)
	: Style(InStyle)
	, Sink(MoveTemp(InSink))
{
}

void FTerminalOut::Write(const FString& Text, ETerminalLook Look)
{
	if (Text.IsEmpty())
	{
		return;
	}
	ClearStatus();
	const bool bLook = Style.bColour && Look != ETerminalLook::Plain;
	Sink(bLook ? GetLookSequence(Look) + Text + PlainSequence : Text);
	bLineBegun = !Text.EndsWith(TEXT("\n"));
}

void FTerminalOut::WriteLine(const FString& Text, ETerminalLook Look)
{
	EndLine();
	Write(Text, Look);
	bLineBegun = true;
	EndLine();
}

void FTerminalOut::EndLine()
{
	if (bLineBegun)
	{
		ClearStatus();
		Sink(TEXT("\n"));
		bLineBegun = false;
	}
}

void FTerminalOut::SetStatus(const FString& Text)
{
	if (!Style.bCursor || bLineBegun || Text.Equals(Status))
	{
		return;
	}
	ClearStatus();
	Status = Text;
	const FString Cut = Text.Left(FMath::Max(Style.Columns - 1, 0));
	Sink(Style.bColour ? GetLookSequence(ETerminalLook::Dim) + Cut + PlainSequence : Cut);
}

void FTerminalOut::ClearStatus()
{
	if (!Status.IsEmpty())
	{
		Status.Empty();
		Sink(EraseLineSequence);
	}
}

bool WriteToDescriptor(int32 Descriptor, const FString& Text)
{
	const FTCHARToUTF8 Utf8(Text);
	const ANSICHAR* Bytes = Utf8.Get();
	int32 Left = Utf8.Length();
	while (Left > 0)
	{
		const ssize_t Written = ::write(Descriptor, Bytes, static_cast<size_t>(Left));
		if (Written > 0)
		{
			Bytes += Written;
			Left -= static_cast<int32>(Written);
			continue;
		}
		pollfd Polled = {Descriptor, POLLOUT, 0};
		if (errno == EAGAIN)
		{
			(void)::poll(&Polled, 1, -1);
		}
		else if (errno != EINTR)
		{
			return false;
		}
	}
	return true;
}
