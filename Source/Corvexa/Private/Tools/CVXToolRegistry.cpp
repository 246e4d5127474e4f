#include "Tools/CVXToolRegistry.h"

#include "Misc/ScopeLock.h"

namespace
{
bool Names(const TArray<FString>& List, const FString& Name)
{
	return List.ContainsByPredicate(
		[&Name](const FString& Each) { return Each.Equals(Name, ESearchCase::IgnoreCase); });
}

bool IsOffered(const FString& Name, const ICVXTool& Tool, const FCVXAgentProfile& Profile)
{
	if (Names(Profile.DeniedTools, Name))
	{
		return false;
	}
	if (!Profile.AllowedTools.IsEmpty() && !Names(Profile.AllowedTools, Name))
	{
		return false;
	}
	return !Profile.bReadOnly || Tool.IsReadOnly();
}
} // namespace

FCVXToolRegistry& FCVXToolRegistry::Get()
{
	static FCVXToolRegistry Registry;
	return Registry;
}

// A tool that goes is held until the lock is released: its destructor may come back here.

void FCVXToolRegistry::RegisterTool(TUniquePtr<ICVXTool> Tool)
{
	check(Tool.IsValid());
	TSharedPtr<ICVXTool> Kept = MakeShareable(Tool.Release());
	const FString Name = Kept->GetName();
	FScopeLock Guard(&Lock);
	Swap(Tools.FindOrAdd(Name), Kept);
	Guard.Unlock();
}

void FCVXToolRegistry::UnregisterTool(const FString& Name)
{
	TSharedPtr<ICVXTool> Gone;
	FScopeLock Guard(&Lock);
	Tools.RemoveAndCopyValue(Name, Gone);
	Guard.Unlock();
}

void FCVXToolRegistry::Clear()
{
	TMap<FString, TSharedPtr<ICVXTool>> Gone;
	FScopeLock Guard(&Lock);
	Swap(Tools, Gone);
	Guard.Unlock();
}

ICVXTool* FCVXToolRegistry::FindTool(const FString& Name) const
{
	return FindToolShared(Name).Get();
}

TSharedPtr<ICVXTool> FCVXToolRegistry::FindToolShared(const FString& Name) const
{
	FScopeLock Guard(&Lock);
	return Tools.FindRef(Name);
}

TArray<ICVXTool*> FCVXToolRegistry::GetAllTools() const
{
	FScopeLock Guard(&Lock);
	TArray<ICVXTool*> Result;
	Result.Reserve(Tools.Num());
	for (const auto& [Name, Tool] : Tools)
	{
		Result.Add(Tool.Get());
	}
	return Result;
}

TArray<FCVXToolDescriptor> FCVXToolRegistry::GetToolDescriptors(const FCVXAgentProfile& Profile) const
{
	FScopeLock Guard(&Lock);
	TArray<FCVXToolDescriptor> Result;
	for (const auto& [Name, Tool] : Tools)
	{
		if (IsOffered(Name, *Tool, Profile))
		{
			Result.Add({Name, Tool->GetDescription(), Tool->GetInputSchemaJson()});
		}
	}
	return Result;
}

FString FCVXToolRegistry::GetToolDisplayLabel(const FString& ToolName, const FString& ArgumentsJson) const
{
	const TSharedPtr<ICVXTool> Tool = FindToolShared(ToolName);
	if (!Tool.IsValid())
	{
		return ICVXTool::PrettifyName(ToolName);
	}
	const FString Subject = Tool->GetDisplaySubject(ArgumentsJson);
	return Subject.IsEmpty() ? Tool->GetDisplayName()
							 : FString::Printf(TEXT("%s: %s"), *Tool->GetDisplayName(), *Subject);
}
