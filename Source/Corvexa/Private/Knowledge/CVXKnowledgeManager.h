#pragma once

#include "Knowledge/CVXKnowledgeModule.h"

/**
 * All knowledge modules there are, read from the registered sources in their order, and the choice among them. What a
 * turn is shown is chosen from memory. Game thread.
 */
class FCVXKnowledgeManager
{
public:
	/** Made at the first call and kept to the end of the process. */
	static FCVXKnowledgeManager& Get();

	/** Where the modules that come with the plug-in are: the first place that exists. */
	static FString GetPluginKnowledgeDir();
	/** Where those of the project are. */
	static FString GetProjectKnowledgeDir();

	/** Adds a source. One that is there already, or has no label or directory, is ignored, the latter with a warning.
	 */
	void RegisterSource(const FString& Label, const FString& Directory, bool bWritable);
	/** Reads all sources anew; pointers to modules end here. What can't be read is left out and logged. */
	void LoadAllModules();

	bool IsEmpty() const { return Modules.IsEmpty(); }
	const TArray<FCVXKnowledgeModule>& GetModules() const { return Modules; }
	/** The first of that id; null without one. */
	const FCVXKnowledgeModule* FindModuleById(const FString& Id) const;
	/** Ids and titles, in order. */
	TArray<TPair<FString, FString>> GetModuleList() const;

	/**
	 * Writes a module into the first writable source, over one of the same id.
	 * @param Id must be good as a file name. @param bReload false leaves the memory as it is until the next load.
	 * @return false when it isn't on disk, which is logged.
	 */
	bool SaveModuleEx(const FString& Id, const FString& Title, const FString& Content, const TArray<FString>& Keywords,
		const TArray<FString>& ToolTriggers, const TArray<FString>& ProfileTriggers, int32 Priority, bool bReload);
	/** The same without triggers. */
	bool SaveModule(const FString& Id, const FString& Title, const FString& Content, const TArray<FString>& Keywords,
		int32 Priority, bool bReload);
	/** Deletes a module of a writable source. @return false when none has it, or the change can't be written; both are
	 * logged. */
	bool DeleteModule(const FString& Id);

	/**
	 * Chooses what goes into a turn, best first: by keywords, by a tool that may be called, by the agent and by
	 * priority; whole while the budget lasts, then as a summary where that fits.
	 * @param Keywords plural forms match the singular too. @param TokenBudget the most that the texts may take.
	 * @param ExcludeIds modules that are left out.
	 */
	TArray<FCVXKnowledgeSelection> SelectModules(const TArray<FString>& Keywords, const TSet<FString>& ActiveTools,
		const FString& ProfileName, int32 TokenBudget, const TSet<FString>& ExcludeIds) const;

	/** Forgets sources and modules. */
	void Reset();

private:
	FCVXKnowledgeManager() = default;

	TArray<FCVXKnowledgeModule> Modules;
	TArray<FCVXKnowledgeSource> Sources;
	bool bLoaded = false;
};
