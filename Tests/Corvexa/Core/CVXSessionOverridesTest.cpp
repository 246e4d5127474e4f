#include "Core/CVXSessionOverrides.h"

#include "Core/CVXSettings.h"
#include "Host/CoreUObject/Fixtures/ConfigProject.h"
#include "Support/HostTypePrinting.h"

#include <gtest/gtest.h>

namespace
{
constexpr const char* ConfigFile = "Config/DefaultEditor.ini";

FCVXSessionChoice MakeChoice()
{
	FCVXSessionChoice Choice;
	Choice.Provider.Emplace();
	Choice.Provider->ProfileName = TEXT("OnlyToday");
	Choice.Agent = FString(TEXT("Reviewer"));
	Choice.ApprovalMode = ECVXApprovalMode::AlwaysAsk;
	return Choice;
}

const FCVXAgentProfile& Coder()
{
	return *UCVXSettings::Get()->FindAgentProfile(TEXT("Coder"));
}
} // namespace

TEST(CVXSessionOverrides, HoldForTheRunAndAreNeverSavedWhileOtherChangesAre)
{
	FConfigProject Project;
	UCVXSettings& Settings = *UCVXSettings::Get();
	FCVXSessionOverrides::Get().Apply(Settings, MakeChoice());
	const FCVXAgentProfile* Pointer = &Coder();
	EXPECT_EQ(Settings.ActiveAgentProfile, TEXT("Reviewer"));
	for (const FCVXAgentProfile& Agent : Settings.AgentProfiles)
	{
		EXPECT_EQ(Agent.ProviderProfileName, TEXT("OnlyToday"));
		EXPECT_EQ(Agent.ApprovalMode, ECVXApprovalMode::AlwaysAsk);
	}

	Settings.MaxAgentTurns = 42;
	Settings.SaveToDefaultConfig();
	EXPECT_EQ(&Coder(), Pointer) << "a save moves no profile that somebody looks at";
	EXPECT_EQ(Coder().ProviderProfileName, TEXT("OnlyToday"));
	EXPECT_EQ(Settings.FindProviderProfile(TEXT("OnlyToday"))->ProfileName, TEXT("OnlyToday"));
	const std::string Saved = Project.Read(ConfigFile);
	EXPECT_EQ(Saved.find("OnlyToday"), std::string::npos);
	EXPECT_NE(Saved.find("MaxAgentTurns=42"), std::string::npos);

	FCVXSessionOverrides::Get().Revert(Settings);
	Project.Restart();
	EXPECT_EQ(UCVXSettings::Get()->ActiveAgentProfile, TEXT("Orchestrator"));
	EXPECT_EQ(Coder().ProviderProfileName, TEXT("Default"));
	EXPECT_EQ(Coder().ApprovalMode, ECVXApprovalMode::AutoApproveReads);
	EXPECT_EQ(UCVXSettings::Get()->MaxAgentTurns, 42);
}

TEST(CVXSessionOverrides, WhatTheUserChangesDuringTheRunIsKept)
{
	FConfigProject Project;
	UCVXSettings& Settings = *UCVXSettings::Get();
	FCVXSessionOverrides::Get().Apply(Settings, MakeChoice());
	Settings.ActiveAgentProfile = TEXT("Architect");
	FCVXAgentProfile* Reviewer = Settings.AgentProfiles.FindByPredicate(
		[](const FCVXAgentProfile& Each) { return Each.ProfileName == TEXT("Reviewer"); });
	Reviewer->ApprovalMode = ECVXApprovalMode::FullyAutonomous;
	Settings.ProviderProfiles.AddDefaulted_GetRef().ProfileName = TEXT("Added");
	Settings.SaveToDefaultConfig();

	FCVXSessionOverrides::Get().Revert(Settings);
	EXPECT_EQ(Settings.GetProviderProfileNames(), (TArray<FString>{TEXT("Default"), TEXT("Added")}));
	Project.Restart();
	EXPECT_EQ(UCVXSettings::Get()->ActiveAgentProfile, TEXT("Architect"));
	EXPECT_EQ(UCVXSettings::Get()->FindAgentProfile(TEXT("Reviewer"))->ApprovalMode, ECVXApprovalMode::FullyAutonomous);
	EXPECT_EQ(UCVXSettings::Get()->GetProviderProfileNames(), (TArray<FString>{TEXT("Default"), TEXT("Added")}));
}
