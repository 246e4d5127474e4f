#pragma once

#include "Core/CVXTypes.h"

/**
 * A mechanical summary of the messages that a request leaves out: what was asked, called, written and found. It takes
 * them one by one and keeps of each what it may show, so that a conversation that grows is summarised without being
 * read again.
 */
class FCVXContextSummary
{
public:
	/** Takes the message that comes next. Those of role `System` count for nothing. */
	void Add(const FCVXMessage& Message);

	/** Messages taken so far, system messages aside. */
	int32 GetMessageCount() const { return MessageCount; }

	/** @param MaxTokens the length, as `FCVXContextManager` estimates it, from which on the text is cut. */
	FString Write(int32 MaxTokens) const;

private:
	/** The last few of many lines. */
	class FLastLines
	{
	public:
		explicit FLastLines(int32 InMaxLines)
			: MaxLines(InMaxLines)
		{
		}

		/** Takes the beginning of a text. Its memory is that of the line it takes the place of. */
		void Add(FStringView Text, int32 MaxChars);
		/** The lines under a heading; nothing when there are none. @param EarlierNoun what a last line counts the older
		 * ones as; null leaves it out. */
		FString Format(const TCHAR* Heading, const TCHAR* EarlierNoun) const;

	private:
		int32 MaxLines;
		/** The line of the n-th Add stands at n modulo MaxLines. */
		TArray<FString> Lines;
		int32 Total = 0;
	};

	void AddCall(const FCVXContentBlock& Block);
	void AddResult(const FCVXContentBlock& Block);
	FString FormatTools() const;

	int32 MessageCount = 0;
	FLastLines Requests{5};
	FLastLines Actions{3};
	FLastLines Files{20};
	TSet<FString> KnownFiles;
	TMap<FString, int32> ToolCounts;
	int32 TotalCalls = 0;
	/** The lines of all results kept, ready for the text. */
	FString Results;
};
