#pragma once

#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "Serialization/JsonReader.h"
#include "Serialization/JsonTypes.h"
#include "Serialization/JsonWriter.h"

/** Reads texts into trees of values and writes trees as text. Any thread, each reader and writer on one at a time. */
class FJsonSerializer
{
public:
	/** @return false, with the reader's message set and the out argument alone, when the text is no JSON object. */
	static bool Deserialize(const TSharedRef<FJsonReader>& Reader, TSharedPtr<FJsonObject>& OutObject)
	{
		return Deserialize(*Reader, OutObject);
	}
	static bool Deserialize(FJsonReader& Reader, TSharedPtr<FJsonObject>& OutObject);
	/** The same for a text that is an array. */
	static bool Deserialize(const TSharedRef<FJsonReader>& Reader, TArray<TSharedPtr<FJsonValue>>& OutArray)
	{
		return Deserialize(*Reader, OutArray);
	}
	static bool Deserialize(FJsonReader& Reader, TArray<TSharedPtr<FJsonValue>>& OutArray);
	/** The same for any value. */
	static bool Deserialize(const TSharedRef<FJsonReader>& Reader, TSharedPtr<FJsonValue>& OutValue)
	{
		return Reader->Read(OutValue);
	}
	static bool Deserialize(FJsonReader& Reader, TSharedPtr<FJsonValue>& OutValue) { return Reader.Read(OutValue); }

	/** @return whether the writer then holds one whole value; always true when it isn't to be closed. */
	static bool Serialize(
		const TSharedRef<FJsonObject>& Object, const TSharedRef<FJsonTextWriter>& Writer, bool bCloseWriter = true)
	{
		return Serialize(*Object, *Writer, bCloseWriter);
	}
	static bool Serialize(const FJsonObject& Object, FJsonTextWriter& Writer, bool bCloseWriter = true);
	static bool Serialize(const TArray<TSharedPtr<FJsonValue>>& Array, const TSharedRef<FJsonTextWriter>& Writer,
		bool bCloseWriter = true)
	{
		return Serialize(Array, *Writer, bCloseWriter);
	}
	static bool Serialize(
		const TArray<TSharedPtr<FJsonValue>>& Array, FJsonTextWriter& Writer, bool bCloseWriter = true);
	/** @param Identifier the value's name when an object is open; otherwise empty. */
	static bool Serialize(const TSharedPtr<FJsonValue>& Value, const FString& Identifier,
		const TSharedRef<FJsonTextWriter>& Writer, bool bCloseWriter = true)
	{
		return Serialize(Value, Identifier, *Writer, bCloseWriter);
	}
	static bool Serialize(const TSharedPtr<FJsonValue>& Value, const FString& Identifier, FJsonTextWriter& Writer,
		bool bCloseWriter = true);
};
