#pragma once

#include "CoreMinimal.h"

class FProperty;
class UObject;

/**
 * Values as configuration files hold them: written by people, by other versions and by programs that were cut short.
 * What is good of a value is read; what isn't understood outlives the next save. Game thread.
 */
namespace ConfigText
{
/** Told of each part that can't be read, in words for the log. */
using FReport = TFunctionRef<void(const FString&)>;

/**
 * Reads one value. In a struct, members that can't be read keep theirs, but for switches, which are off: what isn't
 * granted clearly isn't granted. @return false, with no change, if nothing of the text can be used.
 */
bool Read(const FProperty* Property, const FString& Text, void* Data, UObject* Owner, FReport Report);

/** The value's text, with what `OldText` says and this program doesn't understand. */
FString Write(const FProperty* Property, const void* Data, UObject* Owner, const FString& OldText);
} // namespace ConfigText
