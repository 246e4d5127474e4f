#include "PipeEnd.h"

#include "HAL/FaultInjection.h"
#include "HAL/HostClock.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace
{
/** A reader that has gone shows as a failed write; the signal would end the process. */
void IgnoreBrokenPipes()
{
	static const bool bIgnored = std::signal(SIGPIPE, SIG_IGN) != SIG_ERR;
	(void)bIgnored;
}

/** A descriptor off the standard numbers, which a child's redirections would otherwise overwrite. */
FDescriptor OffStandard(FDescriptor Descriptor)
{
	if (Descriptor.Get() > STDERR_FILENO)
	{
		return Descriptor;
	}
	return FDescriptor(::fcntl(Descriptor.Get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

/** The bytes of a sequence by its first one; 1 for what begins none. */
int32 SequenceLength(uint8 First)
{
	if (First >= 0xC2 && First < 0xE0)
	{
		return 2;
	}
	if (First >= 0xE0 && First < 0xF0)
	{
		return 3;
	}
	return First >= 0xF0 && First < 0xF5 ? 4 : 1;
}
} // namespace

int32 CompleteUtf8Length(const uint8* Source, int32 Count)
{
	for (int32 Back = 1; Back <= 3 && Back <= Count; ++Back)
	{
		const uint8 Byte = Source[Count - Back];
		if ((Byte & 0xC0) != 0x80)
		{
			return SequenceLength(Byte) > Back ? Count - Back : Count;
		}
	}
	return Count;
}

bool FPipeEnd::Create(FDescriptor& OutRead, FDescriptor& OutWrite)
{
	IgnoreBrokenPipes();
	int Ends[2] = {-1, -1};
	if (FailsByPlan(EHostFault::Process) || ::pipe2(Ends, O_CLOEXEC) != 0)
	{
		return false;
	}
	OutRead = OffStandard(FDescriptor(Ends[0]));
	OutWrite = OffStandard(FDescriptor(Ends[1]));
	return OutRead.IsValid() && OutWrite.IsValid();
}

void FPipeEnd::StopBlocking()
{
	if (bBlocks)
	{
		bBlocks = ::fcntl(Descriptor.Get(), F_SETFL, ::fcntl(Descriptor.Get(), F_GETFL) | O_NONBLOCK) != 0;
	}
}

TArray<uint8> FPipeEnd::ReadBytes()
{
	StopBlocking();
	TArray<uint8> Bytes = MoveTemp(Held);
	Held.Reset();
	uint8 Block[16 * 1024];
	while (!bEnded && Bytes.Num() < MaxRead)
	{
		const int64 Room = std::min<int64>((int64)sizeof(Block), MaxRead - Bytes.Num());
		const int64 Got = FailsByPlan(EHostFault::Process) ? -1 : ::read(Descriptor.Get(), Block, (SIZE_T)Room);
		if (Got > 0)
		{
			Bytes.Append(Block, (int32)Got);
			continue;
		}
		bEnded = Got == 0 || (errno != EAGAIN && errno != EINTR);
		if (errno != EINTR || Got == 0)
		{
			break;
		}
	}
	return Bytes;
}

FString FPipeEnd::ReadText()
{
	TArray<uint8> Bytes = ReadBytes();
	const int32 Complete = bEnded ? Bytes.Num() : CompleteUtf8Length(Bytes.GetData(), Bytes.Num());
	Held.Append(Bytes.GetData() + Complete, Bytes.Num() - Complete);
	return FString::FromUtf8((const ANSICHAR*)Bytes.GetData(), Complete);
}

bool FPipeEnd::AwaitRoom(double Deadline) const
{
	const double Rest = Deadline - FHostClock::GetSystem().GetSeconds();
	pollfd Poll = {Descriptor.Get(), POLLOUT, 0};
	return Rest > 0 && (::poll(&Poll, 1, (int)(Rest * 1000) + 1) >= 0 || errno == EINTR);
}

int64 FPipeEnd::Write(const void* Source, int64 Count, double LimitSeconds)
{
	StopBlocking();
	const double Deadline = FHostClock::GetSystem().GetSeconds() + LimitSeconds;
	int64 Done = 0;
	while (Done < Count)
	{
		const int64 Put = FailsByPlan(EHostFault::Process)
			? -1
			: ::write(Descriptor.Get(), (const uint8*)Source + Done, (SIZE_T)(Count - Done));
		if (Put > 0)
		{
			Done += Put;
			continue;
		}
		const bool bAgain = Put == 0 || errno == EAGAIN || errno == EINTR;
		if (!bAgain || !AwaitRoom(Deadline))
		{
			break;
		}
	}
	return Done;
}
