#pragma once

#include "Logging/LogVerbosity.h"
#include "Misc/FormatString.h"
#include "UObject/NameTypes.h"

#include <atomic>

/** A source of log messages, with the least grave verbosity that it lets through. Lives as long as the program. */
class FLogCategoryBase
{
public:
	/** @param InName a literal. */
	FLogCategoryBase(const TCHAR* InName, ELogVerbosity::Type Default, ELogVerbosity::Type InCompileTime);
	~FLogCategoryBase();
	FLogCategoryBase(const FLogCategoryBase&) = delete;
	FLogCategoryBase& operator=(const FLogCategoryBase&) = delete;

	bool IsSuppressed(ELogVerbosity::Type Level) const { return Level > Verbosity.load(std::memory_order_relaxed); }
	FName GetCategoryName() const { return FName(Name); }
	ELogVerbosity::Type GetVerbosity() const { return Verbosity; }
	/** Any thread. What was compiled out stays out. */
	void SetVerbosity(ELogVerbosity::Type NewVerbosity);

	/** Sets the verbosity of every category of this name, in any case. @return false when there is none. */
	static bool SetVerbosityByName(const TCHAR* CategoryName, ELogVerbosity::Type NewVerbosity);

private:
	const TCHAR* Name;
	std::atomic<ELogVerbosity::Type> Verbosity;
	ELogVerbosity::Type CompileTime;
	/** The chain of all categories. */
	FLogCategoryBase* Next = nullptr;
};

template <ELogVerbosity::Type Default, ELogVerbosity::Type InCompileTime>
class FLogCategory : public FLogCategoryBase
{
public:
	static constexpr ELogVerbosity::Type CompileTimeVerbosity = InCompileTime;

	explicit FLogCategory(const TCHAR* InName)
		: FLogCategoryBase(InName, Default, InCompileTime)
	{
	}
};
