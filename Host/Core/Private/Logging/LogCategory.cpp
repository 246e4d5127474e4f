#include "Logging/LogCategory.h"

#include "Misc/CString.h"

#include <mutex>

namespace
{
/** Categories come and go while static objects are made and destroyed, so the chain's lock must outlive them all. */
std::mutex& ChainLock()
{
	static std::mutex* Lock = new std::mutex;
	return *Lock;
}

constinit FLogCategoryBase* FirstCategory = nullptr;
} // namespace

FLogCategoryBase::FLogCategoryBase(const TCHAR* InName, ELogVerbosity::Type Default, ELogVerbosity::Type InCompileTime)
	: Name(InName)
	, Verbosity(Default)
	, CompileTime(InCompileTime)
{
	const std::lock_guard Guard(ChainLock());
	Next = FirstCategory;
	FirstCategory = this;
}

FLogCategoryBase::~FLogCategoryBase()
{
	const std::lock_guard Guard(ChainLock());
	FLogCategoryBase** Link = &FirstCategory;
	while (*Link != this)
	{
		Link = &(*Link)->Next;
	}
	*Link = Next;
}

void FLogCategoryBase::SetVerbosity(ELogVerbosity::Type NewVerbosity)
{
	Verbosity = NewVerbosity < CompileTime ? NewVerbosity : CompileTime;
}

bool FLogCategoryBase::SetVerbosityByName(const TCHAR* CategoryName, ELogVerbosity::Type NewVerbosity)
{
	bool bFound = false;
	const std::lock_guard Guard(ChainLock());
	for (FLogCategoryBase* Category = FirstCategory; Category; Category = Category->Next)
	{
		if (FCString::Stricmp(Category->Name, CategoryName) == 0)
		{
			Category->SetVerbosity(NewVerbosity);
			bFound = true;
		}
	}
	return bFound;
}
