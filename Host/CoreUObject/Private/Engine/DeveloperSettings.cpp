#include "Engine/DeveloperSettings.h"

FName UDeveloperSettings::GetContainerName() const
{
	return GetClass()->ClassConfigName.ToString().StartsWith(TEXT("Editor")) ? FName(TEXT("Editor"))
																			 : FName(TEXT("Project"));
}

FName UDeveloperSettings::GetCategoryName() const
{
	return CategoryName.IsNone() ? GetClass()->ClassConfigName : CategoryName;
}

FName UDeveloperSettings::GetSectionName() const
{
	return SectionName.IsNone() ? GetClass()->GetFName() : SectionName;
}

FText UDeveloperSettings::GetSectionText() const
{
	return GetClass()->GetDisplayNameText();
}

FText UDeveloperSettings::GetSectionDescription() const
{
	return GetClass()->GetToolTipText();
}
