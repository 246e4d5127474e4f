#include "Providers/CVXProviderJson.h"

#include "Serialization/JsonReader.h"
#include "Serialization/JsonSerializer.h"

TSharedPtr<FJsonObject> CVXProviderJson::ParseObject(const FString& Json)
{
	TSharedPtr<FJsonObject> Object;
	return FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(Json), Object) ? Object : nullptr;
}

double CVXProviderJson::ShortestDouble(float Value)
{
	return FCString::Atod(*LexToString(Value));
}
