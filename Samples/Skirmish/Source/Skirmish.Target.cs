using UnrealBuildTool;

public class SkirmishTarget : TargetRules
{
	public SkirmishTarget(TargetInfo Target) : base(Target)
	{
		Type = TargetType.Game;
		DefaultBuildSettings = BuildSettingsVersion.Latest;
		IncludeOrderVersion = EngineIncludeOrderVersion.Latest;
		ExtraModuleNames.Add("Skirmish");
	}
}
