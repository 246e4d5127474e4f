#include "Core/CVXSettings.h"

#include "Core/CVXApiKeysFile.h"
#include "Core/CVXVisionSupport.h"
#include "Host/CoreUObject/Fixtures/ConfigProject.h"
#include "Support/HostTypePrinting.h"
#include "Support/LogCapture.h"
#include "UObject/UnrealType.h"

#include <gtest/gtest.h>

namespace
{
constexpr const char* ConfigFile = "Config/DefaultEditor.ini";
const std::string Section = "[/Script/Corvexa.CVXSettings]\n";

/** All settings in the order of their declaration, as text. */
TArray<FString> Describe(const UCVXSettings& Settings)
{
	TArray<FString> Lines;
	for (TFieldIterator<FProperty> It(UCVXSettings::StaticClass(), EFieldIteratorFlags::ExcludeSuper); It; ++It)
	{
		FString Value;
		It->ExportText_InContainer(0, Value, &Settings, nullptr, nullptr, PPF_None);
		Lines.Add(It->GetName() + TEXT("=") + Value);
	}
	return Lines;
}

int32 MetaInt(const FProperty& Property, const TCHAR* Key)
{
	return FCString::Atoi(*Property.GetMetaData(Key));
}
} // namespace

TEST(CVXSettings, AFreshInstallIsConfiguredSavedAndTheSameAtTheNextStart)
{
	FConfigProject Project;
	const FLogCapture Log;
	const UCVXSettings* Settings = UCVXSettings::Get();
	EXPECT_EQ(Settings->GetProviderProfileNames(), (TArray<FString>{TEXT("Default")}));
	EXPECT_EQ(Settings->GetAgentProfileNames(),
		(TArray<FString>{
			TEXT("Orchestrator"), TEXT("Coder"), TEXT("Architect"), TEXT("Reviewer"), TEXT("LevelDesigner")}));
	EXPECT_EQ(Settings->ActiveAgentProfile, TEXT("Orchestrator"));
	EXPECT_EQ(Settings->SettingsVersion, 5);
	EXPECT_EQ(Settings->GetCategoryName(), FName(TEXT("Plugins")));
	EXPECT_EQ(Settings->GetSectionName(), FName(TEXT("Corvexa")));
	EXPECT_EQ(Settings->GetSectionText().ToString(), TEXT("Corvexa"));
	EXPECT_TRUE(Log.Contains(TEXT("CVXSettings: PostInitProperties — AgentProfiles=0 ProviderProfiles=0")));
	EXPECT_EQ(Log.Count(TEXT("CVXSettings: saved to "), ELogVerbosity::Log), 5) << "once for each migration";
	EXPECT_EQ(Project.Read(ConfigFile).find("AgentProfiles"), std::string::npos)
		<< "the built-in agents reach the disk with the next save";

	UCVXSettings::Get()->SaveToDefaultConfig();
	const TArray<FString> Before = Describe(*Settings);
	const std::string Saved = Project.Read(ConfigFile);
	Project.Restart();
	EXPECT_EQ(Describe(*UCVXSettings::Get()), Before);
	EXPECT_EQ(Project.Read(ConfigFile), Saved);
}

TEST(CVXSettings, OnlyTheDefaultObjectMigratesAndAnEditIsOnDiskAtOnce)
{
	FConfigProject Project;
	UCVXSettings* Settings = UCVXSettings::Get();
	const FLogCapture Log;
	NewObject<UCVXSettings>();
	EXPECT_FALSE(Log.Contains(TEXT("CVXSettings:")));
	Settings->MaxAgentTurns = 42;
	FPropertyChangedEvent Event(UCVXSettings::StaticClass()->FindPropertyByName(TEXT("MaxAgentTurns")));
	Settings->PostEditChangeProperty(Event);
	EXPECT_NE(Project.Read(ConfigFile).find("MaxAgentTurns=42\n"), std::string::npos);
}

