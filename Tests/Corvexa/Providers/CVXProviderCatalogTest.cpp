#include "Providers/CVXProviderCatalog.h"

#include "Providers/CVXProviderFactory.h"
#include "Support/HostTypePrinting.h"
#include "Support/LogCapture.h"

#include <gtest/gtest.h>

TEST(CVXProviderCatalog, EveryRowIsUsableAsAProfile)
{
	EXPECT_EQ(FCVXProviderCatalog::GetProviders().Num(), 14);
	TSet<FString> Vendors;
	for (const FCVXProviderEntry& Vendor : FCVXProviderCatalog::GetProviders())
	{
		const bool bListsModels = !Vendor.bIsLocal && Vendor.Id != TEXT("custom");
		EXPECT_FALSE(Vendors.Contains(Vendor.Id)) << TCHAR_TO_UTF8(*Vendor.Id);
		EXPECT_TRUE(Vendor.Id.Equals(Vendor.Id.ToLower()));
		EXPECT_EQ(FCVXProviderCatalog::GetModelsForProvider(Vendor.Id).Num() > 0, bListsModels);
		EXPECT_EQ(Vendor.ApiKeyEnvVar.IsEmpty(), !bListsModels);
		EXPECT_FALSE(Vendor.DefaultBaseURL.EndsWith(TEXT("/")));
		EXPECT_EQ(Vendor.DefaultBaseURL.StartsWith(TEXT("http://localhost:")), Vendor.bIsLocal);
		Vendors.Add(Vendor.Id);
	}
	EXPECT_EQ(FCVXProviderCatalog::GetAllModels().Num(), 101);
	TSet<FString> Models;
	for (const FCVXModelEntry& Model : FCVXProviderCatalog::GetAllModels())
	{
		const FString Name = Model.ProviderId + TEXT(" ") + Model.ModelId;
		EXPECT_TRUE(Vendors.Contains(Model.ProviderId)) << TCHAR_TO_UTF8(*Name);
		EXPECT_FALSE(Models.Contains(Name)) << TCHAR_TO_UTF8(*Name);
		EXPECT_FALSE(Model.DisplayName.IsEmpty()) << TCHAR_TO_UTF8(*Name);
		EXPECT_LE(Model.MaxTokens, Model.MaxContextTokens) << TCHAR_TO_UTF8(*Name);
		EXPECT_TRUE(Model.Temperature > 0.0f && Model.Temperature <= 1.0f) << TCHAR_TO_UTF8(*Name);
		EXPECT_TRUE(Model.bSupportsToolUse);
		Models.Add(Name);
	}
}

TEST(CVXProviderCatalog, AModelIsFoundUnderItsVendorAlone)
{
	const FCVXModelEntry* Model = FCVXProviderCatalog::FindModel(TEXT("OpenRouter"), TEXT("OpenAI/GPT-4o"));
	ASSERT_TRUE(Model);
	EXPECT_EQ(Model->MaxTokens, 16384);
	EXPECT_EQ(Model->MaxContextTokens, 128000);
	EXPECT_FALSE(FCVXProviderCatalog::FindModel(TEXT("openai"), TEXT("openai/gpt-4o")));
	EXPECT_FALSE(FCVXProviderCatalog::FindModel(TEXT("mistral"), TEXT("mistral-large-latest"))->bSupportsVision);
	EXPECT_EQ(FCVXProviderCatalog::GetModelsForProvider(TEXT("GROQ"))[1].ModelId, TEXT("llama-3.1-8b-instant"));
	EXPECT_EQ(FCVXProviderCatalog::FindProvider(TEXT("LMStudio"))->DisplayName, TEXT("LM Studio"));
	EXPECT_FALSE(FCVXProviderCatalog::FindProvider(TEXT("")));
}

TEST(CVXProviderCatalog, AStoredProfileTellsItsVendor)
{
	const struct
	{
		ECVXProviderType Type;
		const TCHAR* BaseURL;
		const TCHAR* ApiKeyEnvVar;
		const TCHAR* Vendor;
	} Cases[] = {
		{ECVXProviderType::Anthropic, TEXT(""), TEXT("anthropic_api_key"), TEXT("anthropic")},
		{ECVXProviderType::Anthropic, TEXT("https://proxy.example"), TEXT("ANTHROPIC_API_KEY"), nullptr},
		{ECVXProviderType::OpenAICompat, TEXT(""), TEXT("OPENAI_API_KEY"), TEXT("openai")},
		{ECVXProviderType::OpenAICompat, TEXT(""), TEXT("XAI_API_KEY"), nullptr},
		{ECVXProviderType::OpenAICompat, TEXT("HTTPS://API.X.AI/v1/more"), TEXT(""), TEXT("xai")},
		{ECVXProviderType::OpenAICompat, TEXT("http://localhost:1234"), TEXT("a key"), TEXT("lmstudio")},
		{ECVXProviderType::OpenAICompat, TEXT("http://localhost:1234/v1/"), TEXT(""), TEXT("lmstudio")},
		{ECVXProviderType::OpenAICompat, TEXT("http://localhost:9999/v1"), TEXT(""), nullptr},
		{ECVXProviderType::OpenRouter, TEXT("https://openrouter.ai/api/v1"), TEXT("OPENROUTER_API_KEY"), nullptr},
	};
	for (const auto& Case : Cases)
	{
		FCVXProviderProfile Profile;
		Profile.ProviderType = Case.Type;
		Profile.BaseURL = Case.BaseURL;
		Profile.ApiKeyEnvVar = Case.ApiKeyEnvVar;
		const FCVXProviderEntry* Vendor = FCVXProviderCatalog::FindProviderForProfile(Profile);
		EXPECT_EQ(Vendor ? Vendor->Id : FString(), FString(Case.Vendor ? Case.Vendor : TEXT("")))
			<< TCHAR_TO_UTF8(Case.BaseURL) << " " << TCHAR_TO_UTF8(Case.ApiKeyEnvVar);
	}
}

TEST(CVXProviderFactory, EveryTypeHasItsDialect)
{
	const FLogCapture Log;
	const std::pair<int32, const TCHAR*> Dialects[] = {
		{0, TEXT("Anthropic")}, {1, TEXT("OpenAI")}, {2, TEXT("Gemini")}, {3, TEXT("OpenAI")}, {4, TEXT("OpenAI")}};
	FCVXProviderProfile Profile;
	for (const auto& [Type, Name] : Dialects)
	{
		Profile.ProviderType = (ECVXProviderType)Type;
		EXPECT_EQ(FCVXProviderFactory::CreateProvider(Profile)->GetProviderName(), Name);
	}
	Profile.ProviderType = (ECVXProviderType)9;
	EXPECT_FALSE(FCVXProviderFactory::CreateProvider(Profile).IsValid());
	EXPECT_EQ(
		Log.Count(TEXT("CVXProviderFactory: Unknown provider type 9 for profile 'Default'"), ELogVerbosity::Error), 1);
}
