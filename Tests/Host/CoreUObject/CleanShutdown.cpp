#include "UObject/UObjectGlobals.h"

#include <gtest/gtest.h>

namespace
{
/** Ends the type system behind the last test, so that a leak checker sees what it would leave behind. */
class FCleanShutdown : public testing::Environment
{
public:
	void TearDown() override { ShutdownUObjects(); }
};

[[maybe_unused]] testing::Environment* const Registered = testing::AddGlobalTestEnvironment(new FCleanShutdown);
} // namespace
