#include "Launch/Support/ProgramRun.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
/** Nothing that a test does takes so long; it only bounds a failure. */
constexpr int LimitMs = 30000;

std::vector<char*> ToPointers(const std::vector<std::string>& Texts)
{
	std::vector<char*> Pointers;
	for (const std::string& Text : Texts)
	{
		Pointers.push_back(const_cast<char*>(Text.c_str()));
	}
	Pointers.push_back(nullptr);
	return Pointers;
}

/** Becomes the program. Ctrl-C reaches it even where the tests run in the background. */
[[noreturn]] void Become(const std::vector<char*>& Arguments, const std::vector<char*>& Environment)
{
	::signal(SIGINT, SIG_DFL);
	::execve(CORVEXA_PROGRAM, Arguments.data(), Environment.data());
	::_exit(127);
}

int WaitFor(pid_t Child)
{
	int Status = 0;
	if (::waitpid(Child, &Status, 0) != Child)
	{
		throw std::runtime_error("the program is lost");
	}
	return WIFEXITED(Status) ? WEXITSTATUS(Status) : -WTERMSIG(Status);
}

/** Adds what there is. @return false at the end, or when nothing came in time. */
bool ReadSome(int Fd, std::string& Out)
{
	pollfd Polled = {Fd, POLLIN, 0};
	std::array<char, 4096> Buffer;
	if (::poll(&Polled, 1, LimitMs) <= 0)
	{
		return false;
	}
	const ssize_t Count = ::read(Fd, Buffer.data(), Buffer.size());
	Out.append(Buffer.data(), Count > 0 ? static_cast<std::size_t>(Count) : 0);
	return Count > 0;
}

struct FPipe
{
	FPipe()
	{
		if (::pipe2(Ends.data(), O_CLOEXEC) != 0)
		{
			throw std::runtime_error("no pipe");
		}
	}
	std::array<int, 2> Ends;
};
} // namespace

FProgramRun::FProgramRun(std::vector<std::string> InArguments)
	: Arguments(std::move(InArguments))
	, Environment({"PATH=/usr/bin:/bin", "TERM=xterm", "LANG=C.UTF-8", "CORVEXA_DEMO_PAUSE_MS=0"})
{
	Arguments.insert(Arguments.begin(), "corvexa");
}

FProgramRun& FProgramRun::With(std::string Variable)
{
	const std::string Name = Variable.substr(0, Variable.find('=') + 1);
	std::erase_if(Environment, [&](const std::string& Each) { return Each.starts_with(Name); });
	Environment.push_back(std::move(Variable));
	return *this;
}

FProgramResult FProgramRun::Run(const std::string& Input) const
{
	const std::vector<char*> Argv = ToPointers(Arguments);
	const std::vector<char*> Envp = ToPointers(Environment);
	FPipe In;
	FPipe Out;
	FPipe Error;
	const pid_t Child = ::fork();
	if (Child == 0)
	{
		::dup2(In.Ends[0], STDIN_FILENO);
		::dup2(Out.Ends[1], STDOUT_FILENO);
		::dup2(Error.Ends[1], STDERR_FILENO);
		Become(Argv, Envp);
	}
	::close(In.Ends[0]);
	::close(Out.Ends[1]);
	::close(Error.Ends[1]);
	FProgramResult Result;
	// Inputs are shorter than a pipe is deep.
	if (::write(In.Ends[1], Input.data(), Input.size()) != static_cast<ssize_t>(Input.size()))
	{
		Result.Errors = "the input wasn't taken\n";
	}
	::close(In.Ends[1]);
	while (ReadSome(Out.Ends[0], Result.Output))
	{
	}
	while (ReadSome(Error.Ends[0], Result.Errors))
	{
	}
	::close(Out.Ends[0]);
	::close(Error.Ends[0]);
	Result.Status = WaitFor(Child);
	return Result;
}

FProgramResult FProgramRun::RunAtTerminal(const std::vector<FStep>& Steps) const
{
	const std::vector<char*> Argv = ToPointers(Arguments);
	const std::vector<char*> Envp = ToPointers(Environment);
	int Terminal = -1;
	winsize Size = {40, 120, 0, 0};
	const pid_t Child = ::forkpty(&Terminal, nullptr, nullptr, &Size);
	if (Child == 0)
	{
		Become(Argv, Envp);
	}
	FProgramResult Result;
	std::size_t From = 0;
	for (const FStep& Step : Steps)
	{
		std::size_t Found = std::string::npos;
		while (
			(Found = Result.Output.find(Step.WaitFor, From)) == std::string::npos && ReadSome(Terminal, Result.Output))
		{
		}
		if (Found == std::string::npos)
		{
			Result.Errors += "never seen: " + Step.WaitFor + "\n";
			::kill(Child, SIGKILL);
			break;
		}
		From = Found + Step.WaitFor.size();
		if (Step.bKill)
		{
			::kill(Child, SIGKILL);
			break;
		}
		if (::write(Terminal, Step.Type.data(), Step.Type.size()) != static_cast<ssize_t>(Step.Type.size()))
		{
			Result.Errors += "not typed: " + Step.Type + "\n";
		}
	}
	while (ReadSome(Terminal, Result.Output))
	{
	}
	::close(Terminal);
	Result.Status = WaitFor(Child);
	return Result;
}
