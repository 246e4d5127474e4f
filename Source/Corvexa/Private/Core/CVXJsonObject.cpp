#include "Core/CVXJsonObject.h"

#include "Serialization/JsonReader.h"
#include "Serialization/JsonSerializer.h"

TSharedPtr<FJsonObject> CVXJsonObject::Parse(const FString& Json)
{
	TSharedPtr<FJsonObject> Object;
	return FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(Json), Object) ? Object : nullptr;
}
