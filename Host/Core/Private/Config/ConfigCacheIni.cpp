#include "Misc/ConfigCacheIni.h"

#include "ConfigMerge.h"
#include "DirectoryLock.h"
#include "HAL/FileManager.h"
#include "Logging/LogMacros.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"

DEFINE_LOG_CATEGORY_STATIC(LogConfigCache, Log, All);

/** A file's content, and the changes that aren't on disk yet, in order. */
struct FConfigCacheIni::FCachedFile
{
	FConfigFile Content;
	TArray<TFunction<void(FConfigFile&)>> Changes;
};

namespace
{
/** @return false when the file is there and can't be read: writing it would lose what it holds. */
bool ReadFile(const FString& Filename, FString& Text)
{
	Text.Reset();
	const bool bThere = IFileManager::Get().FileExists(*Filename);
	return !bThere || FFileHelper::LoadFileToString(Text, *Filename);
}

FString KeyOf(const FString& Filename)
{
	return FPaths::ConvertRelativePathToFull(Filename);
}
} // namespace

FConfigCacheIni::FConfigCacheIni() = default;
FConfigCacheIni::~FConfigCacheIni() = default;

FConfigCacheIni::FCachedFile& FConfigCacheIni::Load(const FString& Filename)
{
	const FString Key = KeyOf(Filename);
	TSharedPtr<FCachedFile>& File = Files.FindOrAdd(Key);
	if (!File)
	{
		File = MakeShared<FCachedFile>();
		FString Text;
		if (!ReadFile(Key, Text))
		{
			UE_LOG(
				LogConfigCache, Warning, TEXT("%s can't be read; defaults are used and the file isn't written"), *Key);
		}
		File->Content.Parse(Text, Key);
	}
	return *File;
}

const FConfigFile& FConfigCacheIni::Find(const FString& Filename)
{
	return Load(Filename).Content;
}

bool FConfigCacheIni::GetString(const TCHAR* Section, const TCHAR* Key, FString& OutValue, const FString& Filename)
{
	const FString* Value = Find(Filename).Find(Section, Key);
	if (Value)
	{
		OutValue = *Value;
	}
	return Value != nullptr;
}

bool FConfigCacheIni::GetInt(const TCHAR* Section, const TCHAR* Key, int32& OutValue, const FString& Filename)
{
	FString Text;
	const bool bNumber = GetString(Section, Key, Text, Filename) && Text.IsNumeric();
	OutValue = bNumber ? FCString::Atoi(*Text) : OutValue;
	return bNumber;
}

bool FConfigCacheIni::GetDouble(const TCHAR* Section, const TCHAR* Key, double& OutValue, const FString& Filename)
{
	FString Text;
	const bool bNumber = GetString(Section, Key, Text, Filename) && Text.IsNumeric();
	OutValue = bNumber ? FCString::Atod(*Text) : OutValue;
	return bNumber;
}

bool FConfigCacheIni::GetFloat(const TCHAR* Section, const TCHAR* Key, float& OutValue, const FString& Filename)
{
	double Value = OutValue;
	const bool bNumber = GetDouble(Section, Key, Value, Filename);
	OutValue = (float)Value;
	return bNumber;
}

bool FConfigCacheIni::GetBool(const TCHAR* Section, const TCHAR* Key, bool& OutValue, const FString& Filename)
{
	FString Text;
	const bool bThere = GetString(Section, Key, Text, Filename);
	OutValue = bThere ? Text.ToBool() : OutValue;
	return bThere;
}

int32 FConfigCacheIni::GetArray(
	const TCHAR* Section, const TCHAR* Key, TArray<FString>& OutValues, const FString& Filename)
{
	OutValues = Find(Filename).FindArray(Section, Key);
	return OutValues.Num();
}

bool FConfigCacheIni::DoesSectionExist(const TCHAR* Section, const FString& Filename)
{
	return Find(Filename).HasSection(Section);
}

void FConfigCacheIni::Change(const FString& Filename, TFunction<void(FConfigFile&)> Change)
{
	FCachedFile& File = Load(Filename);
	Change(File.Content);
	File.Changes.Add(MoveTemp(Change));
}

