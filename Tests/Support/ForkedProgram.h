#pragma once

#include "CoreTypes.h"

#include <functional>
#include <optional>
#include <sys/types.h>

/** Keeps forked programs at their start until all of them may go on. */
class FForkGate
{
public:
	FForkGate();
	~FForkGate();
	FForkGate(const FForkGate&) = delete;
	FForkGate& operator=(const FForkGate&) = delete;

	/** In a forked program: waits for `Open`. */
	void Pass() const;
	/** Lets so many programs pass. */
	void Open(int32 Programs) const;

private:
	int Ends[2];
};

/**
 * A second program: a copy of this process, with which only its files are shared. It is made while this process has no
 * threads, so no host may have been started here; the body starts its own. It ends with this object, or with this
 * process, at the latest. Failed expectations in the body make it end with a failure.
 */
class FForkedProgram
{
public:
	/** Hands a number to the process that made this one. */
	using FTell = std::function<void(int32 Number)>;

	explicit FForkedProgram(const std::function<void(const FTell& Tell)>& Body);
	~FForkedProgram();
	FForkedProgram(const FForkedProgram&) = delete;
	FForkedProgram& operator=(const FForkedProgram&) = delete;

	/** The next number that it has told; nothing once it has ended, also by being killed, and all is read. */
	std::optional<int32> Hear();
	/** Ends it wherever it is. */
	void Kill();
	/** Waits for its end. @return whether it came there by itself and without a failure. */
	bool Finish();

private:
	int Pipe = -1;
	pid_t Child = -1;
};
