#include "Host/CoreUObject/Fixtures/TestSettings.h"
#include "Misc/ConfigCacheIni.h"
#include "Misc/FileHelper.h"
#include "Support/TempProject.h"
#include "UObject/UObjectGlobals.h"

#include <gtest/gtest.h>

namespace
{
/** A project of its own with a config that reads its files. */
class FConfigProject
{
public:
	FConfigProject() { GConfig = &Config; }
	~FConfigProject()
	{
		ShutdownUObjects();
		GConfig = nullptr;
	}

	void Write(const std::string& File, const FString& Text) const
	{
		EXPECT_TRUE(FFileHelper::SaveStringToFile(Text, *Project.Path(File)));
	}
	FString Read(const std::string& File) const
	{
		FString Text;
		EXPECT_TRUE(FFileHelper::LoadFileToString(Text, *Project.Path(File)));
		return Text;
	}

private:
	FTempProject Project;
	FConfigCacheIni Config;
};

const FString Section = TEXT("/Script/ReflectionTests.TestSettings");

TEST(ObjectConfig, DefaultsHoldTheConfigBeforeTheirLastHookAndNewObjectsTakeIt)
{
	FConfigProject Project;
	Project.Write("Config/DefaultGame.ini",
		TEXT("[/Script/ReflectionTests.TestSettings]\nCount=12\n+Names=a,b\n+Names=c\n")
			TEXT("+Meals=(Food=\"hay\",Unknown=1)\n+Meals=(Amount=4)\nMood=Nonsense\nNotSaved=9\n"));
	Project.Write("Saved/Config/Game.ini", TEXT("[/Script/ReflectionTests.TestSettings]\nText=mine\n"));
	const UTestSettings* Settings = GetDefault<UTestSettings>();
	EXPECT_EQ(Settings->CountAtInit, 12);
	ASSERT_EQ(Settings->Names.Num(), 2);
	EXPECT_EQ(Settings->Names[0], TEXT("a,b"));
	ASSERT_EQ(Settings->Meals.Num(), 2);
	EXPECT_EQ(Settings->Meals[0].Food, TEXT("hay"));
	EXPECT_EQ(Settings->Meals[1].Amount, 4);
	EXPECT_EQ(Settings->Mood, EMood::Calm) << "a value that can't be read leaves the default";
	EXPECT_EQ(Settings->NotSaved, 1) << "a property without Config is none of the config's business";
	EXPECT_EQ(Settings->Text, TEXT("mine")) << "the user's own file goes before the project's";
	EXPECT_EQ(NewObject<UTestSettings>()->Count, 12);
}

TEST(ObjectConfig, SavedSettingsReadBackTheSame)
{
	FConfigProject Project;
	UTestSettings* Settings = GetMutableDefault<UTestSettings>();
	Settings->Count = 5;
	Settings->Text = TEXT("line\nbreak");
	Settings->Names = {TEXT("(one"), TEXT("")};
	Settings->Meals.SetNum(2);
	Settings->Meals[1].Tags = {TEXT("x")};
	Settings->SaveConfig(CPF_Config, *Settings->GetDefaultConfigFilename());
	EXPECT_FALSE(Project.Read("Config/DefaultGame.ini").Contains(TEXT("NotSaved")));
	GConfig->UnloadFile(Settings->GetDefaultConfigFilename());
	UTestSettings* Fresh = NewObject<UTestSettings>();
	Fresh->Count = 0;
	Fresh->Names.Empty();
	Fresh->Meals.Empty();
	Fresh->LoadConfig(nullptr, *Settings->GetDefaultConfigFilename());
	EXPECT_EQ(Fresh->Count, 5);
	EXPECT_EQ(Fresh->Text, TEXT("line\nbreak"));
	EXPECT_EQ(Fresh->Names, Settings->Names);
	ASSERT_EQ(Fresh->Meals.Num(), 2);
	EXPECT_EQ(Fresh->Meals[1].Tags, Settings->Meals[1].Tags);
}

TEST(ObjectConfig, OnePropertyIsUpdatedAloneAndTheOthersStayOut)
{
	FConfigProject Project;
	UTestSettings* Settings = GetMutableDefault<UTestSettings>();
	Settings->Count = 8;
	Settings->UpdateSinglePropertyInConfigFile(
		Settings->GetClass()->FindPropertyByName(TEXT("Count")), Settings->GetDefaultConfigFilename());
	const FString Text = Project.Read("Config/DefaultGame.ini");
	EXPECT_TRUE(Text.Contains(Section) && Text.Contains(TEXT("Count=8"))) << TCHAR_TO_UTF8(*Text);
	EXPECT_FALSE(Text.Contains(TEXT("Names")) || Text.Contains(TEXT("Mood"))) << TCHAR_TO_UTF8(*Text);
}
} // namespace
