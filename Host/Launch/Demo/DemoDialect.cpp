#include "Launch/Demo/DemoDialect.h"

#include "Launch/Demo/AnthropicDemoDialect.h"
#include "Launch/Demo/GeminiDemoDialect.h"
#include "Launch/Demo/OpenAIDemoDialect.h"

TArrayView<const IDemoDialect* const> GetDemoDialects()
{
	static const FAnthropicDemoDialect Anthropic;
	static const FOpenAIDemoDialect OpenAI;
	static const FGeminiDemoDialect Gemini;
	static const IDemoDialect* const Dialects[] = {&Anthropic, &OpenAI, &Gemini};
	return Dialects;
}

const IDemoDialect* FindDemoDialect(const FString& Name)
{
	for (const IDemoDialect* Dialect : GetDemoDialects())
	{
		if (Name == Dialect->GetName())
		{
			return Dialect;
		}
	}
	return nullptr;
}