TEST(CVXSettings, EachMigrationRunsFromTheStoredVersionOn)
{
	struct FCase
	{
		const char* Stored;
		const TCHAR* Expected;
	};
	const FCase Cases[] = {
		{"+ProviderProfiles=(ProfileName=\"Old\",MaxContextTokens=9000)", TEXT("MaxContextTokens=0,")},
		{"SettingsVersion=1\n+ProviderProfiles=(ProfileName=\"Old\",MaxContextTokens=9000)",
			TEXT("MaxContextTokens=9000,")},
		{"SettingsVersion=1\nActiveAgentProfile=coder", TEXT("ActiveAgentProfile=Orchestrator")},
		{"SettingsVersion=2\nActiveAgentProfile=coder", TEXT("ActiveAgentProfile=coder")},
		{"SettingsVersion=2\n+ProviderProfiles=(ModelId=\"O1-preview\")", TEXT("bSupportsVision=False")},
		{"SettingsVersion=3\n+ProviderProfiles=(ModelId=\"O1-preview\")", TEXT("bSupportsVision=True")},
		{"SettingsVersion=2\n+AgentProfiles=(ProfileName=\"leveldesigner\",SystemPrompt=\"Blockout methodology, "
		 "INCREMENTAL WORKFLOW\",bAutoVisualVerification=False)",
			TEXT("ApprovalMode=AutoApproveReads,bAutoVisualVerification=True),(ProfileName=\"Orchestrator\"")},
		{"SettingsVersion=3\nKnowledgeInjectionTokenBudget=4000", TEXT("KnowledgeInjectionTokenBudget=12000")},
		{"SettingsVersion=3\nKnowledgeInjectionTokenBudget=4001", TEXT("KnowledgeInjectionTokenBudget=4001")},
		{"SettingsVersion=4\nKnowledgeInjectionTokenBudget=1000", TEXT("KnowledgeInjectionTokenBudget=1000")},
		{"SettingsVersion=3", TEXT("SettingsVersion=5")},
		{"SettingsVersion=9\nActiveAgentProfile=Coder", TEXT("SettingsVersion=9")},
		{"SettingsVersion=half\nActiveAgentProfile=Coder", TEXT("ActiveAgentProfile=Orchestrator")},
	};
	for (const FCase& Case : Cases)
	{
		FConfigProject Project;
		Project.Write(ConfigFile, Section + Case.Stored + "\n");
		const FString All = FString::Join(Describe(*UCVXSettings::Get()), TEXT("\n"));
		EXPECT_TRUE(All.Contains(Case.Expected)) << Case.Stored << " should give " << TCHAR_TO_UTF8(Case.Expected);
	}
}

TEST(CVXSettings, TheLastUnbatchedCoderGoesAndTheOthersStay)
{
	FConfigProject Project;
	const std::string Marker = "TEST: Small script (3-5 lines) to test one operation";
	const auto Agent = [&](const std::string& Name, const std::string& Icon) {
		return "+AgentProfiles=(ProfileName=\"" + Name + "\",IconName=\"" + Icon + "\",SystemPrompt=\"" + Marker +
			"\")\n";
	};
	Project.Write(ConfigFile,
		Section + "SettingsVersion=4\n" + Agent("Coder", "first") + Agent("coder", "last") + Agent("My Coder", "own"));
	const UCVXSettings* Settings = UCVXSettings::Get();
	ASSERT_GE(Settings->AgentProfiles.Num(), 2);
	EXPECT_EQ(Settings->AgentProfiles[0].IconName, TEXT("first"));
	EXPECT_EQ(Settings->AgentProfiles[1].IconName, TEXT("own"));
	EXPECT_EQ(Settings->AgentProfiles[1].SystemPrompt, FString(UTF8_TO_TCHAR(Marker.c_str())));
	EXPECT_EQ(Settings->GetAgentProfileNames().Num(), 6);
}

