#pragma once

#include "CoreMinimal.h"

/** The file `Saved/CVX/apikeys.cfg`: a line NAME=key for each vendor. Keys stand here and in the environment alone. */
class FCVXApiKeysFile
{
public:
	static FString GetPath();

	/** The key of the first line that names the variable, read from disk; empty without file or line. Any thread. */
	static FString FindKey(const FString& VariableName);

	/** Writes the commented template unless the file is there. A failure leaves no file and isn't reported. */
	static void EnsureTemplate();
};
