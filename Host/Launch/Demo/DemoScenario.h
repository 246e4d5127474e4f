#pragma once

#include "Launch/Demo/DemoRequest.h"
#include "Misc/Optional.h"
#include "Templates/SharedPointer.h"

class FJsonObject;

/**
 * What the demo model does in one kind of conversation: rules, of which the first that fits a request answers it. A
 * file of `Scenarios` holds
 *
 * - "offered" and "not_offered": tools that a request must offer, and mustn't, for the scenario to be played;
 * - "asks": a pattern that the user's question must match for it, if there is one;
 * - "rules": objects with what must hold, in "when", and what is said, in "think", "say" and "call".
 *
 * "when" takes "called" and "not_called" (tools that the conversation has or hasn't called since the question),
 * "offered" and "not_offered", "last" (the tool of the last call), "failed" (whether that failed), "note" (a pattern
 * that the agent's last remark must match), "goes_on" (whether the user has asked to go on), "times" ({tool: the most
 * calls so far}) and "results": {tool: pattern} that the last result of each tool must match.
 *
 * "let" names pieces of the conversation for the texts: {name: {"result_of": tool, "pattern": P}} takes the first group
 * of the first match, or all of the result without a pattern, and {"replace": [from, to]} changes one place in it.
 * {"question": true} is what the user asked. Texts hold them as {{name}}. A name that finds nothing makes the rule not
 * fit.
 *
 * "call" is {"tool": name, "arguments": {...}}.
 */
class FDemoScenario
{
public:
	/** @param OutError why the text is no scenario. @return null then. */
	static TSharedPtr<FDemoScenario> Parse(const FString& Json, FString& OutError);

	/** Whether it is meant for such a request. */
	bool IsFor(const FDemoRequest& Request) const;
	/** @return nothing when no rule fits. */
	TOptional<FDemoAnswer> Play(const FDemoRequest& Request) const;

private:
	TArray<FString> Offered;
	TArray<FString> NotOffered;
	FString Asks;
	TArray<TSharedPtr<FJsonObject>> Rules;
};
