#pragma once

#include "Core/CVXProfiles.h"
#include "Launch/Demo/DemoRequest.h"

#include <string>
#include <vector>

class FJsonObject;

/** A vendor's wire format, as the demo model speaks it. Holds nothing; any thread. */
class IDemoDialect
{
public:
	virtual ~IDemoDialect() = default;

	/** By which the command line chooses it. */
	virtual const TCHAR* GetName() const = 0;
	/** The plug-in's provider that speaks it. */
	virtual ECVXProviderType GetProviderType() const = 0;
	/** What a profile's base URL holds behind the host. */
	virtual const char* GetBasePath() const = 0;
	/** The path of its requests. */
	virtual const char* GetPath() const = 0;
	/** @return false when it is no request of this dialect. */
	virtual bool ReadRequest(const FJsonObject& Root, FDemoRequest& OutRequest) const = 0;
	/** The events of the answer's stream, each with its empty line, in pieces as small as words. */
	virtual std::vector<std::string> WriteAnswer(const FDemoRequest& Request, const FDemoAnswer& Answer) const = 0;
};

/** All of them; the first is the usual one. */
TArrayView<const IDemoDialect* const> GetDemoDialects();
/** Ignores case. @return null when there is none. */
const IDemoDialect* FindDemoDialect(const FString& Name);
