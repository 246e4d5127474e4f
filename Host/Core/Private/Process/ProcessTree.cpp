#include "ProcessTree.h"

#include "Containers/Array.h"
#include "Containers/Set.h"
#include "HAL/PosixFile.h"

#include <algorithm>
#include <cctype>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>

namespace
{
/** Rounds of looking for new processes; each finds what was started before its parent was stopped. */
constexpr int32 MaxRounds = 16;

struct FProcessEntry
{
	pid_t Pid = 0;
	pid_t Parent = 0;
	pid_t Session = 0;
};

/** Reads a process's line. @return false when it is gone. */
bool ReadEntry(const char* Name, FProcessEntry& OutEntry)
{
	char Path[64];
	(void)std::snprintf(Path, sizeof(Path), "/proc/%.20s/stat", Name);
	const FDescriptor Descriptor(::open(Path, O_RDONLY | O_CLOEXEC));
	char Line[512] = {};
	const ssize_t Got = Descriptor.IsValid() ? ::read(Descriptor.Get(), Line, sizeof(Line) - 1) : -1;
	// The program's name stands in parentheses and may hold any character, so the numbers begin behind the last one.
	const char* Rest = Got > 0 ? std::strrchr(Line, ')') : nullptr;
	OutEntry.Pid = std::atoi(Name);
	return Rest && std::sscanf(Rest, ") %*c %d %*d %d", &OutEntry.Parent, &OutEntry.Session) == 2;
}

TArray<FProcessEntry> ListProcesses()
{
	TArray<FProcessEntry> Entries;
	const std::unique_ptr<DIR, int (*)(DIR*)> Directory(::opendir("/proc"), &::closedir);
	while (const dirent* Raw = Directory ? ::readdir(Directory.get()) : nullptr)
	{
		FProcessEntry Entry;
		if (std::isdigit((unsigned char)Raw->d_name[0]) && ReadEntry(Raw->d_name, Entry))
		{
			Entries.Add(Entry);
		}
	}
	return Entries;
}

/** Adds to the tree whatever belongs to it and isn't in it yet. @return what was added. */
TArray<pid_t> Grow(TSet<pid_t>& Tree, pid_t Session)
{
	TArray<pid_t> Added;
	const TArray<FProcessEntry> Entries = ListProcesses();
	for (bool bGrown = true; bGrown;)
	{
		bGrown = false;
		for (const FProcessEntry& Entry : Entries)
		{
			const bool bBelongs = Entry.Session == Session || Tree.Contains(Entry.Parent);
			if (bBelongs && !Tree.Contains(Entry.Pid))
			{
				Tree.Add(Entry.Pid);
				Added.Add(Entry.Pid);
				bGrown = true;
			}
		}
	}
	return Added;
}

void SignalAll(const TArray<pid_t>& Processes, int Signal)
{
	for (const pid_t Pid : Processes)
	{
		// One that has ended meanwhile is no loss.
		(void)::kill(Pid, Signal);
	}
}
} // namespace

void KillProcessTree(pid_t Leader)
{
	TSet<pid_t> Tree;
	Tree.Add(Leader);
	(void)::kill(Leader, SIGSTOP);
	for (int32 Round = 0; Round < MaxRounds; ++Round)
	{
		const TArray<pid_t> Added = Grow(Tree, Leader);
		if (Added.IsEmpty())
		{
			break;
		}
		SignalAll(Added, SIGSTOP);
	}
	SignalAll(Tree.Array(), SIGKILL);
	(void)::kill(-Leader, SIGKILL);
}
