#pragma once

#include "Core/CVXProfiles.h"
#include "Templates/SharedPointer.h"

/** An agent profile as loops hold it: most of a profile is its prompt, which need not stand once for each of them. */
using FCVXSharedProfile = TSharedRef<const FCVXAgentProfile>;

namespace CVXSharedProfile
{
/** @return the same record for equal profiles, as long as somebody holds it. Game thread. */
FCVXSharedProfile Share(const FCVXAgentProfile& Profile);
} // namespace CVXSharedProfile
