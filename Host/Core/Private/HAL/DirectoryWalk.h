#pragma once

#include "Containers/Array.h"
#include "Containers/UnrealString.h"
#include "Templates/Function.h"

/** One thing in a directory. A symbolic link counts as what it leads to, or as a file when it leads nowhere. */
struct FDirectoryEntry
{
	FString Name;
	bool bIsDirectory = false;
	bool bIsLink = false;
};

/** Visits a directory in the file system's order until the visitor returns false. @return false also on a failure. */
bool ListDirectory(const TCHAR* Directory, TFunctionRef<bool(const FDirectoryEntry&)> Visitor);

/** Remembers the directories that a walk has entered through links, so that it ends. */
class FLinkGuard
{
public:
	/**
	 * @return whether a linked directory may be entered: it exists, the link doesn't lie in it, and it wasn't entered
	 * through a link before.
	 */
	bool MayEnter(const FString& Directory);

private:
	struct FIdentity
	{
		uint64 Device;
		uint64 Node;
		bool operator==(const FIdentity&) const = default;
	};
	TArray<FIdentity> Entered;
};
