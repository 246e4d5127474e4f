#pragma once

#include "UObject/MetaData.h"
#include "UObject/Object.h"

/** What classes, structs, functions and enumerations have in common. Game thread. */
class UField
	: public UObject
	, public FMetaDataOwner
{
	DECLARE_REFLECTED_CLASS(UField, UObject)

	UField() = default;

	UClass* GetOwnerClass() const;
	FText GetDisplayNameText() const;
	FText GetToolTipText(bool bShortToolTip = false) const;

	/** The next child of the same owner, in the order of declaration. */
	UField* Next = nullptr;
};