TEST(CVXSettings, ModelsWithoutVisionAreKnownByNameOrLocalServer)
{
	struct FCase
	{
		const TCHAR* Model;
		const TCHAR* Url;
		bool bLacksVision;
	};
	const FCase Cases[] = {
		{TEXT("DeepSeek-chat"), TEXT(""), true},
		{TEXT("O1"), TEXT(""), true},
		{TEXT("O1-preview"), TEXT(""), true},
		{TEXT("vendor/o3-mini-high"), TEXT(""), true},
		{TEXT("Codestral-latest"), TEXT(""), true},
		{TEXT("open-mistral-7b"), TEXT(""), true},
		{TEXT("any"), TEXT("http://LOCALHOST:11434/v1"), true},
		{TEXT("any"), TEXT("http://127.0.0.1:11434/v1"), false},
		{TEXT("o3"), TEXT(""), false},
		{TEXT("gpt-4o1"), TEXT(""), false},
		{TEXT("claude-sonnet-4-6"), TEXT(""), false},
	};
	for (const FCase& Case : Cases)
	{
		FCVXProviderProfile Profile;
		Profile.ModelId = Case.Model;
		Profile.BaseURL = Case.Url;
		EXPECT_EQ(CVXVisionSupport::LacksVision(Profile), Case.bLacksVision) << TCHAR_TO_UTF8(Case.Model);
	}
}

TEST(CVXSettings, AProfileIsFoundByNameElseTheFirstStandsIn)
{
	FConfigProject Project;
	UCVXSettings* Settings = UCVXSettings::Get();
	Settings->ProviderProfiles.SetNum(3);
	Settings->ProviderProfiles[1].ProfileName = TEXT("Local");
	Settings->ProviderProfiles[2].ProfileName = TEXT("local");
	EXPECT_EQ(Settings->FindProviderProfile(TEXT("LOCAL")), &Settings->ProviderProfiles[1]);
	EXPECT_EQ(Settings->FindProviderProfile(TEXT("gone")), &Settings->ProviderProfiles[0]);
	EXPECT_EQ(Settings->FindAgentProfile(TEXT("gone"))->ProfileName, TEXT("Orchestrator"));
	Settings->AgentProfiles.Empty();
	EXPECT_EQ(Settings->FindAgentProfile(TEXT("Coder")), nullptr);
}

TEST(CVXSettings, ADamagedFileStartsWithWhatIsGoodAndLosesNothing)
{
	FConfigProject Project;
	const std::string Stored = Section +
		"SettingsVersion=0\n"
		"MaxAgentTurns=plenty\n"
		"FutureSwitch=True\n"
		"EmbeddingBackend=Quantum\n"
		"+ProviderProfiles=(ProfileName=\"Mine\",ProviderType=Telepathy,ModelId=\"m\",MaxContextTokens=5,Aura=\"x, "
		"y\")\n"
		"+ProviderProfiles=(ProfileName=\"Cut\",Mod\n"
		"+AutoApprovalRules=(ToolName=\"write_file\",bAutoApprove=Flase)\n"
		"ProtectedPaths\n"
		"bShowToolDetails=True\n";
	Project.Write(ConfigFile, Stored);
	const FLogCapture Log;
	const UCVXSettings* Settings = UCVXSettings::Get();
	EXPECT_EQ(Settings->MaxAgentTurns, 100);
	EXPECT_EQ(Settings->EmbeddingBackend, ECVXEmbeddingBackend::Local);
	ASSERT_EQ(Settings->ProviderProfiles.Num(), 1);
	EXPECT_EQ(Settings->ProviderProfiles[0].ModelId, TEXT("m"));
	EXPECT_EQ(Settings->ProviderProfiles[0].ProviderType, ECVXProviderType::Anthropic);
	EXPECT_EQ(Settings->ProviderProfiles[0].MaxContextTokens, 0) << "the migrations have run";
	ASSERT_EQ(Settings->AutoApprovalRules.Num(), 1);
	EXPECT_FALSE(Settings->AutoApprovalRules[0].bAutoApprove) << "a rule that can't be read mustn't approve";
	EXPECT_TRUE(Settings->bShowToolDetails);
	for (const int32 Line : {3, 4, 5, 6, 7, 8, 9})
	{
		EXPECT_GE(Log.Count(FString::Printf(TEXT("DefaultEditor.ini(%d): "), Line), ELogVerbosity::Warning), 1) << Line;
	}
	const std::string Saved = Project.Read(ConfigFile);
	for (const char* Kept : {"MaxAgentTurns=plenty\n", "FutureSwitch=True\n", "EmbeddingBackend=Quantum\n",
			 "ProviderType=Telepathy", "Aura=\"x, y\"", "+ProviderProfiles=(ProfileName=\"Cut\",Mod\n",
			 "bAutoApprove=Flase", "\nProtectedPaths\n", "SettingsVersion=5\n"})
	{
		EXPECT_NE(Saved.find(Kept), std::string::npos) << Kept << " in\n" << Saved;
	}
}

