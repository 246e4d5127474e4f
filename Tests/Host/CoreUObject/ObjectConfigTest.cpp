#include "Host/CoreUObject/Fixtures/TestSettings.h"
#include "UObject/ObjectConfigStore.h"
#include "UObject/UObjectGlobals.h"

#include <gtest/gtest.h>

namespace
{
/** Keeps the values in memory, under `File|Section|Key`. */
class FMemoryStore : public IObjectConfigStore
{
public:
	FMemoryStore() { IObjectConfigStore::Set(this); }
	~FMemoryStore() override
	{
		ShutdownUObjects();
		IObjectConfigStore::Set(nullptr);
	}

	FString GetFile(const FString& ConfigName) const override { return ConfigName; }
	FString GetDefaultFile(const FString& ConfigName) const override { return TEXT("Default") + ConfigName; }
	bool GetValues(
		const FString& File, const FString& Section, const FString& Key, TArray<FString>& OutValues) const override
	{
		const TArray<FString>* Found = Values.Find(File + TEXT("|") + Section + TEXT("|") + Key);
		OutValues = Found ? *Found : TArray<FString>();
		return Found != nullptr;
	}
	void SetValues(
		const FString& File, const FString& Section, const FString& Key, const TArray<FString>& InValues) override
	{
		Values.Add(File + TEXT("|") + Section + TEXT("|") + Key, InValues);
	}
	bool Flush(const FString& File) override
	{
		Flushed.Add(File);
		return true;
	}

	TMap<FString, TArray<FString>> Values;
	TArray<FString> Flushed;
};

const FString Section = TEXT("/Script/ReflectionTests.TestSettings");

TEST(ObjectConfig, DefaultsHoldTheConfigBeforeTheirLastHookAndNewObjectsTakeIt)
{
	FMemoryStore Store;
	Store.SetValues(TEXT("Game"), Section, TEXT("Count"), {TEXT("12")});
	Store.SetValues(TEXT("Game"), Section, TEXT("Names"), {TEXT("a,b"), TEXT("c")});
	Store.SetValues(TEXT("Game"), Section, TEXT("Meals"), {TEXT("(Food=\"hay\",Unknown=1)"), TEXT("(Amount=4)")});
	Store.SetValues(TEXT("Game"), Section, TEXT("Mood"), {TEXT("Nonsense")});
	Store.SetValues(TEXT("Game"), Section, TEXT("NotSaved"), {TEXT("9")});
	const UTestSettings* Settings = GetDefault<UTestSettings>();
	EXPECT_EQ(Settings->CountAtInit, 12);
	ASSERT_EQ(Settings->Names.Num(), 2);
	EXPECT_EQ(Settings->Names[0], TEXT("a,b"));
	ASSERT_EQ(Settings->Meals.Num(), 2);
	EXPECT_EQ(Settings->Meals[0].Food, TEXT("hay"));
	EXPECT_EQ(Settings->Meals[1].Amount, 4);
	EXPECT_EQ(Settings->Mood, EMood::Calm) << "a value that can't be read leaves the default";
	EXPECT_EQ(Settings->NotSaved, 1) << "a property without Config is none of the config's business";
	EXPECT_EQ(NewObject<UTestSettings>()->Count, 12);
}

TEST(ObjectConfig, SavedSettingsReadBackTheSame)
{
	FMemoryStore Store;
	UTestSettings* Settings = GetMutableDefault<UTestSettings>();
	Settings->Count = 5;
	Settings->Text = TEXT("line\nbreak");
	Settings->Names = {TEXT("(one"), TEXT("")};
	Settings->Meals.SetNum(2);
	Settings->Meals[1].Tags = {TEXT("x")};
	Settings->SaveConfig(CPF_Config, *Settings->GetDefaultConfigFilename());
	EXPECT_TRUE(Store.Flushed.Contains(TEXT("DefaultGame")));
	EXPECT_FALSE(Store.Values.Contains(TEXT("DefaultGame|") + Section + TEXT("|NotSaved")));
	UTestSettings* Fresh = NewObject<UTestSettings>();
	Fresh->Count = 0;
	Fresh->Names.Empty();
	Fresh->Meals.Empty();
	Fresh->LoadConfig(nullptr, TEXT("DefaultGame"));
	EXPECT_EQ(Fresh->Count, 5);
	EXPECT_EQ(Fresh->Text, TEXT("line\nbreak"));
	EXPECT_EQ(Fresh->Names, Settings->Names);
	ASSERT_EQ(Fresh->Meals.Num(), 2);
	EXPECT_EQ(Fresh->Meals[1].Tags, Settings->Meals[1].Tags);
}

TEST(ObjectConfig, OnePropertyIsUpdatedAloneAndTheOthersStayOut)
{
	FMemoryStore Store;
	UTestSettings* Settings = GetMutableDefault<UTestSettings>();
	Settings->Count = 8;
	Settings->UpdateSinglePropertyInConfigFile(
		Settings->GetClass()->FindPropertyByName(TEXT("Count")), Settings->GetDefaultConfigFilename());
	EXPECT_EQ(Store.Values.Num(), 1);
	EXPECT_EQ(Store.Values.FindRef(TEXT("DefaultGame|") + Section + TEXT("|Count")), TArray<FString>{TEXT("8")});
}
} // namespace