void FConfigCacheIni::SetString(const TCHAR* Section, const TCHAR* Key, const TCHAR* Value, const FString& Filename)
{
	Change(Filename,
		[Section = FString(Section), Key = FString(Key), Value = FString(Value)](FConfigFile& File)
		{ File.SetString(Section, Key, Value); });
}

void FConfigCacheIni::SetInt(const TCHAR* Section, const TCHAR* Key, int32 Value, const FString& Filename)
{
	SetString(Section, Key, *FString::FromInt(Value), Filename);
}

void FConfigCacheIni::SetBool(const TCHAR* Section, const TCHAR* Key, bool bValue, const FString& Filename)
{
	SetString(Section, Key, bValue ? TEXT("True") : TEXT("False"), Filename);
}

void FConfigCacheIni::SetArray(
	const TCHAR* Section, const TCHAR* Key, const TArray<FString>& Values, const FString& Filename)
{
	Change(Filename,
		[Section = FString(Section), Key = FString(Key), Values](FConfigFile& File)
		{ File.SetArray(Section, Key, Values); });
}

void FConfigCacheIni::ChangeArray(const TCHAR* Section, const TCHAR* Key, const TArray<FString>& OldValues,
	const TArray<FString>& NewValues, const FString& Filename)
{
	Change(Filename,
		[Section = FString(Section), Key = FString(Key), OldValues, NewValues](FConfigFile& File)
		{ File.SetArray(Section, Key, MergeArray(OldValues, NewValues, File.FindArray(Section, Key))); });
}

void FConfigCacheIni::CommentOut(const TCHAR* Section, const TCHAR* Key, const FString& Filename)
{
	Change(Filename,
		[Section = FString(Section), Key = FString(Key)](FConfigFile& File) { File.CommentOut(Section, Key); });
}

bool FConfigCacheIni::RemoveKey(const TCHAR* Section, const TCHAR* Key, const FString& Filename)
{
	if (!Find(Filename).HasKey(Section, Key))
	{
		return false;
	}
	Change(Filename,
		[Section = FString(Section), Key = FString(Key)](FConfigFile& File) { File.RemoveKey(Section, Key); });
	return true;
}

bool FConfigCacheIni::EmptySection(const TCHAR* Section, const FString& Filename)
{
	if (!DoesSectionExist(Section, Filename))
	{
		return false;
	}
	Change(Filename, [Section = FString(Section)](FConfigFile& File) { File.RemoveSection(Section); });
	return true;
}

bool FConfigCacheIni::Write(FCachedFile& File, const FString& Filename)
{
	const FString Directory = FPaths::GetPath(Filename);
	FConfigFile OnDisk;
	if (!IFileManager::Get().MakeDirectory(*Directory, true))
	{
		return false;
	}
	const FDirectoryLock Lock(Directory, LockLimitSeconds);
	FString OldText;
	if (!Lock.IsHeld() || !ReadFile(Filename, OldText))
	{
		return false;
	}
	// What can't be understood was told of when the file was first read.
	OnDisk.Parse(OldText, FString());
	for (const TFunction<void(FConfigFile&)>& Change : File.Changes)
	{
		Change(OnDisk);
	}
	const FString NewText = OnDisk.ToText();
	if (!NewText.Equals(OldText) && !FFileHelper::SaveStringToFile(NewText, *Filename))
	{
		return false;
	}
	File.Content = MoveTemp(OnDisk);
	File.Changes.Empty();
	return true;
}

bool FConfigCacheIni::Flush(bool bRemoveFromCache, const FString& Filename)
{
	const FString Only = Filename.IsEmpty() ? FString() : KeyOf(Filename);
	bool bAllWritten = true;
	for (auto It = Files.CreateIterator(); It; ++It)
	{
		if (!Only.IsEmpty() && !(It.Key() == Only))
		{
			continue;
		}
		const bool bWritten = It.Value()->Changes.IsEmpty() || Write(*It.Value(), It.Key());
		if (!bWritten)
		{
			UE_LOG(LogConfigCache, Warning, TEXT("%s can't be written; its changes are kept in memory"), *It.Key());
			bAllWritten = false;
		}
		else if (bRemoveFromCache)
		{
			It.RemoveCurrent();
		}
	}
	return bAllWritten;
}

void FConfigCacheIni::UnloadFile(const FString& Filename)
{
	Files.Remove(KeyOf(Filename));
}
