#pragma once

#include "Launch/Demo/DemoDialect.h"

/** Anthropic's messages with streaming. */
class FAnthropicDemoDialect final : public IDemoDialect
{
public:
	const char* GetPath() const override { return "/v1/messages"; }
	bool ReadRequest(const std::string& Body, FDemoRequest& OutRequest) const override;
	std::vector<std::string> WriteAnswer(const FDemoRequest& Request, const FDemoAnswer& Answer) const override;
};
