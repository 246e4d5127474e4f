using UnrealBuildTool;

public class SkirmishEditorTarget : TargetRules
{
	public SkirmishEditorTarget(TargetInfo Target) : base(Target)
	{
		Type = TargetType.Editor;
		DefaultBuildSettings = BuildSettingsVersion.Latest;
		IncludeOrderVersion = EngineIncludeOrderVersion.Latest;
		ExtraModuleNames.Add("Skirmish");
	}
}
