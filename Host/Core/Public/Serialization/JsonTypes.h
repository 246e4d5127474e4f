#pragma once

#include "CoreTypes.h"

/** The kinds of JSON values. */
enum class EJson : uint8
{
	/** No value; in queries: any kind. */
	None,
	Null,
	String,
	Number,
	Boolean,
	Array,
	Object
};

/** The kinds of tokens. */
enum class EJsonNotation : uint8
{
	ObjectStart,
	ObjectEnd,
	ArrayStart,
	ArrayEnd,
	Boolean,
	String,
	Number,
	Null,
	Error
};

/** How deep arrays and objects may stand in each other, read or written: the root is at depth 1. */
constexpr int32 JsonMaxDepth = 512;

/** The name of a kind, for messages. */
const TCHAR* JsonTypeName(EJson Type);
