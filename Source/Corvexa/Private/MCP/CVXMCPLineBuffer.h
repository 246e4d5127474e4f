#pragma once

#include "Containers/UnrealString.h"

/** Cuts what a server writes into lines, wherever the parts it comes in begin and end. One thread at a time. */
class FCVXMCPLineBuffer
{
public:
	/** Characters without a line end that are held at most; as soon as there are more, they are taken for a line. */
	static constexpr int32 MaxLineLength = 16 * 1024 * 1024;

	void Append(const FString& Part);

	/** Takes the next line out, without blanks at its ends. Empty lines are passed over. @return whether there is one.
	 */
	bool TakeLine(FString& OutLine);

	/** Characters that were not taken out yet. */
	int32 Num() const { return Text.Len() - Begin; }

	/** Drops all of them. */
	void Empty();

private:
	bool FindLineEnd(int32& OutEnd);
	void DropTaken();

	FString Text;
	/** Where the next line begins. */
	int32 Begin = 0;
	/** Where the search for its end goes on; in front of that there is none. */
	int32 Searched = 0;
};
