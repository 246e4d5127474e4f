#include "AtomicFile.h"

#include "Misc/Guid.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace
{
/** Where a chain of symbolic links ends; the path itself when it is none or leads nowhere. */
FString ResolveLink(const TCHAR* Path)
{
	char Resolved[PATH_MAX];
	return FString(::realpath(*FNativePath(Path), Resolved) ? Resolved : *FNativePath(Path));
}

/** With a slash at its end. */
FString DirectoryOf(const FString& Target)
{
	int32 Slash = INDEX_NONE;
	return Target.FindLastChar(u'/', Slash) ? Target.Left(Slash + 1) : FString(TEXT("./"));
}

/** Whether an open file can be given a name, for which the system's view of its own processes must be mounted. */
bool CanNameDescriptors()
{
	static const bool bCan = ::access("/proc/self/fd", X_OK) == 0;
	return bCan;
}

/** A name that no user picks, in the same directory so that the rename stays within one file system. */
FString TemporaryBeside(const FString& Target)
{
	return DirectoryOf(Target) + TEXT(".cvx-") + FGuid::NewGuid().ToString(EGuidFormats::DigitsLower) + TEXT(".tmp");
}

bool TakeOwnerAndMode(int Descriptor, const struct stat& Old)
{
	if (Old.st_uid != ::geteuid() || Old.st_gid != ::getegid())
	{
		// Only the privileged may give files away; for the others the file becomes their own.
		(void)!::fchown(Descriptor, Old.st_uid, Old.st_gid);
	}
	return ::fchmod(Descriptor, Old.st_mode & 07777) == 0;
}
} // namespace

FAtomicFile::~FAtomicFile()
{
	if (!Temporary.IsEmpty())
	{
		// Straight to the system: the cleaning up after a planned failure isn't part of the plan.
		(void)::unlink(*FNativePath(*Temporary));
	}
}

bool FAtomicFile::Open(const TCHAR* Path, bool bEvenIfReadOnly, bool bInMayReplace)
{
	bMayReplace = bInMayReplace;
	struct stat Old = {};
	if (!bMayReplace && PosixFile::LinkStat(*FNativePath(Path), Old))
	{
		errno = EEXIST;
		return false;
	}
	const bool bExists = PosixFile::Stat(*FNativePath(Path), Old);
	if (bExists && S_ISDIR(Old.st_mode))
	{
		errno = EISDIR;
		return false;
	}
	if (bExists && !S_ISREG(Old.st_mode))
	{
		Descriptor = PosixFile::Open(*FNativePath(Path), O_WRONLY | O_NONBLOCK);
		return Descriptor.IsValid();
	}
	if (bExists && !bEvenIfReadOnly && (Old.st_mode & 0222) == 0)
	{
		errno = EACCES;
		return false;
	}
	if (*Path == 0)
	{
		errno = ENOENT;
		return false;
	}
	Target = ResolveLink(Path);
	return OpenNew() && (!bExists || TakeOwnerAndMode(Descriptor.Get(), Old));
}

/** Opens a file without a name, or with a temporary one. */
bool FAtomicFile::OpenNew()
{
	if (CanNameDescriptors())
	{
		Descriptor = PosixFile::Open(*FNativePath(*DirectoryOf(Target)), O_WRONLY | O_TMPFILE);
		if (Descriptor.IsValid() || (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL))
		{
			return Descriptor.IsValid();
		}
	}
	const FString Name = TemporaryBeside(Target);
	Descriptor = PosixFile::Open(*FNativePath(*Name), O_WRONLY | O_CREAT | O_EXCL);
	Temporary = Descriptor.IsValid() ? Name : FString();
	return Descriptor.IsValid();
}

/** Names a file that has no name yet: by its own name if that is free, else by a temporary one. */
bool FAtomicFile::GiveName()
{
	if (PosixFile::LinkDescriptor(Descriptor.Get(), *FNativePath(*Target)))
	{
		Target.Empty();
		return true;
	}
	if (!bMayReplace || errno != EEXIST)
	{
		return false;
	}
	const FString Name = TemporaryBeside(Target);
	if (!PosixFile::LinkDescriptor(Descriptor.Get(), *FNativePath(*Name)))
	{
		return false;
	}
	Temporary = Name;
	return true;
}

bool FAtomicFile::Commit()
{
	if (Target.IsEmpty())
	{
		return true;
	}
	if (!PosixFile::Sync(Descriptor.Get()) || (Temporary.IsEmpty() && !GiveName()))
	{
		return false;
	}
	const auto Rename = bMayReplace ? &PosixFile::Rename : &PosixFile::RenameExclusive;
	if (!Temporary.IsEmpty() && !Rename(*FNativePath(*Temporary), *FNativePath(*Target)))
	{
		return false;
	}
	Temporary.Empty();
	return true;
}
