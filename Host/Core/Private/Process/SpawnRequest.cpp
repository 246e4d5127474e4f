#include "SpawnRequest.h"

#include "Containers/StringConv.h"
#include "Environment.h"
#include "HAL/FaultInjection.h"
#include "ProgramPath.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

namespace
{
/** The first error of a row of calls that return one; 0 for none. */
class FFirstError
{
public:
	FFirstError& operator+=(int Error)
	{
		First = First ? First : Error;
		return *this;
	}
	int Get() const { return First; }

private:
	int First = 0;
};

/** What the child does to its descriptors and its directory before the program starts. */
class FSpawnActions : private FNoncopyable
{
public:
	explicit FSpawnActions(const FSpawnRequest& Request)
	{
		Error += posix_spawn_file_actions_init(&Actions);
		Connect(STDIN_FILENO, Request.Input, O_RDONLY);
		Connect(STDOUT_FILENO, Request.Output, O_WRONLY);
		Error += posix_spawn_file_actions_adddup2(
			&Actions, Request.Errors >= 0 ? Request.Errors : STDOUT_FILENO, STDERR_FILENO);
		Error += posix_spawn_file_actions_addclosefrom_np(&Actions, STDERR_FILENO + 1);
		if (!Request.WorkingDirectory.IsEmpty())
		{
			Error += posix_spawn_file_actions_addchdir_np(&Actions, TCHAR_TO_UTF8(*Request.WorkingDirectory));
		}
	}
	~FSpawnActions() { posix_spawn_file_actions_destroy(&Actions); }

	const posix_spawn_file_actions_t* Get() const { return &Actions; }
	int GetError() const { return Error.Get(); }

private:
	void Connect(int Target, int Source, int NullFlags)
	{
		Error += Source >= 0 ? posix_spawn_file_actions_adddup2(&Actions, Source, Target)
							 : posix_spawn_file_actions_addopen(&Actions, Target, "/dev/null", NullFlags, 0);
	}

	posix_spawn_file_actions_t Actions;
	FFirstError Error;
};

/** A session of its own, no signal blocked, none ignored. */
class FSpawnAttributes : private FNoncopyable
{
public:
	FSpawnAttributes()
	{
		sigset_t None;
		sigset_t All;
		sigemptyset(&None);
		sigfillset(&All);
		Error += posix_spawnattr_init(&Attributes);
		Error += posix_spawnattr_setsigmask(&Attributes, &None);
		Error += posix_spawnattr_setsigdefault(&Attributes, &All);
		Error +=
			posix_spawnattr_setflags(&Attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
	}
	~FSpawnAttributes() { posix_spawnattr_destroy(&Attributes); }

	const posix_spawnattr_t* Get() const { return &Attributes; }
	int GetError() const { return Error.Get(); }

private:
	posix_spawnattr_t Attributes;
	FFirstError Error;
};

/** Pointers to the texts, ended by a null, as the system takes them. */
std::vector<char*> Pointers(std::vector<std::string>& Texts)
{
	std::vector<char*> Result;
	Result.reserve(Texts.size() + 1);
	for (std::string& Text : Texts)
	{
		Result.push_back(Text.data());
	}
	Result.push_back(nullptr);
	return Result;
}

std::vector<std::string> ArgumentTexts(const FSpawnRequest& Request)
{
	std::vector<std::string> Texts{TCHAR_TO_UTF8(*Request.Program)};
	for (const FString& Argument : Request.Arguments)
	{
		Texts.emplace_back(TCHAR_TO_UTF8(*Argument));
	}
	return Texts;
}
} // namespace

pid_t FSpawnRequest::Spawn() const
{
	const FString Path = FindProgram(Program);
	if (Path.IsEmpty() || FailsByPlan(EHostFault::Process))
	{
		return 0;
	}
	std::vector<std::string> Texts = ArgumentTexts(*this);
	std::vector<std::string> Variables = FEnvironment::Get().GetBlock();
	const FSpawnActions Actions(*this);
	const FSpawnAttributes Attributes;
	pid_t Pid = 0;
	FFirstError Error;
	Error += Actions.GetError();
	Error += Attributes.GetError();
	if (Error.Get() == 0)
	{
		Error += ::posix_spawn(&Pid, TCHAR_TO_UTF8(*Path), Actions.Get(), Attributes.Get(), Pointers(Texts).data(),
			Pointers(Variables).data());
	}
	errno = Error.Get();
	return errno == 0 ? Pid : 0;
}