TEST(CVXSettings, ThePageOfEachPropertyIsSound)
{
	FConfigProject Project;
	const UClass* Class = UCVXSettings::StaticClass();
	for (TFieldIterator<FProperty> It(Class, EFieldIteratorFlags::ExcludeSuper); It; ++It)
	{
		const std::string Name = TCHAR_TO_UTF8(*It->GetName());
		EXPECT_TRUE(It->HasAnyPropertyFlags(CPF_Config)) << Name << " wouldn't be saved";
		const FString Condition = It->GetMetaData(TEXT("EditCondition"));
		FString Switch = Condition;
		Condition.Split(TEXT(" "), &Switch, nullptr);
		EXPECT_TRUE(Condition.IsEmpty() || Class->FindPropertyByName(*Switch)) << Name;
		const FString Options = It->GetMetaData(TEXT("GetOptions"));
		EXPECT_TRUE(Options.IsEmpty() || Class->FindFunctionByName(*Options)) << Name;
		if (const FArrayProperty* Array = CastField<FArrayProperty>(*It))
		{
			const FStructProperty* Element = CastField<FStructProperty>(Array->Inner);
			EXPECT_TRUE(!Element || Element->Struct->FindPropertyByName(*It->GetMetaData(TEXT("TitleProperty"))))
				<< Name;
		}
		if (It->HasMetaData(TEXT("ClampMin")))
		{
			const int32 Value = CastField<FIntProperty>(*It)->GetPropertyValue_InContainer(UCVXSettings::Get());
			EXPECT_TRUE(MetaInt(**It, TEXT("ClampMin")) <= MetaInt(**It, TEXT("UIMin")) &&
				MetaInt(**It, TEXT("UIMin")) <= Value && Value <= MetaInt(**It, TEXT("UIMax")) &&
				MetaInt(**It, TEXT("UIMax")) <= MetaInt(**It, TEXT("ClampMax")))
				<< Name;
		}
		const bool bShown = It->GetName() != TEXT("SettingsVersion") && It->GetName() != TEXT("LastActiveTaskId");
		EXPECT_EQ(It->HasAnyPropertyFlags(CPF_Edit), bShown) << Name;
		EXPECT_EQ(It->HasMetaData(TEXT("Category")), bShown) << Name;
	}
}

TEST(CVXSettings, TheKeysFileIsMadeOnceAndItsLinesAreKeys)
{
	const FTempProject Project;
	FCVXApiKeysFile::EnsureTemplate();
	const std::string Template = Project.Read("Saved/CVX/apikeys.cfg");
	EXPECT_EQ(Template.find("# Corvexa — API Keys Configuration\n#\n# Format: "), 0u);
	EXPECT_NE(Template.find("use:\n\n# ANTHROPIC_API_KEY=sk-ant-...\n"), std::string::npos);
	EXPECT_EQ(Template.substr(Template.size() - 4), "...\n");
	EXPECT_TRUE(FCVXApiKeysFile::FindKey(TEXT("ANTHROPIC_API_KEY")).IsEmpty());
	Project.Write("Saved/CVX/apikeys.cfg", "#A_KEY=no\r\n  A_KEY=first=1  \r\nA_KEY=second\r\nB_KEY =  b\n");
	FCVXApiKeysFile::EnsureTemplate();
	EXPECT_EQ(FCVXApiKeysFile::FindKey(TEXT("A_KEY")), TEXT("first=1")) << "an existing file is left alone";
	EXPECT_TRUE(FCVXApiKeysFile::FindKey(TEXT("KEY")).IsEmpty());
}
