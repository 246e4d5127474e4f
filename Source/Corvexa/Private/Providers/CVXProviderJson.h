#pragma once

#include "Core/CVXTypes.h"
#include "Dom/JsonObject.h"
#include "Policies/CondensedJsonPrintPolicy.h"
#include "Serialization/JsonWriter.h"

/** What the request bodies of the dialects share. */
namespace CVXProviderJson
{
using FWriter = TJsonWriter<TCHAR, TCondensedJsonPrintPolicy<TCHAR>>;

/** Writes one tool as an object; its schema under the given name, or not at all when it is no object. */
void WriteTool(FWriter& Writer, const FCVXToolDescriptor& Tool, FStringView SchemaName);

/** The number that people see for a single-precision value: 0.7 rather than 0.699999988. */
double ShortestDouble(float Value);
} // namespace CVXProviderJson
