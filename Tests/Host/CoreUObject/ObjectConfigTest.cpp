#include "Host/CoreUObject/Fixtures/ConfigProject.h"
#include "Host/CoreUObject/Fixtures/TestSettings.h"
#include "Support/LogCapture.h"

#include <gtest/gtest.h>

namespace
{
const FString Section = TEXT("/Script/ReflectionTests.TestSettings");

TEST(ObjectConfig, DefaultsHoldTheConfigBeforeTheirLastHookAndNewObjectsTakeIt)
{
	FConfigProject Project;
	Project.Write("Config/DefaultGame.ini",
		"[/Script/ReflectionTests.TestSettings]\nCount=12\n+Names=a,b\n+Names=c\n"
		"+Meals=(Food=\"hay\",Unknown=1)\n+Meals=(Amount=4)\nMood=Nonsense\nNotSaved=9\n");
	Project.Write("Saved/Config/Game.ini", "[/Script/ReflectionTests.TestSettings]\nText=mine\n");
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
	EXPECT_EQ(Project.Read("Config/DefaultGame.ini").find("NotSaved"), std::string::npos);
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
	const FString Text(UTF8_TO_TCHAR(Project.Read("Config/DefaultGame.ini").c_str()));
	EXPECT_TRUE(Text.Contains(Section) && Text.Contains(TEXT("Count=8"))) << TCHAR_TO_UTF8(*Text);
	EXPECT_FALSE(Text.Contains(TEXT("Names")) || Text.Contains(TEXT("Mood"))) << TCHAR_TO_UTF8(*Text);
}

TEST(ObjectConfig, WhatIsGoodOfADamagedFileLoadsAndWhatIsNotOutlivesASave)
{
	FConfigProject Project;
	const std::string Damaged = "; by hand\n"
								"[/Script/ReflectionTests.TestSettings]\n"
								"Count=many\n"
								"NewSetting=(a,b)\n"
								"+Meals=(Food=\"hay\",Amount=2,Spice=\"salt, (much)\")\n"
								"+Meals=(Food=\"cut off\",Amou\n"
								"+Meals=(Food=\"oats\",Amount=lots)\n"
								"Mood=Nonsense\n"
								"Text = kept\n";
	Project.Write("Config/DefaultGame.ini", Damaged);
	const FLogCapture Log;
	UTestSettings* Settings = GetMutableDefault<UTestSettings>();
	EXPECT_EQ(Settings->Count, 3);
	EXPECT_EQ(Settings->Mood, EMood::Calm);
	EXPECT_EQ(Settings->Text, TEXT("kept"));
	ASSERT_EQ(Settings->Meals.Num(), 2) << "a line that ends in the middle is no element";
	EXPECT_EQ(Settings->Meals[0].Amount, 2);
	EXPECT_EQ(Settings->Meals[1].Food, TEXT("oats"));
	for (int32 Line = 3; Line <= 8; ++Line)
	{
		EXPECT_EQ(Log.Count(FString::Printf(TEXT("DefaultGame.ini(%d): "), Line), ELogVerbosity::Warning), 1) << Line;
	}

	const FString File = Settings->GetDefaultConfigFilename();
	Settings->SaveConfig(CPF_Config, *File);
	EXPECT_EQ(Project.Read("Config/DefaultGame.ini"), Damaged) << "nothing has changed";

	Settings->Count = 4;
	Settings->Meals[0].Amount = 5;
	Settings->Meals[1].Food = TEXT("barley");
	Settings->Meals.AddDefaulted_GetRef().Food = TEXT("new");
	Settings->SaveConfig(CPF_Config, *File);
	const std::string Saved = Project.Read("Config/DefaultGame.ini");
	for (const char* Kept : {"; Count=many\n", "\nCount=4\n", "NewSetting=(a,b)\n", "Mood=Nonsense\n", "Text = kept\n",
			 "Amount=5", "Spice=\"salt, (much)\"", "+Meals=(Food=\"cut off\",Amou\n", "\"barley\"", "\"new\""})
	{
		EXPECT_NE(Saved.find(Kept), std::string::npos) << Kept << " in\n" << Saved;
	}
	Project.Restart();
	EXPECT_EQ(GetDefault<UTestSettings>()->Meals.Num(), 3);
	EXPECT_EQ(GetDefault<UTestSettings>()->Count, 4);
}

TEST(ObjectConfig, ASwitchThatCannotBeReadIsOffAndAMemberKeepsItsOddTextUntilItChanges)
{
	FConfigProject Project;
	Project.Write("Config/DefaultGame.ini",
		"[/Script/ReflectionTests.TestSettings]\n+Meals=(Food=\"a\",Amount=4 or so,bFresh=yes please)\n");
	UTestSettings* Settings = GetMutableDefault<UTestSettings>();
	ASSERT_EQ(Settings->Meals.Num(), 1);
	EXPECT_FALSE(Settings->Meals[0].bFresh);
	Settings->Meals[0].Tags = {TEXT("t")};
	Settings->SaveConfig(CPF_Config, *Settings->GetDefaultConfigFilename());
	EXPECT_NE(Project.Read("Config/DefaultGame.ini").find("Amount=4 or so"), std::string::npos);
	EXPECT_NE(Project.Read("Config/DefaultGame.ini").find("bFresh=yes please"), std::string::npos);
	Settings->Meals[0].bFresh = true;
	Settings->SaveConfig(CPF_Config, *Settings->GetDefaultConfigFilename());
	EXPECT_NE(Project.Read("Config/DefaultGame.ini").find("bFresh=True"), std::string::npos);
}

TEST(ObjectConfig, ASaveLeavesAloneWhatAnotherProgramHasChangedSince)
{
	FConfigProject Project;
	UTestSettings* Settings = GetMutableDefault<UTestSettings>();
	const FString File = Settings->GetDefaultConfigFilename();
	Settings->SaveConfig(CPF_Config, *File);
	FConfigCacheIni Other;
	Other.SetString(*Section, TEXT("Text"), TEXT("theirs"), File);
	Other.SetArray(*Section, TEXT("Names"), {TEXT("also theirs")}, File);
	EXPECT_TRUE(Other.Flush(false));
	for (int32 Round = 0; Round < 2; ++Round)
	{
		++Settings->Count;
		Settings->SaveConfig(CPF_Config, *File);
		const std::string Saved = Project.Read("Config/DefaultGame.ini");
		EXPECT_NE(Saved.find("Text=theirs"), std::string::npos) << Round << ": " << Saved;
		EXPECT_NE(Saved.find("+Names=also theirs"), std::string::npos) << Round << ": " << Saved;
	}
	EXPECT_NE(Project.Read("Config/DefaultGame.ini").find("Count=5"), std::string::npos);
}
TEST(ObjectConfig, AListKeepsWhatAnotherProgramHasAddedToItAndLosesWhatItTookAway)
{
	FConfigProject Project;
	UTestSettings* Settings = GetMutableDefault<UTestSettings>();
	const FString File = Settings->GetDefaultConfigFilename();
	const auto Save = [&](const TArray<FString>& Names)
	{
		Settings->Names = Names;
		Settings->SaveConfig(CPF_Config, *File);
	};
	const auto SaveElsewhere = [&](const TArray<FString>& Names)
	{
		FConfigCacheIni Other;
		Other.SetArray(*Section, TEXT("Names"), Names, File);
		EXPECT_TRUE(Other.Flush(false));
	};
	const auto Stored = [&]
	{
		FConfigCacheIni Fresh;
		TArray<FString> Names;
		Fresh.GetArray(*Section, TEXT("Names"), Names, File);
		return Names;
	};
	using FNames = TArray<FString>;
	// At first neither has any.
	Settings->SaveConfig(CPF_Config, *File);
	SaveElsewhere({TEXT("theirs")});
	++Settings->Count;
	Settings->SaveConfig(CPF_Config, *File);
	Save({TEXT("a"), TEXT("b"), TEXT("c")});
	EXPECT_EQ(Stored(), (FNames{TEXT("theirs"), TEXT("a"), TEXT("b"), TEXT("c")}));
	// One changes and the other takes away.
	SaveElsewhere({TEXT("theirs"), TEXT("b"), TEXT("c"), TEXT("more")});
	Save({TEXT("a"), TEXT("B!"), TEXT("c")});
	EXPECT_EQ(Stored(), (FNames{TEXT("theirs"), TEXT("B!"), TEXT("c"), TEXT("more")}));
	Save({TEXT("c"), TEXT("d")});
	EXPECT_EQ(Stored(), (FNames{TEXT("theirs"), TEXT("c"), TEXT("more"), TEXT("d")}));
	Save({});
	EXPECT_EQ(Stored(), (FNames{TEXT("theirs"), TEXT("more")}));
	Project.Restart();
	EXPECT_EQ(GetDefault<UTestSettings>()->Names, (FNames{TEXT("theirs"), TEXT("more")}));
}
} // namespace
