#pragma once

#include "Launch/Demo/DemoRequest.h"

#include <string>
#include <vector>

/** A vendor's wire format, as the demo model speaks it. Any thread. */
class IDemoDialect
{
public:
	virtual ~IDemoDialect() = default;

	/** The path of its requests. */
	virtual const char* GetPath() const = 0;
	/** @param Body UTF-8. @return false when it is no request of this dialect. */
	virtual bool ReadRequest(const std::string& Body, FDemoRequest& OutRequest) const = 0;
	/** The events of the answer's stream, each with its empty line, in pieces as small as words. */
	virtual std::vector<std::string> WriteAnswer(const FDemoRequest& Request, const FDemoAnswer& Answer) const = 0;
};
