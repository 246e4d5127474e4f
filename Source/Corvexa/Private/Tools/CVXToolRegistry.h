#pragma once

#include "HAL/CriticalSection.h"
#include "Tools/CVXTool.h"

/**
 * The tools there are, by name; names ignore case. They are listed in the order of registration, in which a tool takes
 * the place of one that was removed before it. Any thread.
 */
class FCVXToolRegistry
{
public:
	/** Made at the first call and kept to the end of the process. */
	static FCVXToolRegistry& Get();

	/** Adds a tool, in the place of one with the same name if there is one. */
	void RegisterTool(TUniquePtr<ICVXTool> Tool);

	/** Removes a tool; calls that hold it finish. An unknown name is ignored. */
	void UnregisterTool(const FString& Name);

	void Clear();

	/** Null when there is none. Lives until the tool is removed, so only for the thread that removes tools. */
	ICVXTool* FindTool(const FString& Name) const;

	/** Null when there is none. The tool lives as long as the result. */
	TSharedPtr<ICVXTool> FindToolShared(const FString& Name) const;

	/** In registry order. The pointers live as those of `FindTool`. */
	TArray<ICVXTool*> GetAllTools() const;

	/** What an agent of this profile is offered, in registry order. A denied tool is never offered. */
	TArray<FCVXToolDescriptor> GetToolDescriptors(const FCVXAgentProfile& Profile) const;

	/** The chat label of a call: the tool's display name, and what the call works on when that can be told. */
	FString GetToolDisplayLabel(const FString& ToolName, const FString& ArgumentsJson) const;

private:
	FCVXToolRegistry() = default;

	mutable FCriticalSection Lock;
	TMap<FString, TSharedPtr<ICVXTool>> Tools;
};
