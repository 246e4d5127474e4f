#include "Providers/CVXModelTable.h"

namespace
{
enum ESight : bool
{
	Blind,
	Sees
};

/** One model: id, name, preset temperature, output limit, context window, sight. */
struct FModelRow
{
	const TCHAR* ModelId;
	const TCHAR* DisplayName;
	float Temperature;
	int32 MaxTokens;
	int32 MaxContextTokens;
	ESight Sight;
};

const FModelRow AnthropicModels[] = {
	{TEXT("claude-sonnet-4-6"), TEXT("Claude Sonnet 4.6"), 0.7f, 8192, 200000, Sees},
	{TEXT("claude-opus-4-6"), TEXT("Claude Opus 4.6"), 1.0f, 8192, 200000, Sees},
	{TEXT("claude-opus-4-5-20251101"), TEXT("Claude Opus 4.5"), 1.0f, 8192, 200000, Sees},
	{TEXT("claude-sonnet-4-5-20250929"), TEXT("Claude Sonnet 4.5"), 0.7f, 8192, 200000, Sees},
	{TEXT("claude-haiku-4-5-20251001"), TEXT("Claude Haiku 4.5"), 0.5f, 4096, 200000, Sees},
	{TEXT("claude-opus-4-1-20250805"), TEXT("Claude Opus 4.1"), 1.0f, 8192, 200000, Sees},
	{TEXT("claude-sonnet-4-0-20250514"), TEXT("Claude Sonnet 4"), 0.7f, 8192, 200000, Sees},
	{TEXT("claude-sonnet-3-7-20250219"), TEXT("Claude Sonnet 3.7"), 0.7f, 8192, 200000, Sees},
	{TEXT("claude-haiku-3-5-20241022"), TEXT("Claude Haiku 3.5"), 0.5f, 4096, 200000, Sees},
};

const FModelRow OpenAIModels[] = {
	{TEXT("gpt-5.3-codex"), TEXT("GPT-5.3 Codex  (agentic coding)"), 0.7f, 32768, 200000, Sees},
	{TEXT("gpt-5.2"), TEXT("GPT-5.2"), 0.7f, 32768, 200000, Sees},
	{TEXT("gpt-5.2-pro"), TEXT("GPT-5.2 Pro  (smarter)"), 0.7f, 32768, 200000, Sees},
	{TEXT("gpt-5.2-codex"), TEXT("GPT-5.2 Codex  (agentic coding)"), 0.7f, 32768, 200000, Sees},
	{TEXT("gpt-5.1"), TEXT("GPT-5.1"), 0.7f, 32768, 200000, Sees},
	{TEXT("gpt-5.1-codex"), TEXT("GPT-5.1 Codex  (agentic coding)"), 0.7f, 32768, 200000, Sees},
	{TEXT("gpt-5-nano"), TEXT("GPT-5 nano  (fast / cheap)"), 0.7f, 16384, 128000, Sees},
	{TEXT("gpt-4.1"), TEXT("GPT-4.1"), 0.7f, 32768, 1047576, Sees},
	{TEXT("gpt-4.1-mini"), TEXT("GPT-4.1 mini"), 0.7f, 16384, 1047576, Sees},
	{TEXT("gpt-4.1-nano"), TEXT("GPT-4.1 nano"), 0.7f, 16384, 1047576, Sees},
	{TEXT("gpt-4o"), TEXT("GPT-4o"), 0.7f, 16384, 128000, Sees},
	{TEXT("gpt-4o-mini"), TEXT("GPT-4o mini"), 0.7f, 16384, 128000, Sees},
	{TEXT("gpt-4o-search-preview"), TEXT("GPT-4o Search  (web-grounded)"), 0.7f, 16384, 128000, Sees},
	{TEXT("gpt-4o-mini-search-preview"), TEXT("GPT-4o mini Search  (web-grounded)"), 0.7f, 16384, 128000, Sees},
	{TEXT("o4-mini"), TEXT("o4-mini"), 1.0f, 65536, 200000, Sees},
	{TEXT("o3"), TEXT("o3"), 1.0f, 65536, 200000, Sees},
	{TEXT("o3-mini"), TEXT("o3-mini"), 1.0f, 65536, 200000, Blind},
	{TEXT("o1"), TEXT("o1"), 1.0f, 32768, 200000, Blind},
	{TEXT("o1-mini"), TEXT("o1-mini"), 1.0f, 65536, 128000, Blind},
};

const FModelRow GeminiModels[] = {
	{TEXT("gemini-3.1-pro-preview"), TEXT("Gemini 3.1 Pro Preview"), 0.7f, 8192, 1000000, Sees},
	{TEXT("gemini-3.1-flash-preview"), TEXT("Gemini 3.1 Flash Preview"), 0.7f, 8192, 1000000, Sees},
	{TEXT("gemini-3-pro"), TEXT("Gemini 3 Pro"), 0.7f, 8192, 1000000, Sees},
	{TEXT("gemini-3-flash-preview"), TEXT("Gemini 3 Flash Preview"), 0.7f, 8192, 1000000, Sees},
	{TEXT("gemini-2.5-pro"), TEXT("Gemini 2.5 Pro"), 0.7f, 8192, 1000000, Sees},
	{TEXT("gemini-2.5-flash"), TEXT("Gemini 2.5 Flash"), 0.7f, 8192, 1000000, Sees},
	{TEXT("gemini-2.5-flash-lite"), TEXT("Gemini 2.5 Flash Lite"), 0.7f, 8192, 1000000, Sees},
	{TEXT("gemini-2.0-flash"), TEXT("Gemini 2.0 Flash"), 0.7f, 8192, 1000000, Sees},
	{TEXT("gemini-2.0-flash-lite"), TEXT("Gemini 2.0 Flash Lite"), 0.7f, 8192, 1000000, Sees},
	{TEXT("gemini-1.5-pro"), TEXT("Gemini 1.5 Pro"), 0.7f, 8192, 2000000, Sees},
	{TEXT("gemini-1.5-flash"), TEXT("Gemini 1.5 Flash"), 0.7f, 8192, 1000000, Sees},
};

const FModelRow XAIModels[] = {
	{TEXT("grok-4-1-fast-reasoning"), TEXT("Grok 4.1 Fast Reasoning"), 0.7f, 16384, 2000000, Sees},
	{TEXT("grok-4-1-fast-non-reasoning"), TEXT("Grok 4.1 Fast Non-Reasoning"), 0.7f, 16384, 2000000, Sees},
	{TEXT("grok-4-0709"), TEXT("Grok 4"), 0.7f, 16384, 256000, Sees},
	{TEXT("grok-code-fast-1"), TEXT("Grok Code Fast  (coding)"), 0.2f, 16384, 256000, Blind},
	{TEXT("grok-3"), TEXT("Grok 3"), 0.7f, 8192, 131072, Blind},
	{TEXT("grok-3-mini"), TEXT("Grok 3 Mini"), 0.7f, 8192, 131072, Sees},
	{TEXT("grok-2-vision-1212"), TEXT("Grok 2 Vision"), 0.7f, 8192, 32768, Sees},
};

const FModelRow DeepSeekModels[] = {
	{TEXT("deepseek-chat"), TEXT("DeepSeek V3.2  (deepseek-chat)"), 0.7f, 8192, 128000, Blind},
	{TEXT("deepseek-v3.1"), TEXT("DeepSeek V3.1"), 0.7f, 8192, 128000, Blind},
	{TEXT("deepseek-reasoner"), TEXT("DeepSeek R1  (deepseek-reasoner)"), 0.6f, 8192, 128000, Blind},
	{TEXT("deepseek-r1-0528"), TEXT("DeepSeek R1 0528  (latest R1)"), 0.6f, 8192, 128000, Blind},
};

const FModelRow MistralModels[] = {
	{TEXT("mistral-large-latest"), TEXT("Mistral Large 3"), 0.7f, 8192, 256000, Blind},
	{TEXT("mistral-medium-latest"), TEXT("Mistral Medium 3.1"), 0.7f, 8192, 32000, Blind},
	{TEXT("mistral-small-latest"), TEXT("Mistral Small 3.1"), 0.7f, 8192, 131072, Blind},
	{TEXT("pixtral-large-latest"), TEXT("Pixtral Large  (vision)"), 0.7f, 8192, 131072, Sees},
	{TEXT("pixtral-12b-2409"), TEXT("Pixtral 12B  (vision, fast)"), 0.7f, 4096, 128000, Sees},
	{TEXT("codestral-latest"), TEXT("Codestral 2  (code-optimised)"), 0.2f, 8192, 262144, Blind},
	{TEXT("devstral-small-latest"), TEXT("Devstral Small  (agentic coding)"), 0.2f, 8192, 131072, Blind},
	{TEXT("magistral-medium-latest"), TEXT("Magistral Medium  (reasoning)"), 0.7f, 16384, 40000, Blind},
	{TEXT("magistral-small-latest"), TEXT("Magistral Small  (reasoning)"), 0.7f, 16384, 40000, Blind},
	{TEXT("ministral-8b-latest"), TEXT("Ministral 8B  (edge)"), 0.7f, 4096, 128000, Blind},
	{TEXT("ministral-3b-latest"), TEXT("Ministral 3B  (edge)"), 0.7f, 4096, 128000, Blind},
	{TEXT("open-mistral-nemo"), TEXT("Mistral Nemo  (fast / cheap)"), 0.7f, 4096, 131072, Blind},
};

const FModelRow GroqModels[] = {
	{TEXT("llama-3.3-70b-versatile"), TEXT("Llama 3.3 70B"), 0.7f, 8192, 128000, Blind},
	{TEXT("llama-3.1-8b-instant"), TEXT("Llama 3.1 8B  (ultra-fast)"), 0.7f, 8192, 128000, Blind},
	{TEXT("openai/gpt-oss-120b"), TEXT("GPT-OSS 120B"), 0.7f, 16384, 131072, Blind},
	{TEXT("openai/gpt-oss-20b"), TEXT("GPT-OSS 20B  (fast)"), 0.7f, 16384, 131072, Blind},
	{TEXT("meta-llama/llama-4-maverick-17b-128e-instruct"), TEXT("Llama 4 Maverick 17B"), 0.7f, 8192, 131072, Blind},
	{TEXT("meta-llama/llama-4-scout-17b-16e-instruct"), TEXT("Llama 4 Scout 17B"), 0.7f, 8192, 131072, Blind},
	{TEXT("qwen/qwen-3-32b"), TEXT("Qwen 3 32B"), 0.7f, 8192, 131072, Blind},
	{TEXT("moonshotai/kimi-k2-instruct-0905"), TEXT("Kimi K2"), 0.7f, 8192, 131072, Blind},
	{TEXT("deepseek-r1-distill-llama-70b"), TEXT("DeepSeek R1 Distill Llama 70B"), 0.6f, 8192, 128000, Blind},
	{TEXT("gemma2-9b-it"), TEXT("Gemma 2 9B"), 0.7f, 4096, 8192, Blind},
};

const FModelRow OpenRouterModels[] = {
	{TEXT("anthropic/claude-sonnet-4-6"), TEXT("Claude Sonnet 4.6"), 0.7f, 8192, 200000, Sees},
	{TEXT("anthropic/claude-opus-4-6"), TEXT("Claude Opus 4.6"), 1.0f, 8192, 200000, Sees},
	{TEXT("anthropic/claude-sonnet-4-5"), TEXT("Claude Sonnet 4.5"), 0.7f, 8192, 200000, Sees},
	{TEXT("anthropic/claude-haiku-4-5"), TEXT("Claude Haiku 4.5"), 0.5f, 4096, 200000, Sees},
	{TEXT("openai/gpt-4.1"), TEXT("GPT-4.1"), 0.7f, 32768, 1047576, Sees},
	{TEXT("openai/gpt-4.1-mini"), TEXT("GPT-4.1 mini"), 0.7f, 16384, 1047576, Sees},
	{TEXT("openai/gpt-4o"), TEXT("GPT-4o"), 0.7f, 16384, 128000, Sees},
	{TEXT("openai/o4-mini"), TEXT("o4-mini"), 1.0f, 65536, 200000, Sees},
	{TEXT("openai/o3"), TEXT("o3"), 1.0f, 65536, 200000, Sees},
	{TEXT("google/gemini-2.5-pro"), TEXT("Gemini 2.5 Pro"), 0.7f, 8192, 1000000, Sees},
	{TEXT("google/gemini-2.5-flash"), TEXT("Gemini 2.5 Flash"), 0.7f, 8192, 1000000, Sees},
	{TEXT("x-ai/grok-4-0709"), TEXT("Grok 4"), 0.7f, 16384, 256000, Sees},
	{TEXT("x-ai/grok-3"), TEXT("Grok 3"), 0.7f, 8192, 131072, Sees},
	{TEXT("deepseek/deepseek-chat"), TEXT("DeepSeek V3"), 0.7f, 8192, 128000, Blind},
	{TEXT("deepseek/deepseek-r1"), TEXT("DeepSeek R1"), 0.6f, 8192, 128000, Blind},
	{TEXT("meta-llama/llama-4-maverick"), TEXT("Llama 4 Maverick"), 0.7f, 8192, 1048576, Blind},
	{TEXT("meta-llama/llama-3.3-70b-instruct"), TEXT("Llama 3.3 70B Instruct"), 0.7f, 4096, 128000, Blind},
	{TEXT("mistralai/mistral-large"), TEXT("Mistral Large"), 0.7f, 8192, 256000, Blind},
	{TEXT("mistralai/codestral"), TEXT("Codestral"), 0.2f, 8192, 262144, Blind},
	{TEXT("deepseek/deepseek-v3.1"), TEXT("DeepSeek V3.1"), 0.7f, 8192, 128000, Blind},
	{TEXT("deepseek/deepseek-r1-0528"), TEXT("DeepSeek R1 0528"), 0.6f, 8192, 128000, Blind},
	{TEXT("qwen/qwen-3-235b-a22b"), TEXT("Qwen 3 235B"), 0.7f, 8192, 131072, Blind},
	{TEXT("qwen/qwen-3-32b"), TEXT("Qwen 3 32B"), 0.7f, 8192, 131072, Blind},
	{TEXT("qwen/qwen-3-coder-plus"), TEXT("Qwen 3 Coder Plus"), 0.2f, 8192, 131072, Blind},
	{TEXT("moonshotai/kimi-k2"), TEXT("Kimi K2"), 0.7f, 8192, 131072, Blind},
	{TEXT("google/gemma-3-27b-it:free"), TEXT("Gemma 3 27B (Free)"), 0.7f, 8192, 96000, Blind},
	{TEXT("cohere/command-r-plus"), TEXT("Command R+"), 0.7f, 4096, 128000, Blind},
	{TEXT("cohere/command-r"), TEXT("Command R"), 0.7f, 4096, 128000, Blind},
	{TEXT("nvidia/llama-3.1-nemotron-70b-instruct"), TEXT("Nemotron 70B Instruct"), 0.7f, 4096, 128000, Blind},
};

void AddModels(TArray<FCVXModelEntry>& Models, const TCHAR* ProviderId, TConstArrayView<FModelRow> Rows)
{
	for (const FModelRow& Row : Rows)
	{
		FCVXModelEntry& Model = Models.AddDefaulted_GetRef();
		Model.ModelId = Row.ModelId;
		Model.DisplayName = Row.DisplayName;
		Model.ProviderId = ProviderId;
		Model.Temperature = Row.Temperature;
		Model.MaxTokens = Row.MaxTokens;
		Model.MaxContextTokens = Row.MaxContextTokens;
		Model.bSupportsVision = Row.Sight == Sees;
	}
}
} // namespace

TArray<FCVXModelEntry> CVXModelTable::Build()
{
	TArray<FCVXModelEntry> Models;
	AddModels(Models, TEXT("anthropic"), AnthropicModels);
	AddModels(Models, TEXT("openai"), OpenAIModels);
	AddModels(Models, TEXT("gemini"), GeminiModels);
	AddModels(Models, TEXT("xai"), XAIModels);
	AddModels(Models, TEXT("deepseek"), DeepSeekModels);
	AddModels(Models, TEXT("mistral"), MistralModels);
	AddModels(Models, TEXT("groq"), GroqModels);
	AddModels(Models, TEXT("openrouter"), OpenRouterModels);
	return Models;
}
