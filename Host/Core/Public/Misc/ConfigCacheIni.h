#pragma once

#include "Containers/Map.h"
#include "CoreGlobals.h"
#include "Misc/ConfigFile.h"
#include "Templates/Function.h"
#include "Templates/SharedPointer.h"

/**
 * The configuration files in use. Each is read at its first use. A change is seen by readers at once and reaches the
 * disk with `Flush`, which takes the file as it is then, carries out this process's changes on it and replaces it as
 * one step: what another process wrote to other keys stays. Game thread.
 */
class FConfigCacheIni
{
public:
	FConfigCacheIni();
	~FConfigCacheIni();

	/** The file's content with all changes; a file that isn't there reads as empty. */
	const FConfigFile& Find(const FString& Filename);

	/** @return false, and an unchanged result, without the key or, for numbers, without a number in it. */
	bool GetString(const TCHAR* Section, const TCHAR* Key, FString& OutValue, const FString& Filename);
	bool GetInt(const TCHAR* Section, const TCHAR* Key, int32& OutValue, const FString& Filename);
	bool GetFloat(const TCHAR* Section, const TCHAR* Key, float& OutValue, const FString& Filename);
	bool GetDouble(const TCHAR* Section, const TCHAR* Key, double& OutValue, const FString& Filename);
	bool GetBool(const TCHAR* Section, const TCHAR* Key, bool& OutValue, const FString& Filename);
	/** @return the number of values. */
	int32 GetArray(const TCHAR* Section, const TCHAR* Key, TArray<FString>& OutValues, const FString& Filename);
	bool DoesSectionExist(const TCHAR* Section, const FString& Filename);

	void SetString(const TCHAR* Section, const TCHAR* Key, const TCHAR* Value, const FString& Filename);
	void SetInt(const TCHAR* Section, const TCHAR* Key, int32 Value, const FString& Filename);
	void SetBool(const TCHAR* Section, const TCHAR* Key, bool bValue, const FString& Filename);
	void SetArray(const TCHAR* Section, const TCHAR* Key, const TArray<FString>& Values, const FString& Filename);
	/** As `SetArray`, of the difference alone: what others have changed in the array since it was OldValues stays. */
	void ChangeArray(const TCHAR* Section, const TCHAR* Key, const TArray<FString>& OldValues,
		const TArray<FString>& NewValues, const FString& Filename);
	/** Turns the key's lines into comments, which keep their text. */
	void CommentOut(const TCHAR* Section, const TCHAR* Key, const FString& Filename);
	bool RemoveKey(const TCHAR* Section, const TCHAR* Key, const FString& Filename);
	bool EmptySection(const TCHAR* Section, const FString& Filename);

	/**
	 * Writes the changes. Waits up to `LockLimitSeconds` for another process that writes in the same directory.
	 * @param bRemoveFromCache reads the file anew at its next use. @param Filename empty for all files.
	 * @return false when a file couldn't be written, which is logged; its changes stay for the next call.
	 */
	bool Flush(bool bRemoveFromCache, const FString& Filename = FString());
	/** Forgets the file and its unwritten changes. */
	void UnloadFile(const FString& Filename);

	static constexpr double LockLimitSeconds = 5.0;

private:
	struct FCachedFile;

	FCachedFile& Load(const FString& Filename);
	void Change(const FString& Filename, TFunction<void(FConfigFile&)> Change);
	static bool Write(FCachedFile& File, const FString& Filename);

	TMap<FString, TSharedPtr<FCachedFile>> Files;
};
