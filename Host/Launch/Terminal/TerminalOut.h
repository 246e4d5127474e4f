#pragma once

#include "Containers/UnrealString.h"
#include "Launch/Terminal/TerminalStyle.h"
#include "Templates/Function.h"

/**
 * A terminal, or a file in its place, as a stream of text with looks and one status line below it. All texts are safe
 * to show. Each call reaches the output before it returns. Game thread.
 */
class FTerminalOut
{
public:
	using FSink = TFunction<void(const FString&)>;

	/** @param InSink takes every byte that goes out, as text. */
	FTerminalOut(const FTerminalStyle& InStyle, FSink InSink);

	const FTerminalStyle& GetStyle() const { return Style; }

	void Write(const FString& Text, ETerminalLook Look = ETerminalLook::Plain);
	/** A line of its own. */
	void WriteLine(const FString& Text, ETerminalLook Look = ETerminalLook::Plain);
	/** Ends a line that has been begun. */
	void EndLine();
	/** Tells that the person has ended the line by typing. */
	void NoteTypedLineEnd() { bLineBegun = false; }
	/**
	 * Draws the status line anew, cut to the terminal's width. Does nothing where the cursor can't be moved, or amid a
	 * line.
	 */
	void SetStatus(const FString& Text);
	void ClearStatus();

private:
	FTerminalStyle Style;
	FSink Sink;
	bool bLineBegun = false;
	FString Status;
};

/** Writes all of the text to a descriptor, as UTF-8. @return false when nobody takes it any more. */
bool WriteToDescriptor(int32 Descriptor, const FString& Text);
