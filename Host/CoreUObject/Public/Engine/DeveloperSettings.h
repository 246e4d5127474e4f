#pragma once

#include "UObject/UnrealType.h"

#include "DeveloperSettings.generated.h"

/** The base of settings objects: its default object is the settings, shown on a page of the project's settings. */
UCLASS(Abstract)
class UDeveloperSettings : public UObject
{
	GENERATED_BODY()

public:
	UDeveloperSettings() = default;
	explicit UDeveloperSettings(const FObjectInitializer&) {}

	/** `Project` or `Editor`. */
	virtual FName GetContainerName() const;
	/** The group on the left of the settings window. */
	virtual FName GetCategoryName() const;
	/** The page in the group. */
	virtual FName GetSectionName() const;
	virtual FText GetSectionText() const;
	virtual FText GetSectionDescription() const;

protected:
	/** The two that constructors set; None takes them from the class. */
	FName CategoryName;
	FName SectionName;
};
