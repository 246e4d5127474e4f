#pragma once

#include "Core/CVXProfiles.h"
#include "Core/CVXTypes.h"
#include "Tools/CVXApprovalRequest.h"

/**
 * Something that the agent can do to the outside world. Built-in tools hold no state of their own. Arguments are the
 * JSON text as the model wrote it and may be anything; a tool that can't use them says so in an error result.
 */
class ICVXTool
{
public:
	virtual ~ICVXTool() = default;

	/** The name on the wire. */
	virtual FString GetName() const = 0;

	/** What the model reads about the tool. */
	virtual FString GetDescription() const = 0;

	/** The JSON Schema object of the arguments, as text. */
	virtual FString GetInputSchemaJson() const = 0;

	/** Does the work. Game thread, and any thread when `IsThreadSafe`. @param Profile of the agent that calls. */
	virtual FCVXToolExecutionResult Execute(const FString& ArgumentsJson, const FCVXAgentProfile& Profile) = 0;

	/** What is asked before the call runs. The executor sets the id and both flags itself. Game thread. */
	virtual FCVXApprovalRequest BuildApprovalRequest(const FString& ArgumentsJson) const;

	/** Whether it changes nothing; results of such calls are kept for a while. */
	virtual bool IsReadOnly() const { return false; }

	/** Whether it can destroy work; the person who is asked is told so. */
	virtual bool IsDestructive() const { return false; }

	/** Whether it touches neither objects nor widgets of the editor, so that a pool thread may run it. */
	virtual bool IsThreadSafe() const { return false; }

	/** The label in the chat. By default the name with blanks, each word with a capital. */
	virtual FString GetDisplayName() const;

	/**
	 * What the call works on, for the label in the chat. By default the first of the usual fields that holds a text;
	 * empty when there is none.
	 */
	virtual FString GetDisplaySubject(const FString& ArgumentsJson) const;

	/** The display form of a tool's bare name: "read_file" gives "Read File". */
	static FString PrettifyName(const FString& Name);
};
