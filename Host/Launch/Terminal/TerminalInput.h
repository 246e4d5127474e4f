#pragma once

#include "Containers/UnrealString.h"
#include "HAL/CriticalSection.h"
#include "HAL/Runnable.h"
#include "Templates/Function.h"
#include "Templates/SharedPointer.h"
#include "Templates/UniquePtr.h"

#include <atomic>

class FRunnableThread;

/** What comes from the person. All on the game thread. */
struct FTerminalInputHandlers
{
	/** Without its line end. */
	TFunction<void(const FString&)> OnLine;
	/** No further line will come. */
	TFunction<void()> OnEnd;
	/** Ctrl-C. */
	TFunction<void()> OnInterrupt;
	/** The system asks the program to end. */
	TFunction<void()> OnTerminate;
};

/**
 * Reads lines of standard input and catches signals on a thread of its own, as long as it lives. One at a time. An
 * interrupt that the game thread is too busy to take ends the process when it is the third in a row.
 */
class FTerminalInput final : private FRunnable
{
public:
	/** A longer line is handed over in pieces of this many bytes. */
	static constexpr int32 MaxLineBytes = 1 << 20;

	/** @param bReadLines whether standard input is read at all. */
	FTerminalInput(FTerminalInputHandlers InHandlers, bool bReadLines);
	~FTerminalInput() override;
	/**
	 * Forgets what a person has typed so far, handed over or not. Called ahead of a question, so that nothing is taken
	 * for its answer that was typed for another reason. Input from a file or a pipe stays. Game thread.
	 * @return whether the input is typed at all.
	 */
	bool ForgetTyped();
	FTerminalInput(const FTerminalInput&) = delete;
	FTerminalInput& operator=(const FTerminalInput&) = delete;

private:
	struct FShared
	{
		/** Touched on the game thread alone; emptied when the owner goes. */
		FTerminalInputHandlers Handlers;
		std::atomic<int32> UntakenInterrupts{0};
		/** How often typed input has been forgotten; lines read before the last time don't count. */
		std::atomic<int32> Forgotten{0};
	};
	class FSignalPipe;

	uint32 Run() override;
	void Stop() override;
	/** @return false when the thread shall end. */
	bool TakeSignal();
	/** @return false at the end of the input. */
	bool TakeBytes();
	void PostLine();
	void Post(TFunction<void(FShared&)> Call) const;

	TSharedRef<FShared> Shared;
	const bool bReadLines;
	const bool bTyped;
	/** Held while input is read, and while it is forgotten. */
	FCriticalSection Reading;
	TArray<ANSICHAR> Line;
	TUniquePtr<FSignalPipe> Signals;
	TUniquePtr<FRunnableThread> Thread;
};

/** All of standard input, up to MaxBytes. Waits for its end. */
FString ReadStandardInput(int32 MaxBytes);
