#include "Knowledge/CVXKnowledgeManifest.h"

#include "Core/CVXJsonObject.h"
#include "HAL/FileManager.h"
#include "Knowledge/CVXKnowledgeSummary.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Serialization/JsonSerializer.h"
#include "Serialization/JsonWriter.h"

namespace
{
constexpr int32 CurrentVersion = 2;

using FValues = TArray<TSharedPtr<FJsonValue>>;

int32 EstimateTokens(const FString& Text)
{
	return Text.Len() / 4 + 10;
}

/** The strings among the elements of an array member. */
TArray<FString> ReadStrings(const FJsonObject& Object, const TCHAR* Name)
{
	TArray<FString> Strings;
	const FValues* Values = nullptr;
	if (Object.TryGetArrayField(Name, Values))
	{
		for (const TSharedPtr<FJsonValue>& Value : *Values)
		{
			if (Value->Type == EJson::String)
			{
				Strings.Add(Value->AsString());
			}
		}
	}
	return Strings;
}

FCVXKnowledgeModule ReadEntry(const FJsonObject& Object, const FString& Directory)
{
	FCVXKnowledgeModule Module;
	FString File;
	Object.TryGetStringField(TEXT("id"), Module.Id);
	Object.TryGetStringField(TEXT("file"), File);
	Object.TryGetStringField(TEXT("title"), Module.Title);
	Object.TryGetNumberField(TEXT("priority"), Module.Priority);
	Module.Keywords = ReadStrings(Object, TEXT("keywords"));
	for (FString& Keyword : Module.Keywords)
	{
		Keyword.ToLowerInline();
	}
	Module.ToolTriggers = ReadStrings(Object, TEXT("tool_triggers"));
	Module.ProfileTriggers = ReadStrings(Object, TEXT("profile_triggers"));
	Module.FilePath = File.IsEmpty() ? FString() : FPaths::Combine(Directory, File);
	return Module;
}

/** @return whether the module has a document. */
bool LoadDocument(const FCVXKnowledgeSource& Source, FCVXKnowledgeModule& Module)
{
	if (Module.Id.IsEmpty() || Module.FilePath.IsEmpty())
	{
		UE_LOG(LogCVXKnowledge, Warning, TEXT("Skipping knowledge module with empty id or file in source '%s'"),
			*Source.Label);
		return false;
	}
	if (!FFileHelper::LoadFileToString(Module.Content, *Module.FilePath))
	{
		UE_LOG(LogCVXKnowledge, Warning, TEXT("Failed to load knowledge file: %s"), *Module.FilePath);
		return false;
	}
	Module.EstimatedTokens = EstimateTokens(Module.Content);
	Module.SourceLabel = Source.Label;
	Module.Summary = CVXKnowledgeSummary::Make(Module.Content);
	Module.SummaryTokens = Module.Summary.IsEmpty() ? 0 : EstimateTokens(Module.Summary);
	return true;
}

/** @return the list of a source's manifest; null when there is none to be had, which is logged. */
TSharedPtr<FJsonObject> LoadManifest(const FCVXKnowledgeSource& Source)
{
	const FString Path = FPaths::Combine(Source.Directory, FCVXKnowledgeManifest::FileName);
	if (!IFileManager::Get().FileExists(*Path))
	{
		if (Source.bWritable)
		{
			UE_LOG(LogCVXKnowledge, Verbose, TEXT("Writable knowledge source '%s' has no manifest yet (dir: %s)"),
				*Source.Label, *Source.Directory);
			return nullptr;
		}
		UE_LOG(
			LogCVXKnowledge, Warning, TEXT("Knowledge manifest not found for source '%s': %s"), *Source.Label, *Path);
		return nullptr;
	}
	FString Json;
	if (!FFileHelper::LoadFileToString(Json, *Path))
	{
		UE_LOG(LogCVXKnowledge, Error, TEXT("Failed to read knowledge manifest for source '%s': %s"), *Source.Label,
			*Path);
		return nullptr;
	}
	const TSharedPtr<FJsonObject> Root = CVXJsonObject::Parse(Json);
	if (!Root)
	{
		UE_LOG(LogCVXKnowledge, Error, TEXT("Failed to parse knowledge manifest JSON for source '%s'"), *Source.Label);
	}
	return Root;
}

/** A manifest that can't be read is written anew; what somebody may have typed into it mustn't be lost. */
void KeepDamaged(const FString& Path)
{
	const FString Backup = Path + TEXT(".corrupted");
	IFileManager::Get().Copy(*Backup, *Path, true);
	UE_LOG(LogCVXKnowledge, Warning, TEXT("Knowledge manifest can't be read — backed up to %s"), *Backup);
}

FValues MakeValues(const TArray<FString>& Strings)
{
	FValues Values;
	for (const FString& String : Strings)
	{
		Values.Add(MakeShared<FJsonValueString>(String));
	}
	return Values;
}

FValues GetModules(const FJsonObject& Root)
{
	const FValues* Values = nullptr;
	return Root.TryGetArrayField(TEXT("modules"), Values) ? *Values : FValues();
}

/** Whether the value is the entry of that id. @param OutEntry the value as an object. */
bool IsEntryOf(const TSharedPtr<FJsonValue>& Value, const FString& Id, TSharedPtr<FJsonObject>& OutEntry)
{
	const TSharedPtr<FJsonObject>* Object = nullptr;
	FString EntryId;
	if (!Value->TryGetObject(Object) || !(*Object)->TryGetStringField(TEXT("id"), EntryId) || EntryId != Id)
	{
		return false;
	}
	OutEntry = *Object;
	return true;
}
} // namespace

