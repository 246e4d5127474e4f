using UnrealBuildTool;

public class Skirmish : ModuleRules
{
	public Skirmish(ReadOnlyTargetRules Target) : base(Target)
	{
		PCHUsage = PCHUsageMode.UseExplicitOrSharedPCHs;

		// Files include each other by their path from here: "Weapons/SkirmishWeapon.h".
		PublicIncludePaths.Add(ModuleDirectory);

		PublicDependencyModuleNames.AddRange(new[] { "Core", "CoreUObject", "Engine", "EnhancedInput", "AIModule" });
		PrivateDependencyModuleNames.AddRange(new[] { "InputCore", "GameplayTasks", "SkirmishTelemetry" });
	}
}
