#pragma once

#include "Launch/Demo/DemoDialect.h"

/** OpenAI's chat completions with streaming, which most vendors and local servers speak too. */
class FOpenAIDemoDialect final : public IDemoDialect
{
public:
	const TCHAR* GetName() const override { return TEXT("demo-openai"); }
	ECVXProviderType GetProviderType() const override { return ECVXProviderType::OpenAICompat; }
	const char* GetBasePath() const override { return "/v1"; }
	const char* GetPath() const override { return "/v1/chat/completions"; }
	bool ReadRequest(const FJsonObject& Root, FDemoRequest& OutRequest) const override;
	std::vector<std::string> WriteAnswer(const FDemoRequest& Request, const FDemoAnswer& Answer) const override;
};
