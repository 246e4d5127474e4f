#include "HAL/PlatformTime.h"
#include "Misc/ScopeLock.h"
#include "Tools/CVXToolExecutor.h"

namespace
{
/** The call that a key was made of, by which two calls with one key are told apart. */
struct FCacheKeyRecord
{
	FString ToolName;
	FString Arguments;

	bool IsOf(const FString& Name, const FString& Text) const { return ToolName == Name && Arguments == Text; }
};

/** Shared by all executors. The lock covers their entries as well; no other is taken while it is held. */
struct FSharedCacheKeys
{
	FCriticalSection Lock;
	TMap<uint32, FCacheKeyRecord> Records;

	static FSharedCacheKeys& Get()
	{
		static FSharedCacheKeys Keys;
		return Keys;
	}
};

uint32 KeyOf(const FString& ToolName, const FString& Arguments)
{
	return HashCombine(GetTypeHash(ToolName), GetTypeHash(Arguments));
}
} // namespace

bool FCVXToolExecutor::TryCacheGet(
	const FString& ToolName, const FString& Arguments, FCVXToolExecutionResult& OutResult)
{
	FSharedCacheKeys& Keys = FSharedCacheKeys::Get();
	FScopeLock Guard(&Keys.Lock);
	const uint32 Key = KeyOf(ToolName, Arguments);
	FCacheEntry* Entry = Cache.Find(Key);
	if (!Entry)
	{
		return false;
	}
	const FCacheKeyRecord* Record = Keys.Records.Find(Key);
	if (Record && !Record->IsOf(ToolName, Arguments))
	{
		return false;
	}
	const double Now = FPlatformTime::Seconds();
	if (Now - Entry->Timestamp >= CacheLifetimeSeconds)
	{
		Keys.Records.Remove(Key);
		Cache.Remove(Key);
		return false;
	}
	OutResult = Entry->Result;
	Entry->Timestamp = Now;
	return true;
}

void FCVXToolExecutor::CachePut(
	const FString& ToolName, const FString& Arguments, const FCVXToolExecutionResult& Result)
{
	CacheEvict();
	FSharedCacheKeys& Keys = FSharedCacheKeys::Get();
	FScopeLock Guard(&Keys.Lock);
	const uint32 Key = KeyOf(ToolName, Arguments);
	Cache.FindOrAdd(Key) = FCacheEntry{Result, FPlatformTime::Seconds()};
	Keys.Records.FindOrAdd(Key) = FCacheKeyRecord{ToolName, Arguments};
}

void FCVXToolExecutor::CacheEvict()
{
	FSharedCacheKeys& Keys = FSharedCacheKeys::Get();
	FScopeLock Guard(&Keys.Lock);
	const double Now = FPlatformTime::Seconds();
	bool bRemoved = false;
	for (auto Each = Cache.CreateIterator(); Each; ++Each)
	{
		if (Now - Each.Value().Timestamp >= CacheLifetimeSeconds)
		{
			Keys.Records.Remove(Each.Key());
			Each.RemoveCurrent();
			bRemoved = true;
		}
	}
	if (bRemoved)
	{
		Cache.CompactStable();
	}
	while (Cache.Num() >= MaxCacheEntries)
	{
		const uint32* Oldest = nullptr;
		double OldestTime = 0.0;
		for (const auto& [Key, Entry] : Cache)
		{
			if (!Oldest || Entry.Timestamp < OldestTime)
			{
				Oldest = &Key;
				OldestTime = Entry.Timestamp;
			}
		}
		const uint32 Gone = *Oldest;
		Keys.Records.Remove(Gone);
		Cache.Remove(Gone);
	}
}

void FCVXToolExecutor::InvalidateCache()
{
	FSharedCacheKeys& Keys = FSharedCacheKeys::Get();
	FScopeLock Guard(&Keys.Lock);
	Cache.Empty();
	Keys.Records.Empty();
}

void FCVXToolExecutor::ForgetCacheKeys()
{
	FSharedCacheKeys& Keys = FSharedCacheKeys::Get();
	FScopeLock Guard(&Keys.Lock);
	for (const auto& [Key, Entry] : Cache)
	{
		Keys.Records.Remove(Key);
	}
}
