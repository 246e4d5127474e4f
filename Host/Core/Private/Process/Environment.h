#pragma once

#include "Containers/UnrealString.h"

#include <map>
#include <mutex>
#include <string>
#include <vector>

/**
 * The environment that children get: the process's own at the first use, and what was changed since. The C library's
 * copy isn't touched, because its readers on other threads can't be kept from reading while it changes. Values stay the
 * bytes they were. Any thread.
 */
class FEnvironment : private FNoncopyable
{
public:
	static FEnvironment& Get();

	/** Empty when it isn't set. */
	FString GetVariable(const TCHAR* Name) const;
	/** An empty value removes the variable. A name that is empty or has a `=` is refused. */
	void SetVariable(const TCHAR* Name, const TCHAR* Value);

	/** Every variable as `NAME=value`. */
	std::vector<std::string> GetBlock() const;

private:
	FEnvironment();

	mutable std::mutex Mutex;
	std::map<std::string, std::string> Variables;
};
