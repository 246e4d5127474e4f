#include "Providers/CVXProviderCatalog.h"

#include "Providers/CVXModelTable.h"

namespace
{
using EType = ECVXProviderType;

TArray<FCVXProviderEntry> BuildProviders()
{
	const auto Compat = EType::OpenAICompat;
	return {
		{TEXT("anthropic"), TEXT("Anthropic"), EType::Anthropic, TEXT(""), TEXT("ANTHROPIC_API_KEY")},
		{TEXT("openai"), TEXT("OpenAI"), Compat, TEXT(""), TEXT("OPENAI_API_KEY")},
		{TEXT("gemini"), TEXT("Google Gemini"), EType::Gemini, TEXT(""), TEXT("GEMINI_API_KEY")},
		{TEXT("xai"), TEXT("xAI / Grok"), Compat, TEXT("https://api.x.ai/v1"), TEXT("XAI_API_KEY")},
		{TEXT("deepseek"), TEXT("DeepSeek"), Compat, TEXT("https://api.deepseek.com/v1"), TEXT("DEEPSEEK_API_KEY")},
		{TEXT("mistral"), TEXT("Mistral AI"), Compat, TEXT("https://api.mistral.ai/v1"), TEXT("MISTRAL_API_KEY")},
		{TEXT("groq"), TEXT("Groq"), Compat, TEXT("https://api.groq.com/openai/v1"), TEXT("GROQ_API_KEY")},
		{TEXT("openrouter"), TEXT("OpenRouter"), Compat, TEXT("https://openrouter.ai/api/v1"),
			TEXT("OPENROUTER_API_KEY")},
		{TEXT("ollama"), TEXT("Ollama"), Compat, TEXT("http://localhost:11434/v1"), TEXT(""), true},
		{TEXT("lmstudio"), TEXT("LM Studio"), Compat, TEXT("http://localhost:1234/v1"), TEXT(""), true},
		{TEXT("llamacpp"), TEXT("llama.cpp"), Compat, TEXT("http://localhost:8080/v1"), TEXT(""), true},
		{TEXT("jan"), TEXT("Jan"), Compat, TEXT("http://localhost:1337/v1"), TEXT(""), true},
		{TEXT("koboldcpp"), TEXT("KoboldCPP"), Compat, TEXT("http://localhost:5001/v1"), TEXT(""), true},
		{TEXT("custom"), TEXT("Custom"), Compat, TEXT(""), TEXT("")},
	};
}

/** A URL may have been stored with less of its path, or with more. */
bool MatchesURL(const FString& Stored, const FString& Default)
{
	return !Stored.IsEmpty() && (Stored.Contains(Default) || Default.Contains(Stored));
}

bool Matches(const FCVXProviderEntry& Entry, const FCVXProviderProfile& Profile)
{
	if (Entry.Id == TEXTVIEW("custom") || Entry.ProviderType != Profile.ProviderType)
	{
		return false;
	}
	if (!Entry.DefaultBaseURL.IsEmpty())
	{
		return MatchesURL(Profile.BaseURL, Entry.DefaultBaseURL);
	}
	return Profile.BaseURL.IsEmpty() && Profile.ApiKeyEnvVar == Entry.ApiKeyEnvVar;
}
} // namespace

const TArray<FCVXProviderEntry>& FCVXProviderCatalog::GetProviders()
{
	static const TArray<FCVXProviderEntry> Providers = BuildProviders();
	return Providers;
}

const TArray<FCVXModelEntry>& FCVXProviderCatalog::GetAllModels()
{
	static const TArray<FCVXModelEntry> Models = CVXModelTable::Build();
	return Models;
}

const FCVXProviderEntry* FCVXProviderCatalog::FindProvider(const FString& Id)
{
	return GetProviders().FindByPredicate([&Id](const FCVXProviderEntry& Entry) { return Entry.Id == Id; });
}

const FCVXModelEntry* FCVXProviderCatalog::FindModel(const FString& ProviderId, const FString& ModelId)
{
	return GetAllModels().FindByPredicate(
		[&](const FCVXModelEntry& Model) { return Model.ProviderId == ProviderId && Model.ModelId == ModelId; });
}

TArray<FCVXModelEntry> FCVXProviderCatalog::GetModelsForProvider(const FString& ProviderId)
{
	return GetAllModels().FilterByPredicate(
		[&ProviderId](const FCVXModelEntry& Model) { return Model.ProviderId == ProviderId; });
}

const FCVXProviderEntry* FCVXProviderCatalog::FindProviderForProfile(const FCVXProviderProfile& Profile)
{
	return GetProviders().FindByPredicate(
		[&Profile](const FCVXProviderEntry& Entry) { return Matches(Entry, Profile); });
}