FCVXKnowledgeManifest::FCVXKnowledgeManifest(const FString& InDirectory)
	: Directory(InDirectory)
{
}

FString FCVXKnowledgeManifest::GetPath() const
{
	return FPaths::Combine(Directory, FileName);
}

FCVXKnowledgeManifest FCVXKnowledgeManifest::Open(const FString& Directory)
{
	FCVXKnowledgeManifest Manifest(Directory);
	const FString Path = Manifest.GetPath();
	FString Json;
	if (IFileManager::Get().FileExists(*Path))
	{
		Manifest.Root = FFileHelper::LoadFileToString(Json, *Path) ? CVXJsonObject::Parse(Json) : nullptr;
		if (!Manifest.Root)
		{
			KeepDamaged(Path);
		}
	}
	if (!Manifest.Root)
	{
		Manifest.Root = MakeShared<FJsonObject>();
		Manifest.Root->SetNumberField(TEXT("version"), CurrentVersion);
	}
	return Manifest;
}

TArray<FCVXKnowledgeModule> FCVXKnowledgeManifest::LoadModules(const FCVXKnowledgeSource& Source)
{
	TArray<FCVXKnowledgeModule> Modules;
	const TSharedPtr<FJsonObject> Root = LoadManifest(Source);
	if (!Root)
	{
		return Modules;
	}
	const FValues* Entries = nullptr;
	if (!Root->TryGetArrayField(TEXT("modules"), Entries))
	{
		UE_LOG(
			LogCVXKnowledge, Warning, TEXT("Knowledge manifest for source '%s' has no 'modules' array"), *Source.Label);
		return Modules;
	}
	for (const TSharedPtr<FJsonValue>& Value : *Entries)
	{
		const TSharedPtr<FJsonObject>* Entry = nullptr;
		if (Value->TryGetObject(Entry))
		{
			FCVXKnowledgeModule Module = ReadEntry(**Entry, Source.Directory);
			if (LoadDocument(Source, Module))
			{
				Modules.Add(MoveTemp(Module));
			}
		}
	}
	UE_LOG(LogCVXKnowledge, Log, TEXT("Loaded %d modules from source '%s'"), Modules.Num(), *Source.Label);
	return Modules;
}

void FCVXKnowledgeManifest::Put(const FCVXKnowledgeModule& Module, const FString& DocumentName)
{
	FValues Entries = GetModules(*Root);
	TSharedPtr<FJsonObject> Entry;
	for (const TSharedPtr<FJsonValue>& Value : Entries)
	{
		if (IsEntryOf(Value, Module.Id, Entry))
		{
			break;
		}
	}
	if (!Entry)
	{
		Entry = MakeShared<FJsonObject>();
		Entry->SetStringField(TEXT("id"), Module.Id);
		Entry->SetStringField(TEXT("file"), DocumentName);
		Entries.Add(MakeShared<FJsonValueObject>(Entry));
	}
	Entry->SetStringField(TEXT("title"), Module.Title);
	Entry->SetStringField(TEXT("file"), DocumentName);
	Entry->SetNumberField(TEXT("priority"), Module.Priority);
	Entry->SetArrayField(TEXT("keywords"), MakeValues(Module.Keywords));
	Entry->SetArrayField(TEXT("tool_triggers"), MakeValues(Module.ToolTriggers));
	Entry->SetArrayField(TEXT("profile_triggers"), MakeValues(Module.ProfileTriggers));
	Root->SetArrayField(TEXT("modules"), MoveTemp(Entries));
}

bool FCVXKnowledgeManifest::Remove(const FString& Id, FString& OutDocument)
{
	FValues Entries = GetModules(*Root);
	const int32 Removed = Entries.RemoveAll(
		[&](const TSharedPtr<FJsonValue>& Value)
		{
			TSharedPtr<FJsonObject> Entry;
			const bool bIt = IsEntryOf(Value, Id, Entry);
			if (bIt)
			{
				Entry->TryGetStringField(TEXT("file"), OutDocument);
			}
			return bIt;
		});
	if (Removed > 0)
	{
		Root->SetArrayField(TEXT("modules"), MoveTemp(Entries));
	}
	return Removed > 0;
}

bool FCVXKnowledgeManifest::Save() const
{
	FString Json;
	const auto Writer = TJsonWriterFactory<>::Create(&Json);
	return FJsonSerializer::Serialize(Root.ToSharedRef(), Writer) && FFileHelper::SaveStringToFile(Json, *GetPath());
}
