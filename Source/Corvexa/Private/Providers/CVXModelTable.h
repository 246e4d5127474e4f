#pragma once

#include "Providers/CVXProviderCatalog.h"

/** The models that the catalog knows. */
namespace CVXModelTable
{
/** @return all rows, by vendor in the order in which they are offered. */
TArray<FCVXModelEntry> Build();
} // namespace CVXModelTable
