#pragma once

#include "CoreMinimal.h"

/** The first message of a sub-agent: what it must do, and what exists already so that it isn't made again. */
namespace CVXSubTaskMessage
{
/** The files of the last this many seconds are told. */
constexpr double RecentSeconds = 300.0;

/** @param SiblingResults what other sub-agents of the same parent have reported. Game thread; walks the project. */
FString Build(const FString& Task, const FString& Context, const TArray<FString>& SiblingResults);
} // namespace CVXSubTaskMessage
