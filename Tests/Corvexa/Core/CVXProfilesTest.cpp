#include "Core/CVXProfiles.h"

#include "Support/HostTypePrinting.h"
#include "UObject/UnrealType.h"

#include <gtest/gtest.h>

namespace
{
/** "Name=Value" of each property, in the record's order, as configuration files show it. */
template <typename RecordType>
TArray<FString> Describe(const RecordType& Record)
{
	TArray<FString> Lines;
	for (TFieldIterator<FProperty> It(RecordType::StaticStruct()); It; ++It)
	{
		FString Value;
		It->ExportText_InContainer(0, Value, &Record, nullptr, nullptr, PPF_None);
		Lines.Add(It->GetName() + TEXT("=") + Value);
	}
	return Lines;
}

/** Writes the record as text and reads it back. */
template <typename RecordType>
RecordType ThereAndBack(const RecordType& Record)
{
	FString Text;
	RecordType::StaticStruct()->ExportText(Text, &Record, nullptr, nullptr, PPF_None, nullptr);
	RecordType Back;
	const TCHAR* End = RecordType::StaticStruct()->ImportText(*Text, &Back, nullptr, PPF_None, nullptr, TEXT("Record"));
	EXPECT_TRUE(End && !*End) << TCHAR_TO_UTF8(*Text);
	return Back;
}
} // namespace

TEST(CVXProfiles, FreshRecordsHoldTheirDefaultsInOrder)
{
	EXPECT_EQ(Describe(FCVXProviderProfile()),
		(TArray<FString>{TEXT("ProfileName=Default"), TEXT("ProviderType=Anthropic"), TEXT("BaseURL="),
			TEXT("ModelId=claude-sonnet-4-6"), TEXT("ApiKeyEnvVar=ANTHROPIC_API_KEY"), TEXT("Temperature=0.000000"),
			TEXT("MaxTokens=8192"), TEXT("MaxContextTokens=0"), TEXT("bSupportsToolUse=True"),
			TEXT("bSupportsVision=True"), TEXT("TimeoutSeconds=0.000000")}));
	EXPECT_EQ(Describe(FCVXAgentProfile()),
		(TArray<FString>{TEXT("ProfileName=Default Agent"), TEXT("IconName="), TEXT("ProviderProfileName=Default"),
			TEXT("SystemPrompt="), TEXT("AllowedTools=()"), TEXT("DeniedTools=()"), TEXT("bReadOnly=False"),
			TEXT("ApprovalMode=AutoApproveReads"), TEXT("bAutoVisualVerification=False")}));
	EXPECT_EQ(Describe(FCVXMCPServerConfig()),
		(TArray<FString>{
			TEXT("Name=my-server"), TEXT("Command="), TEXT("Args=()"), TEXT("Env=()"), TEXT("bEnabled=True")}));
	EXPECT_EQ(Describe(FCVXAutoApprovalRule()),
		(TArray<FString>{TEXT("ToolName="), TEXT("PathGlob="), TEXT("bAutoApprove=True")}));
}

TEST(CVXProfiles, EveryFieldSurvivesItsTextForm)
{
	FCVXAgentProfile Agent;
	Agent.ProfileName = TEXT("Coder \"two\"");
	Agent.SystemPrompt = TEXT("Line one\nline (two), \\ \"quoted\" — ä😀");
	Agent.AllowedTools = {TEXT("read_file"), TEXT("odd, name)"), TEXT("")};
	Agent.ApprovalMode = ECVXApprovalMode::FullyAutonomous;
	Agent.bReadOnly = true;
	EXPECT_EQ(Describe(ThereAndBack(Agent)), Describe(Agent));

	FCVXProviderProfile Provider;
	Provider.ProviderType = ECVXProviderType::OpenRouter;
	Provider.BaseURL = TEXT("http://127.0.0.1:8080/v1?a=b,c");
	Provider.Temperature = 0.7f;
	Provider.TimeoutSeconds = 1800.0f;
	Provider.bSupportsVision = false;
	EXPECT_EQ(Describe(ThereAndBack(Provider)), Describe(Provider));
	EXPECT_EQ(ThereAndBack(Provider).Temperature, 0.7f);
}

TEST(CVXProfiles, LegacyProtocolsLoadButAreNotOffered)
{
	const UEnum* Types = StaticEnum<ECVXProviderType>();
	for (const TCHAR* Legacy : {TEXT("OpenRouter"), TEXT("Custom")})
	{
		const int32 Index = Types->GetIndexByNameString(Legacy);
		ASSERT_NE(Index, INDEX_NONE);
		EXPECT_TRUE(Types->HasMetaData(TEXT("Hidden"), Index)) << TCHAR_TO_UTF8(Legacy);
	}
	EXPECT_FALSE(Types->HasMetaData(TEXT("Hidden"), Types->GetIndexByNameString(TEXT("Gemini"))));
	EXPECT_EQ(Types->GetDisplayNameTextByIndex(0).ToString(), TEXT("Anthropic  (Claude API)"));
	const FProperty* Timeout = FCVXProviderProfile::StaticStruct()->FindPropertyByName(TEXT("TimeoutSeconds"));
	EXPECT_EQ(Timeout->GetMetaData(TEXT("ClampMax")), TEXT("1800"));
	EXPECT_EQ(Timeout->GetMetaData(TEXT("Category")), TEXT("Provider"));
}
