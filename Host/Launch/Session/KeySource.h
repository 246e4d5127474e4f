#pragma once

#include "Containers/UnrealString.h"

struct FCVXProviderProfile;

/** Where a vendor's API key comes from, without the key. */
enum class EKeySource : uint8
{
	/** There is none, and it is needed. */
	Missing,
	/** A server on this machine; it asks for no key. */
	NotNeeded,
	Environment,
	/** The project's file of keys. */
	KeyFile,
	/** The profile holds it in place of a variable's name. */
	Profile,
};

/** Looks for the key as a request would. @param bLocal whether the vendor is a server on this machine. */
EKeySource FindKeySource(const FCVXProviderProfile& Profile, bool bLocal);

/** @param Variable the environment variable of the key. */
FString DescribeKeySource(EKeySource Source, const FString& Variable);
/** The same in a word, for programs. */
const TCHAR* GetKeySourceName(EKeySource Source);
