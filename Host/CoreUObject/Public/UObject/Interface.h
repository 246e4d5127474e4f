#pragma once

#include "UObject/Object.h"

/** The root of the reflected side of interfaces. */
class UInterface : public UObject
{
	DECLARE_REFLECTED_CLASS(UInterface, UObject)

	UInterface() = default;
};

/** The root of the C++ side of interfaces. */
class IInterface
{
public:
	using UClassType = UInterface;
	virtual ~IInterface() = default;
};
