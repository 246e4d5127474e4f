#include "Agent/Guards/CVXVisualVerification.h"

#include "Agent/CVXAgentLog.h"
#include "Agent/Guards/CVXGuardContext.h"
#include "Agent/Guards/CVXToolOutcome.h"
#include "Algo/AnyOf.h"
#include "Core/CVXProfiles.h"
#include "Tools/CVXViewportCapture.h"

namespace
{
/** In the script: it touches the scene or a widget. */
constexpr const TCHAR* SceneWords[] = {TEXT("spawn_actor"), TEXT("set_actor_location"), TEXT("set_actor_scale"),
	TEXT("set_actor_rotation"), TEXT("set_actor_transform"), TEXT("set_world_location"), TEXT("set_world_rotation"),
	TEXT("set_relative_location"), TEXT("set_relative_rotation"), TEXT("EditorLevelLibrary"), TEXT("set_material"),
	TEXT("set_static_mesh"), TEXT("set_skeletal_mesh"), TEXT("DirectionalLight"), TEXT("PointLight"), TEXT("SpotLight"),
	TEXT("SkyLight"), TEXT("RectLight"), TEXT("widget_tree"), TEXT("add_child"), TEXT("root_widget"),
	TEXT("PlayerStart"), TEXT("set_actor_label"), TEXT("set_visibility"), TEXT("destroy_actor"),
	TEXT("StaticMeshActor"), TEXT("CameraActor"), TEXT("ExponentialHeightFog"), TEXT("PostProcessVolume"),
	TEXT("landscape"), TEXT("Landscape"), TEXT("add_component"), TEXT("create_level"), TEXT("LevelSequence"),
	TEXT("Niagara")};
/** In what it printed: something to be seen came of it. */
constexpr const TCHAR* OutcomeWords[] = {TEXT("Placed"), TEXT("spawn"), TEXT("Material applied"), TEXT("light"),
	TEXT("Wall"), TEXT("Floor"), TEXT("saved"), TEXT("Actor:"), TEXT("Location:"), TEXT("Rotation:"), TEXT("created"),
	TEXT("Mesh"), TEXT("Landscape"), TEXT("Fog"), TEXT("Camera"), TEXT("destroyed"), TEXT("component"),
	TEXT("visibility")};

bool ChangesTheScene(const FCVXGuardContext& Context, const FCVXCompletedToolResult& Result)
{
	if (!CVXToolOutcome::IsPython(Result) || Result.bIsError)
	{
		return false;
	}
	const FCVXToolCall* Call = Context.FindCall(Result.ToolUseId);
	return (Call && CVXToolOutcome::ContainsAny(Call->Arguments, SceneWords)) ||
		CVXToolOutcome::ContainsAny(Result.Output, OutcomeWords);
}
} // namespace

void CVXVisualVerification::Verify(FCVXGuardContext& Context, FCVXTurnFindings& Findings)
{
	++Context.State.TurnsSinceCapture;
	if (!Context.bModelHasVision || !Context.Profile.bAutoVisualVerification || !Findings.Images.IsEmpty() ||
		Context.State.TurnsSinceCapture <= 1 ||
		!Algo::AnyOf(Context.Results, [&](const auto& Result) { return ChangesTheScene(Context, Result); }))
	{
		return;
	}
	const FCVXViewportImage Image = FCVXViewportCapture::Capture(FCVXViewportCapture::DefaultMaxEdge);
	if (!Image.bSuccess)
	{
		UE_LOG(LogCVXAgentLoop, Warning, TEXT("Auto visual verification: capture failed — %s"), *Image.Error);
		return;
	}
	Findings.Images.Add({Image.Base64, TEXT("image/png")});
	Context.State.TurnsSinceCapture = 0;
	UE_LOG(LogCVXAgentLoop, Log, TEXT("Auto visual verification: captured viewport %dx%d"), Image.Width, Image.Height);
}
