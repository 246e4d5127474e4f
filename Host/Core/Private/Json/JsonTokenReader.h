#pragma once

#include "Serialization/JsonTypes.h"
#include "Json/JsonScanner.h"

/** Reads a text token by token and keeps nothing but the present one. */
class FJsonTokenReader : public FJsonScanner
{
public:
	/** @param InText UTF-8 without a byte order mark, which must outlive this. */
	FJsonTokenReader(const ANSICHAR* InText, int64 Bytes)
		: FJsonScanner(InText, Bytes)
	{
	}

	/** Goes on to the next token. @return false behind the last one, and on an error, which OutNotation tells. */
	bool Next(EJsonNotation& OutNotation);

	/** The present token's name when it stands in an object, and its value. */
	FString Identifier;
	FString StringValue;
	FString NumberText;
	bool bBoolean = false;

private:
	enum class EPhase : uint8
	{
		/** A value must come. */
		Value,
		/** A container was opened: a value or its end must come. */
		Opened,
		/** A value has ended: a comma or its container's end must come, or the end of the text. */
		AfterValue
	};

	bool IsInObject() const { return !Containers.IsEmpty() && Containers.Last(); }
	bool Stop(EJsonNotation& OutNotation);
	bool Open(bool bObject, EJsonNotation& OutNotation);
	bool Close(EJsonNotation& OutNotation);
	bool ReadValue(EJsonNotation& OutNotation);
	bool ReadScalar(EJsonNotation& OutNotation);
	bool ReadNumber();

	/** True for an object, false for an array. */
	TArray<bool, TInlineAllocator<32>> Containers;
	EPhase Phase = EPhase::Value;
};
