#include "Delegates/DelegateBase.h"

#include <atomic>

FDelegateHandle::FDelegateHandle(EGenerateNewHandleType)
{
	static std::atomic<uint64> LastId{0};
	Id = LastId.fetch_add(1, std::memory_order_relaxed) + 1;
}
