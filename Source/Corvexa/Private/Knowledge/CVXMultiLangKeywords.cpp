#include "Knowledge/CVXMultiLangKeywords.h"

#include "Core/CVXJsonObject.h"
#include "HAL/FileManager.h"
#include "Knowledge/CVXFallbackDictionary.h"
#include "Logging/LogMacros.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Misc/ScopeLock.h"

DEFINE_LOG_CATEGORY_STATIC(LogCVXMultiLang, Log, All);

namespace
{
/** The dictionary of the process. */
struct FDictionary
{
	FCriticalSection Lock;
	TMap<FString, TArray<FString>> ExactMap;
	/** In load order. */
	TArray<FCVXKeywordMapping> PrefixList;
	bool bLoaded = false;

	/** @return whether the mapping is new. */
	bool Add(FCVXKeywordMapping Mapping)
	{
		if (!Mapping.bPrefix)
		{
			TArray<FString>& Keys = ExactMap.FindOrAdd(Mapping.Term);
			const int32 Before = Keys.Num();
			Keys.AddUnique(Mapping.Key);
			return Keys.Num() > Before;
		}
		const auto IsEqual = [&](const FCVXKeywordMapping& Each)
		{ return Each.Term == Mapping.Term && Each.Key == Mapping.Key; };
		const bool bNew = !PrefixList.ContainsByPredicate(IsEqual);
		if (bNew)
		{
			PrefixList.Add(MoveTemp(Mapping));
		}
		return bNew;
	}

	void Clear()
	{
		ExactMap.Empty();
		PrefixList.Empty();
		bLoaded = false;
	}
};

FDictionary& GetDictionary()
{
	static FDictionary Dictionary;
	return Dictionary;
}

/** @return whether the object is an entry with both texts. */
bool ReadMapping(const FJsonObject& Object, FCVXKeywordMapping& Out)
{
	Object.TryGetStringField(TEXT("term"), Out.Term);
	Object.TryGetStringField(TEXT("key"), Out.Key);
	Object.TryGetBoolField(TEXT("prefix"), Out.bPrefix);
	Out.Term.ToLowerInline();
	Out.Key.ToLowerInline();
	return !Out.Term.IsEmpty() && !Out.Key.IsEmpty();
}

/** @return the mappings that the file gave. */
int32 LoadFile(const FString& Path, FDictionary& Dictionary)
{
	FString Json;
	if (!FFileHelper::LoadFileToString(Json, *Path))
	{
		UE_LOG(LogCVXMultiLang, Warning, TEXT("Failed to read translation file: %s"), *Path);
		return 0;
	}
	const TSharedPtr<FJsonObject> Root = CVXJsonObject::Parse(Json);
	if (!Root)
	{
		UE_LOG(LogCVXMultiLang, Warning, TEXT("Failed to parse translation JSON: %s"), *Path);
		return 0;
	}
	const TArray<TSharedPtr<FJsonValue>>* Mappings = nullptr;
	if (!Root->TryGetArrayField(TEXT("mappings"), Mappings))
	{
		UE_LOG(LogCVXMultiLang, Warning, TEXT("Translation file has no 'mappings' array: %s"), *Path);
		return 0;
	}
	int32 Added = 0;
	for (const TSharedPtr<FJsonValue>& Value : *Mappings)
	{
		const TSharedPtr<FJsonObject>* Object = nullptr;
		FCVXKeywordMapping Mapping;
		if (Value->TryGetObject(Object) && ReadMapping(**Object, Mapping))
		{
			Added += Dictionary.Add(MoveTemp(Mapping)) ? 1 : 0;
		}
	}
	return Added;
}

/** @return whether the folder gave anything. */
bool LoadFolder(const FString& Folder, FDictionary& Dictionary)
{
	TArray<FString> Names;
	IFileManager::Get().FindFiles(Names, *FPaths::Combine(Folder, TEXT("*.json")), true, false);
	int32 Mappings = 0;
	int32 Files = 0;
	for (const FString& Name : Names)
	{
		const int32 Added = LoadFile(FPaths::Combine(Folder, Name), Dictionary);
		Mappings += Added;
		Files += Added > 0 ? 1 : 0;
	}
	if (Mappings > 0)
	{
		UE_LOG(LogCVXMultiLang, Log, TEXT("Loaded %d keyword mappings from %d translation files"), Mappings, Files);
	}
	return Mappings > 0;
}

void FillWithFallback(FDictionary& Dictionary)
{
	for (const FCVXFallbackMapping& Mapping : CVXFallbackDictionary::GetExact())
	{
		Dictionary.Add({Mapping.Term, Mapping.Key, false});
	}
	for (const FCVXFallbackMapping& Mapping : CVXFallbackDictionary::GetPrefixes())
	{
		Dictionary.Add({Mapping.Term, Mapping.Key, true});
	}
	UE_LOG(LogCVXMultiLang, Log, TEXT("Using built-in fallback dictionary (%d exact + %d prefix entries)"),
		Dictionary.ExactMap.Num(), Dictionary.PrefixList.Num());
}

void Translate(const FString& Keyword, const FDictionary& Dictionary, TArray<FString>& OutKeys)
{
	if (const TArray<FString>* Keys = Dictionary.ExactMap.Find(Keyword))
	{
		for (const FString& Key : *Keys)
		{
			OutKeys.AddUnique(Key);
		}
		return;
	}
	for (const FCVXKeywordMapping& Mapping : Dictionary.PrefixList)
	{
		if (Keyword.StartsWith(Mapping.Term))
		{
			OutKeys.AddUnique(Mapping.Key);
		}
	}
}
} // namespace

void FCVXMultiLangKeywords::LoadTranslations(const FString& KnowledgeDir)
{
	FDictionary& Dictionary = GetDictionary();
	const FScopeLock Guard(&Dictionary.Lock);
	if (Dictionary.bLoaded)
	{
		return;
	}
	Dictionary.Clear();
	if (!LoadFolder(FPaths::Combine(KnowledgeDir, TEXT("translations")), Dictionary))
	{
		FillWithFallback(Dictionary);
	}
	Dictionary.bLoaded = true;
}

TArray<FString> FCVXMultiLangKeywords::TranslateKeywords(const TArray<FString>& Keywords)
{
	FDictionary& Dictionary = GetDictionary();
	const FScopeLock Guard(&Dictionary.Lock);
	TArray<FString> Keys;
	for (const FString& Keyword : Keywords)
	{
		Translate(Keyword.ToLower(), Dictionary, Keys);
	}
	const TSet<FString> Given(Keywords);
	Keys.RemoveAll([&](const FString& Key) { return Given.Contains(Key); });
	return Keys;
}

bool FCVXMultiLangKeywords::ContainsCJK(const FString& Text)
{
	for (const TCHAR Char : Text)
	{
		const bool bKana = Char >= 0x3040 && Char <= 0x30FF;
		const bool bIdeograph = (Char >= 0x3400 && Char <= 0x4DBF) || (Char >= 0x4E00 && Char <= 0x9FFF);
		const bool bHangul = Char >= 0xAC00 && Char <= 0xD7AF;
		if (bKana || bIdeograph || bHangul)
		{
			return true;
		}
	}
	return false;
}

void FCVXMultiLangKeywords::Reset()
{
	FDictionary& Dictionary = GetDictionary();
	const FScopeLock Guard(&Dictionary.Lock);
	Dictionary.Clear();
}
