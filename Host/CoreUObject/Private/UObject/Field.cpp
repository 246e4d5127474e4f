#include "UObject/UField.h"

#include "UObject/Class.h"
#include "UObject/Field.h"
#include "UObject/Property.h"
#include "UObject/PropertyChangedEvent.h"
#include "UObject/TextProperties.h"
#include "UObject/UObjectGlobals.h"

const FFieldClass* FField::StaticClass()
{
	static const FFieldClass Class(TEXT("Field"), StaticCastFlag, nullptr);
	return &Class;
}

UObject* FField::GetOwnerUObject() const
{
	const FField* Field = this;
	while (Field && !Field->Owner.IsUObject())
	{
		Field = Field->Owner.ToField();
	}
	return Field ? Field->Owner.ToUObject() : nullptr;
}

UStruct* FField::GetOwnerStruct() const
{
	return Cast<UStruct>(GetOwnerUObject());
}

UClass* FField::GetOwnerClass() const
{
	UObject* Object = GetOwnerUObject();
	while (Object && !Object->IsA(UClass::StaticClass()))
	{
		Object = Object->GetOuter();
	}
	return (UClass*)Object;
}

FString FField::GetPathName() const
{
	const FField* Parent = Owner.ToField();
	const UObject* Object = Owner.ToUObject();
	const FString Prefix = Parent ? Parent->GetPathName() : (Object ? Object->GetPathName() : FString(TEXT("None")));
	return Prefix +
		(Parent || (Object && Object->GetOuter() && Object->GetOuter()->GetOuter()) ? TEXT(".") : TEXT(":")) +
		GetName();
}

FString FField::GetFullName() const
{
	return GetClass()->GetName() + TEXT(" ") + GetPathName();
}

FText FField::GetDisplayNameText() const
{
	return DisplayNameOr(GetName(), IsA<FBoolProperty>());
}

FText FField::GetToolTipText(bool bShortToolTip) const
{
	return ToolTipOrName(GetName(), bShortToolTip);
}

UClass* UField::GetOwnerClass() const
{
	const UObject* Object = this;
	while (Object && !Object->IsA(UClass::StaticClass()))
	{
		Object = Object->GetOuter();
	}
	return (UClass*)Object;
}

FText UField::GetDisplayNameText() const
{
	return DisplayNameOr(GetName(), false);
}

FText UField::GetToolTipText(bool bShortToolTip) const
{
	return ToolTipOrName(GetName(), bShortToolTip);
}

FName FPropertyChangedEvent::GetPropertyName() const
{
	return Property ? Property->GetFName() : FName();
}

FName FPropertyChangedEvent::GetMemberPropertyName() const
{
	return MemberProperty ? MemberProperty->GetFName() : FName();
}
