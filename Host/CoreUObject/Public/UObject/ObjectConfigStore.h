#pragma once

#include "CoreMinimal.h"

/**
 * Where the config properties of objects are read from and written to: keys with values, in sections of files. The
 * config system gives one when it starts and takes it back when it ends; without one, objects keep the values of their
 * code. Game thread.
 */
class IObjectConfigStore
{
public:
	virtual ~IObjectConfigStore() = default;

	/** The file that a config name such as `Editor` stands for: the merged settings of all layers. */
	virtual FString GetFile(const FString& ConfigName) const = 0;
	/** The project's own layer, `Config/DefaultEditor.ini`, as an absolute path. */
	virtual FString GetDefaultFile(const FString& ConfigName) const = 0;
	/** The values of a key in order. @return false if the key isn't there. */
	virtual bool GetValues(
		const FString& File, const FString& Section, const FString& Key, TArray<FString>& OutValues) const = 0;
	/** Replaces the values of a key; none removes it. */
	virtual void SetValues(
		const FString& File, const FString& Section, const FString& Key, const TArray<FString>& Values) = 0;
	/** Writes the file. @return false if that failed. */
	virtual bool Flush(const FString& File) = 0;

	static IObjectConfigStore* Get();
	/** @param Store outlives its use; null for none. */
	static void Set(IObjectConfigStore* Store);
};
