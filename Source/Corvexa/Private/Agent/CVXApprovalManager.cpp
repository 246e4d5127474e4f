#include "Agent/CVXApprovalManager.h"

#include "Core/CVXSettings.h"
#include "Misc/Paths.h"

namespace
{
/** Whether a write would touch a path in the project that the settings protect. */
bool IsProtected(const FString& Path, const TArray<FString>& Patterns)
{
	const FString ProjectDir = FPaths::ConvertRelativePathToFull(FPaths::ProjectDir());
	FString Relative = FPaths::ConvertRelativePathToFull(ProjectDir, Path);
	if (!Relative.RemoveFromStart(ProjectDir))
	{
		return false;
	}
	return Patterns.ContainsByPredicate([&](const FString& Each) { return Relative.MatchesWildcard(Each); });
}

bool MatchesTool(const FCVXAutoApprovalRule& Rule, const FString& ToolName)
{
	return Rule.ToolName.IsEmpty() || Rule.ToolName == ToolName || ToolName.MatchesWildcard(Rule.ToolName);
}

FString CleanPath(const FString& Path)
{
	FString Clean = Path;
	FPaths::NormalizeFilename(Clean);
	// A path that leads above its own start stays as it is, and matches as such.
	(void)FPaths::CollapseRelativeDirectories(Clean);
	return Clean;
}
} // namespace

FCVXApprovalManager& FCVXApprovalManager::Get()
{
	static FCVXApprovalManager Manager;
	return Manager;
}

ECVXApprovalState FCVXApprovalManager::CheckAutoRules(
	const FCVXApprovalRequest& Request, const FCVXAgentProfile& Profile) const
{
	const UCVXSettings* Settings = UCVXSettings::Get();
	if (Settings && !Request.bIsReadOnly && !Request.FilePath.IsEmpty() &&
		IsProtected(Request.FilePath, Settings->ProtectedPaths))
	{
		return ECVXApprovalState::Denied;
	}
	if (Profile.ApprovalMode == ECVXApprovalMode::FullyAutonomous ||
		(Profile.ApprovalMode == ECVXApprovalMode::AutoApproveReads && Request.bIsReadOnly))
	{
		return ECVXApprovalState::Approved;
	}
	const FCVXAutoApprovalRule* Rule = !Settings ? nullptr
												 : Settings->AutoApprovalRules.FindByPredicate(
													   [&](const FCVXAutoApprovalRule& Each)
													   {
														   return MatchesTool(Each, Request.ToolName) &&
															   (Each.PathGlob.IsEmpty() || Request.FilePath.IsEmpty() ||
																   MatchesGlob(Request.FilePath, Each.PathGlob));
													   });
	if (!Rule)
	{
		return ECVXApprovalState::Pending;
	}
	return Rule->bAutoApprove ? ECVXApprovalState::Approved : ECVXApprovalState::Denied;
}

void FCVXApprovalManager::RecordUserDecision(
	const FString& ToolName, const FString& PathGlob, ECVXApprovalState Decision, bool bRemember)
{
	if (!bRemember || (Decision != ECVXApprovalState::AlwaysAllow && Decision != ECVXApprovalState::AlwaysDeny))
	{
		return;
	}
	UCVXSettings* Settings = UCVXSettings::Get();
	if (!Settings)
	{
		return;
	}
	FCVXAutoApprovalRule& Rule = Settings->AutoApprovalRules.AddDefaulted_GetRef();
	Rule.ToolName = ToolName;
	Rule.PathGlob = PathGlob;
	Rule.bAutoApprove = Decision == ECVXApprovalState::AlwaysAllow;
	if (const FProperty* Property = Settings->GetClass()->FindPropertyByName(TEXT("AutoApprovalRules")))
	{
		Settings->UpdateSinglePropertyInConfigFile(Property, Settings->GetDefaultConfigFilename());
	}
}

bool FCVXApprovalManager::MatchesGlob(const FString& Path, const FString& Glob) const
{
	return CleanPath(Path).MatchesWildcard(CleanPath(Glob));
}
