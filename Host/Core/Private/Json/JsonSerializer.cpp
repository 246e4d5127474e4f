#include "Serialization/JsonSerializer.h"

namespace
{
bool Expect(EJson Type, FJsonReader& Reader, TSharedPtr<FJsonValue>& OutValue)
{
	if (!Reader.Read(OutValue))
	{
		return false;
	}
	if (OutValue->Type != Type)
	{
		const TCHAR* Found = JsonTypeName(OutValue->Type);
		Reader.SetErrorMessage(
			FString::Printf(TEXT("Expected %s, found %s. Line: 1 Ch: 1"), JsonTypeName(Type), Found));
		return false;
	}
	return true;
}
}

bool FJsonSerializer::Deserialize(FJsonReader& Reader, TSharedPtr<FJsonObject>& OutObject)
{
	TSharedPtr<FJsonValue> Value;
	if (!Expect(EJson::Object, Reader, Value))
	{
		return false;
	}
	OutObject = Value->AsObject();
	return true;
}

bool FJsonSerializer::Deserialize(FJsonReader& Reader, TArray<TSharedPtr<FJsonValue>>& OutArray)
{
	TSharedPtr<FJsonValue> Value;
	if (!Expect(EJson::Array, Reader, Value))
	{
		return false;
	}
	OutArray = Value->AsArray();
	return true;
}

bool FJsonSerializer::Serialize(const FJsonObject& Object, FJsonTextWriter& Writer, bool bCloseWriter)
{
	Writer.WriteValue(Object);
	return !bCloseWriter || Writer.Close();
}

bool FJsonSerializer::Serialize(const TArray<TSharedPtr<FJsonValue>>& Array, FJsonTextWriter& Writer, bool bCloseWriter)
{
	Writer.WriteValue(Array);
	return !bCloseWriter || Writer.Close();
}

bool FJsonSerializer::Serialize(
	const TSharedPtr<FJsonValue>& Value, const FString& Identifier, FJsonTextWriter& Writer, bool bCloseWriter)
{
	if (!Identifier.IsEmpty())
	{
		Writer.WriteIdentifierPrefix(Identifier);
	}
	Value ? Writer.WriteValue(*Value) : Writer.WriteNull();
	return !bCloseWriter || Writer.Close();
}
