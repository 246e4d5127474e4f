#include "Providers/CVXProviderJson.h"

#include "Serialization/JsonReader.h"
#include "Serialization/JsonSerializer.h"

TSharedPtr<FJsonObject> CVXProviderJson::ParseObject(const FString& Json)
{
	TSharedPtr<FJsonObject> Object;
	return FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(Json), Object) ? Object : nullptr;
}

void CVXProviderJson::WriteTool(FWriter& Writer, const FCVXToolDescriptor& Tool, FStringView SchemaName)
{
	Writer.WriteObjectStart();
	Writer.WriteValue(TEXT("name"), Tool.Name);
	Writer.WriteValue(TEXT("description"), Tool.Description);
	if (const TSharedPtr<FJsonObject> Schema = ParseObject(Tool.InputSchemaJson))
	{
		Writer.WriteValue(SchemaName, *Schema);
	}
	Writer.WriteObjectEnd();
}

double CVXProviderJson::ShortestDouble(float Value)
{
	return FCString::Atod(*LexToString(Value));
}
