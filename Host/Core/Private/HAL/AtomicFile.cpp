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

/** A name that no user picks, in the same directory so that the rename stays within one file system. */
FString TemporaryBeside(const FString& Target)
{
	int32 Slash = INDEX_NONE;
	Target.FindLastChar(u'/', Slash);
	return Target.Left(Slash + 1) + TEXT(".cvx-") + FGuid::NewGuid().ToString(EGuidFormats::DigitsLower) + TEXT(".tmp");
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

bool FAtomicFile::Open(const TCHAR* Path, bool bEvenIfReadOnly)
{
	struct stat Old = {};
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
	Target = ResolveLink(Path);
	const FString Name = TemporaryBeside(Target);
	Descriptor = PosixFile::Open(*FNativePath(*Name), O_WRONLY | O_CREAT | O_EXCL);
	if (!Descriptor.IsValid())
	{
		return false;
	}
	Temporary = Name;
	return !bExists || TakeOwnerAndMode(Descriptor.Get(), Old);
}

bool FAtomicFile::Commit()
{
	if (Temporary.IsEmpty())
	{
		return true;
	}
	if (!PosixFile::Sync(Descriptor.Get()) || !PosixFile::Rename(*FNativePath(*Temporary), *FNativePath(*Target)))
	{
		return false;
	}
	Temporary.Empty();
	return true;
}
