#pragma once

#include "Launch/Demo/DemoDialect.h"

/** Anthropic's messages with streaming. */
class FAnthropicDemoDialect final : public IDemoDialect
{
public:
	const TCHAR* GetName() const override { return TEXT("demo"); }
	ECVXProviderType GetProviderType() const override { return ECVXProviderType::Anthropic; }
	const char* GetBasePath() const override { return ""; }
	const char* GetPath() const override { return "/v1/messages"; }
	bool ReadRequest(const FJsonObject& Root, FDemoRequest& OutRequest) const override;
	std::vector<std::string> WriteAnswer(const FDemoRequest& Request, const FDemoAnswer& Answer) const override;
};
