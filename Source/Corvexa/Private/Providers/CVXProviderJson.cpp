#include "Providers/CVXProviderJson.h"

#include "Core/CVXJsonObject.h"

void CVXProviderJson::WriteTool(FWriter& Writer, const FCVXToolDescriptor& Tool, FStringView SchemaName)
{
	Writer.WriteObjectStart();
	Writer.WriteValue(TEXT("name"), Tool.Name);
	Writer.WriteValue(TEXT("description"), Tool.Description);
	if (const TSharedPtr<FJsonObject> Schema = CVXJsonObject::Parse(Tool.InputSchemaJson))
	{
		Writer.WriteValue(SchemaName, *Schema);
	}
	Writer.WriteObjectEnd();
}

double CVXProviderJson::ShortestDouble(float Value)
{
	return FCString::Atod(*LexToString(Value));
}
