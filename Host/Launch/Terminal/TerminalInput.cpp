#include "Launch/Terminal/TerminalInput.h"

#include "Async/Async.h"
#include "HAL/RunnableThread.h"
#include "Misc/ScopeLock.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace
{
constexpr int InterruptedStatus = 130;
constexpr int32 MaxUntakenInterrupts = 3;
constexpr std::array CaughtSignals = {SIGINT, SIGTERM, SIGHUP};
/** In the pipe of signals: the thread's end. */
constexpr unsigned char StopByte = 0;

/** Where the signal handler writes; all that it may touch. */
std::atomic<int> SignalDescriptor{-1};

void OnSignal(int Signal)
{
	const int ErrorBefore = errno;
	const unsigned char Byte = static_cast<unsigned char>(Signal);
	// A full pipe already holds more than enough.
	[[maybe_unused]] const ssize_t Written = ::write(SignalDescriptor.load(), &Byte, 1);
	errno = ErrorBefore;
}
} // namespace

/** Catches the signals into a pipe while it lives. What is ignored stays ignored, as behind `nohup`. */
class FTerminalInput::FSignalPipe
{
public:
	FSignalPipe()
	{
		verify(::pipe2(Ends.data(), O_CLOEXEC | O_NONBLOCK) == 0);
		SignalDescriptor = Ends[1];
		for (size_t Index = 0; Index < CaughtSignals.size(); ++Index)
		{
			struct sigaction Action = {};
			Action.sa_handler = &OnSignal;
			Action.sa_flags = SA_RESTART;
			verify(::sigaction(CaughtSignals[Index], nullptr, &Before[Index]) == 0);
			if (Before[Index].sa_handler != SIG_IGN)
			{
				verify(::sigaction(CaughtSignals[Index], &Action, nullptr) == 0);
			}
		}
	}
	~FSignalPipe()
	{
		for (size_t Index = 0; Index < CaughtSignals.size(); ++Index)
		{
			verify(::sigaction(CaughtSignals[Index], &Before[Index], nullptr) == 0);
		}
		SignalDescriptor = -1;
		::close(Ends[0]);
		::close(Ends[1]);
	}

	int GetReadEnd() const { return Ends[0]; }
	void Stop() { verify(::write(Ends[1], &StopByte, 1) == 1); }

private:
	std::array<int, 2> Ends = {-1, -1};
	std::array<struct sigaction, CaughtSignals.size()> Before = {};
};

FTerminalInput::FTerminalInput(FTerminalInputHandlers InHandlers, bool bInReadLines)
	: Shared(MakeShared<FShared>())
	, bReadLines(bInReadLines)
	, bTyped(::isatty(STDIN_FILENO) != 0)
	, Signals(MakeUnique<FSignalPipe>())
{
	Shared->Handlers = MoveTemp(InHandlers);
	Thread.Reset(FRunnableThread::Create(this, TEXT("TerminalInput")));
	check(Thread.IsValid());
}

FTerminalInput::~FTerminalInput()
{
	Thread.Reset();
	Shared->Handlers = FTerminalInputHandlers();
}

void FTerminalInput::Stop()
{
	Signals->Stop();
}

uint32 FTerminalInput::Run()
{
	std::array<pollfd, 2> Polled = {
		pollfd{Signals->GetReadEnd(), POLLIN, 0}, pollfd{bReadLines ? STDIN_FILENO : -1, POLLIN, 0}};
	for (;;)
	{
		if (::poll(Polled.data(), Polled.size(), -1) < 0)
		{
			continue;
		}
		if (Polled[0].revents != 0 && !TakeSignal())
		{
			return 0;
		}
		if (Polled[1].revents != 0 && !TakeBytes())
		{
			Polled[1].fd = -1;
		}
	}
}

bool FTerminalInput::TakeSignal()
{
	unsigned char Signal = 0;
	if (::read(Signals->GetReadEnd(), &Signal, 1) != 1)
	{
		return true;
	}
	if (Signal == StopByte)
	{
		return false;
	}
	if (Signal != SIGINT)
	{
		Post([](FShared& To) { To.Handlers.OnTerminate ? To.Handlers.OnTerminate() : void(); });
		return true;
	}
	if (++Shared->UntakenInterrupts >= MaxUntakenInterrupts)
	{
		::_exit(InterruptedStatus);
	}
	Post(
		[](FShared& To)
		{
			To.UntakenInterrupts = 0;
			To.Handlers.OnInterrupt ? To.Handlers.OnInterrupt() : void();
		});
	return true;
}

bool FTerminalInput::ForgetTyped()
{
	if (bTyped)
	{
		const FScopeLock Lock(&Reading);
		// What the terminal still keeps, the line that was begun, and the lines that are on their way here.
		(void)::tcflush(STDIN_FILENO, TCIFLUSH);
		Line.Reset();
		++Shared->Forgotten;
	}
	return bTyped;
}

bool FTerminalInput::TakeBytes()
{
	const FScopeLock Lock(&Reading);
	// What was there to read may have been forgotten meanwhile, and reading would wait.
	pollfd Polled = {STDIN_FILENO, POLLIN, 0};
	if (::poll(&Polled, 1, 0) <= 0)
	{
		return true;
	}
	std::array<ANSICHAR, 4096> Buffer;
	const ssize_t Count = ::read(STDIN_FILENO, Buffer.data(), Buffer.size());
	if (Count < 0 && (errno == EINTR || errno == EAGAIN))
	{
		return true;
	}
	for (ssize_t Index = 0; Index < Count; ++Index)
	{
		const ANSICHAR Byte = Buffer[static_cast<size_t>(Index)];
		if (Byte != '\n')
		{
			Line.Add(Byte);
		}
		if (Byte == '\n' || Line.Num() >= MaxLineBytes)
		{
			PostLine();
		}
	}
	if (Count > 0)
	{
		return true;
	}
	if (!Line.IsEmpty())
	{
		PostLine();
	}
	Post([](FShared& To) { To.Handlers.OnEnd ? To.Handlers.OnEnd() : void(); });
	return false;
}

void FTerminalInput::PostLine()
{
	FString Text = FString::FromUtf8(Line.GetData(), Line.Num());
	Text.RemoveFromEnd(TEXT("\r"));
	Line.Reset();
	Post(
		[Text, Era = Shared->Forgotten.load()](FShared& To)
		{
			if (To.Handlers.OnLine && To.Forgotten == Era)
			{
				To.Handlers.OnLine(Text);
			}
		});
}

void FTerminalInput::Post(TFunction<void(FShared&)> Call) const
{
	AsyncTask(ENamedThreads::GameThread, [To = Shared, Call = MoveTemp(Call)] { Call(*To); });
}

FString ReadStandardInput(int32 MaxBytes)
{
	TArray<ANSICHAR> Bytes;
	std::array<ANSICHAR, 4096> Buffer;
	while (Bytes.Num() < MaxBytes)
	{
		const ssize_t Count = ::read(STDIN_FILENO, Buffer.data(), Buffer.size());
		if (Count == 0 || (Count < 0 && errno != EINTR))
		{
			break;
		}
		Bytes.Append(Buffer.data(), static_cast<int32>(FMath::Max<ssize_t>(Count, 0)));
	}
	return FString::FromUtf8(Bytes.GetData(), FMath::Min(Bytes.Num(), MaxBytes));
}
