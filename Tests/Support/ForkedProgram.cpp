#include "Support/ForkedProgram.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace
{
/** A program that tells nothing for so long hangs. */
constexpr int SilenceLimitMs = 60000;

void MakePipe(int (&Ends)[2])
{
	if (::pipe(Ends) != 0)
	{
		throw std::system_error(errno, std::generic_category(), "pipe");
	}
}

[[noreturn]] void RunBody(const std::function<void(const FForkedProgram::FTell&)>& Body, int Pipe)
{
	(void)::prctl(PR_SET_PDEATHSIG, SIGKILL);
	Body([Pipe](int32 Number)
		{ EXPECT_EQ(::write(Pipe, &Number, sizeof(Number)), static_cast<ssize_t>(sizeof(Number))); });
	(void)std::fflush(stdout);
	::_exit(testing::Test::HasFailure() ? 1 : 0);
}
} // namespace

FForkGate::FForkGate()
{
	MakePipe(Ends);
}

FForkGate::~FForkGate()
{
	(void)::close(Ends[0]);
	(void)::close(Ends[1]);
}

void FForkGate::Pass() const
{
	char Byte = 0;
	EXPECT_EQ(::read(Ends[0], &Byte, 1), 1);
}

void FForkGate::Open(int32 Programs) const
{
	for (int32 Index = 0; Index < Programs; ++Index)
	{
		EXPECT_EQ(::write(Ends[1], "", 1), 1);
	}
}

FForkedProgram::FForkedProgram(const std::function<void(const FTell&)>& Body)
{
	int Ends[2];
	MakePipe(Ends);
	(void)std::fflush(stdout);
	Child = ::fork();
	if (Child < 0)
	{
		throw std::system_error(errno, std::generic_category(), "fork");
	}
	if (Child == 0)
	{
		(void)::close(Ends[0]);
		RunBody(Body, Ends[1]);
	}
	(void)::close(Ends[1]);
	Pipe = Ends[0];
}

FForkedProgram::~FForkedProgram()
{
	Kill();
	(void)::close(Pipe);
}

std::optional<int32> FForkedProgram::Hear()
{
	pollfd Poll = {Pipe, POLLIN, 0};
	int32 Number = 0;
	if (::poll(&Poll, 1, SilenceLimitMs) != 1)
	{
		ADD_FAILURE() << "the program hangs";
		return {};
	}
	return ::read(Pipe, &Number, sizeof(Number)) == sizeof(Number) ? std::optional<int32>(Number) : std::nullopt;
}

void FForkedProgram::Kill()
{
	if (Child > 0)
	{
		(void)::kill(Child, SIGKILL);
		(void)::waitpid(Child, nullptr, 0);
		Child = -1;
	}
}

bool FForkedProgram::Finish()
{
	while (Hear())
	{
	}
	if (testing::Test::HasFatalFailure() || Child <= 0)
	{
		return false;
	}
	int Status = -1;
	(void)::waitpid(Child, &Status, 0);
	Child = -1;
	return WIFEXITED(Status) && WEXITSTATUS(Status) == 0;
}
