#pragma once

#include "Launch/Demo/DemoDialect.h"

/** Gemini's generated content with streaming. It has no ids of calls, and no place for reasoning. */
class FGeminiDemoDialect final : public IDemoDialect
{
public:
	const TCHAR* GetName() const override { return TEXT("demo-gemini"); }
	ECVXProviderType GetProviderType() const override { return ECVXProviderType::Gemini; }
	const char* GetBasePath() const override { return "/v1beta"; }
	const char* GetPath() const override { return "/v1beta/models/demo:streamGenerateContent"; }
	bool ReadRequest(const FJsonObject& Root, FDemoRequest& OutRequest) const override;
	std::vector<std::string> WriteAnswer(const FDemoRequest& Request, const FDemoAnswer& Answer) const override;
};
