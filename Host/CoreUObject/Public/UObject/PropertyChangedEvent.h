#pragma once

#include "Misc/EnumClassFlags.h"
#include "UObject/NameTypes.h"

class FProperty;

namespace EPropertyChangeType
{
using Type = uint32;
constexpr Type Unspecified = 1;
constexpr Type ArrayAdd = 2;
constexpr Type ArrayRemove = 4;
constexpr Type ArrayClear = 8;
constexpr Type ValueSet = 16;
constexpr Type Duplicate = 32;
/** While the user still drags. */
constexpr Type Interactive = 64;
constexpr Type Redirected = 128;
constexpr Type ArrayMove = 256;
}

/** What changed in an object. */
struct FPropertyChangedEvent
{
	explicit FPropertyChangedEvent(
		FProperty* InProperty, EPropertyChangeType::Type InChangeType = EPropertyChangeType::Unspecified)
		: Property(InProperty)
		, MemberProperty(InProperty)
		, ChangeType(InChangeType)
	{
	}

	void SetActiveMemberProperty(FProperty* InMember) { MemberProperty = InMember; }
	FName GetPropertyName() const;
	FName GetMemberPropertyName() const;

	/** The property that changed; null when it isn't known. */
	FProperty* Property;
	/** The property of the object in which it lies. */
	FProperty* MemberProperty;
	EPropertyChangeType::Type ChangeType;
};

/** The same, with the chain of properties from the object to the value. */
struct FPropertyChangedChainEvent : FPropertyChangedEvent
{
	FPropertyChangedChainEvent(TArray<FProperty*> InChain, const FPropertyChangedEvent& Source)
		: FPropertyChangedEvent(Source)
		, PropertyChain(MoveTemp(InChain))
	{
	}
	TArray<FProperty*> PropertyChain;
};
