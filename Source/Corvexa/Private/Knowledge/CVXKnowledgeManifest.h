#pragma once

#include "Knowledge/CVXKnowledgeModule.h"

class FJsonObject;

/**
 * The file manifest.json at the top of a source directory, which lists its modules. What it holds beyond the members
 * known here stays as it is. Game thread.
 */
class FCVXKnowledgeManifest
{
public:
	static constexpr const TCHAR* FileName = TEXT("manifest.json");

	/** Reads the file of a source. One that is missing or no JSON object gives an empty manifest. */
	static FCVXKnowledgeManifest Open(const FString& Directory);

	/**
	 * Reads the modules of a source with their documents. What can't be read is left out and logged, and all else
	 * stays.
	 */
	static TArray<FCVXKnowledgeModule> LoadModules(const FCVXKnowledgeSource& Source);

	/** Changes the entry of the module's id, or adds one. */
	void Put(const FCVXKnowledgeModule& Module, const FString& DocumentName);
	/** @return whether there was such an entry. @param OutDocument the name of its document. */
	bool Remove(const FString& Id, FString& OutDocument);
	/** @return whether it is on disk. */
	bool Save() const;
	FString GetPath() const;

private:
	explicit FCVXKnowledgeManifest(const FString& InDirectory);

	FString Directory;
	TSharedPtr<FJsonObject> Root;
};
