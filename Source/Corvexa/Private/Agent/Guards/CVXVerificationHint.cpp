#include "Agent/Guards/CVXVerificationHint.h"

#include "Agent/CVXAgentLog.h"
#include "Agent/Guards/CVXGuardContext.h"
#include "Agent/Guards/CVXToolOutcome.h"

namespace
{
constexpr int32 MaxUnverified = 3;

/** An output with one of these verifies something. */
constexpr const TCHAR* ProofWords[] = {TEXT("get_actor_label"), TEXT("get_name"), TEXT("pos=("),
	TEXT("get_actor_location"), TEXT("widget_tree"), TEXT("root_widget"), TEXT("BuildGraphFromSpec"), TEXT("nodes,"),
	TEXT("compiled"), TEXT("ValidateBlueprintGraphs"), TEXT("SavePackage"), TEXT("\"success\""), TEXT("graph_name")};
} // namespace

void CVXVerificationHint::Check(FCVXGuardContext& Context, const FCVXTurnFindings& Findings)
{
	int32& Streak = Context.State.UnverifiedPythonStreak;
	for (const FCVXCompletedToolResult& Result : Context.Results)
	{
		if (CVXToolOutcome::IsPython(Result) && !Result.bIsError)
		{
			Streak = CVXToolOutcome::ContainsAny(Result.Output, ProofWords) ? 0 : Streak + 1;
		}
	}
	if (Streak < MaxUnverified || Findings.bPythonError)
	{
		return;
	}
	Context.AddHidden(
		FString::Printf(
			TEXT(
				"[Hint] %d execute_python calls without print() verification. You cannot confirm results without "
				"output. "
				"Add verification prints, for example:\n  print(f'Actor: {actor.get_actor_label()} at "
				"{actor.get_actor_location()}')\n  print(f'Asset exists: "
				"{unreal.EditorAssetLibrary.does_asset_exist(\"/Game/MyAsset\")}')\n  print(f'Blueprint: "
				"{bp.get_name()}, compiled: {not bp.has_any_flags(unreal.ObjectFlags.RF_NEEDS_LOAD)}')\n  "
				"print([a.get_actor_label() for a in unreal.EditorLevelLibrary.get_all_level_actors()])\nVerify before "
				"proceeding to the next step."),
			Streak),
		TEXT("verify-hint"));
	Streak = 0;
	UE_LOG(LogCVXAgentLoop, Log, TEXT("Auto-hint: verification reminder injected"));
}
