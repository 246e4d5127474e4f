#pragma once

#include "CoreTypes.h"

/** What the output can show. */
struct FTerminalStyle
{
	/** A terminal whose cursor can be moved: a status line may be drawn and taken away. */
	bool bCursor = false;
	bool bColour = false;
	/** In characters; a sensible guess where nobody tells. */
	int32 Columns = 80;
	int32 Rows = 24;

	/**
	 * What the descriptor's terminal, if it is one, and the environment allow: `NO_COLOR` forbids colours, `TERM=dumb`
	 * everything.
	 */
	static FTerminalStyle Detect(int32 Descriptor);
};

/** What a piece of output is, from which its look follows. */
enum class ETerminalLook : uint8
{
	Plain,
	/** Beside the point: reasoning, states, figures. */
	Dim,
	/** Titles. */
	Bold,
	Good,
	Bad,
	/** What asks for the reader's attention. */
	Asking,
	/** Names of tools and positions in diffs. */
	Name,
};

/** The escape sequence that begins a look; "" for the plain one. */
const TCHAR* GetLookSequence(ETerminalLook Look);
