#pragma once

#include "PosixFile.h"

/**
 * Makes or replaces a file as one step: what is written goes to a new file, which takes its place in `Commit`. Until
 * then, and after any failure, the old file stands as it was, and the new one vanishes with this object; where the file
 * system allows, the new one has no name until then, so that it vanishes with the process too. A symbolic link stays
 * and its target is replaced; the mode of the old file is kept, and its owner where that is allowed. What isn't a
 * regular file, such as a device, is written to directly, and never waited for.
 */
class FAtomicFile : private FNoncopyable
{
public:
	~FAtomicFile();

	/**
	 * @param bEvenIfReadOnly replaces a file that nobody may write. @param bInMayReplace false wants the name to be
	 * free, here and in `Commit`: of several that want one name, one gets it. @return false with `errno` set.
	 */
	bool Open(const TCHAR* Path, bool bEvenIfReadOnly, bool bInMayReplace = true);
	bool Write(const void* Source, int64 Count) { return PosixFile::Write(Descriptor.Get(), Source, Count); }
	/** Puts the new file in place, on disk. @return false with `errno` set. */
	bool Commit();
	int GetDescriptor() const { return Descriptor.Get(); }

private:
	bool OpenNew();
	bool GiveName();

	FString Target;
	/** Empty while there is no new file to remove. */
	FString Temporary;
	FDescriptor Descriptor;
	bool bMayReplace = true;
};
