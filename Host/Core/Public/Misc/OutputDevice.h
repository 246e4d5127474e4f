#pragma once

#include "Logging/LogVerbosity.h"
#include "Misc/FormatString.h"
#include "UObject/NameTypes.h"

/** A place where log messages go. */
class FOutputDevice
{
public:
	virtual ~FOutputDevice() = default;

	/** Takes one message, without a line end. On whatever thread logs, one thread at a time for a device of the log. */
	virtual void Serialize(const TCHAR* Text, ELogVerbosity::Type Verbosity, const FName& Category) = 0;
	virtual void Serialize(const TCHAR* Text, ELogVerbosity::Type Verbosity, const FName& Category, double)
	{
		Serialize(Text, Verbosity, Category);
	}
	virtual void Flush() {}
	/** Lets go of what the device holds; nothing more will be written. */
	virtual void TearDown() {}
	virtual bool CanBeUsedOnAnyThread() const { return false; }
	virtual bool CanBeUsedOnMultipleThreads() const { return false; }

	void Log(const TCHAR* Text);
	void Log(const FString& Text) { Log(*Text); }
	template <typename... ArgTypes>
	void Logf(TCheckedFormat<std::type_identity_t<ArgTypes>...> Format, ArgTypes... Args)
	{
		Log(FString::Printf(Format, Args...));
	}
};

/** A line as log files show it: the category, the verbosity unless it is Log, the text. */
FString FormatLogLine(const TCHAR* Text, ELogVerbosity::Type Verbosity, const FName& Category);
