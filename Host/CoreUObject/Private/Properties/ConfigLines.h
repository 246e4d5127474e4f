#pragma once

#include "CoreMinimal.h"

class FArrayProperty;
class UObject;

/** Arrays as configuration files hold them: a line an element. Game thread. */
namespace ConfigLines
{
/** Told of what can't be read: the line's place among the lines, and why. */
using FReport = TFunctionRef<void(int32 Line, const FString& Problem)>;

/** Reads the elements that can be read; the array stays as it is when there are lines and none of them can. */
void Read(const FArrayProperty* Property, const TArray<FString>& Lines, void* Data, UObject* Owner, FReport Report);

/**
 * The lines of an array. Old lines that can't be read stay among them in their order, and the element that an old line
 * was read to keeps what that line says beyond this program's understanding.
 */
TArray<FString> Write(
	const FArrayProperty* Property, const void* Data, UObject* Owner, const TArray<FString>& OldLines);
} // namespace ConfigLines
