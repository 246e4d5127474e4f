#pragma once

#include "Agent/Tasks/CVXTask.h"

#include <random>

/** Conversations that are numbered through, so that a stored one can be told from an older or a broken one. */
namespace StoredTask
{
TSharedRef<FCVXTask> Make(const FString& Id);

/** Adds a message with the next number, the speaker's name and some text that doesn't compress well. @return the
 * number, from 1. */
int32 Speak(FCVXTask& Task, std::mt19937& Random, const TCHAR* Speaker = TEXT("me"));

int32 Count(const FCVXTask& Task);
/** The last message up to its text: "12 me". */
FString LastWords(const FCVXTask& Task);
/** Expects the numbers of the messages to have no gap. */
void ExpectWhole(const FCVXTask& Task);
} // namespace StoredTask
