#include "UObject/Function.h"

#include "UObject/Class.h"
#include "UObject/Property.h"

UClass* UFunction::GetOuterUClass() const
{
	return GetOwnerClass();
}

FProperty* UFunction::GetReturnProperty() const
{
	for (FProperty* Property : OwnProperties)
	{
		if (Property->HasAnyPropertyFlags(CPF_ReturnParm))
		{
			return Property;
		}
	}
	return nullptr;
}

void UFunction::Invoke(UObject* Object, void* Parms)
{
	if (Script)
	{
		const FScriptBody Body = Script;
		Body(Object, Parms);
	}
	else if (NativeFunc)
	{
		NativeFunc(Object, Parms);
	}
}

void UFunction::StaticLink(bool bRelinkExistingProperties)
{
	UStruct* Overridden = SuperStruct;
	SuperStruct = nullptr;
	Super::StaticLink(bRelinkExistingProperties);
	SuperStruct = Overridden;
	NumParms = 0;
	ReturnValueOffset = MAX_uint16;
	for (const FProperty* Property : OwnProperties)
	{
		NumParms += Property->HasAnyPropertyFlags(CPF_Parm) ? 1 : 0;
		ReturnValueOffset =
			Property->HasAnyPropertyFlags(CPF_ReturnParm) ? Property->GetOffset_ForUFunction() : ReturnValueOffset;
	}
	ParmsSize = PropertiesSize;
}

bool UFunction::IsSignatureCompatibleWith(const UFunction* Other) const
{
	constexpr uint64 Direction = CPF_OutParm | CPF_ReturnParm | CPF_ConstParm;
	bool bSame = Other && OwnProperties.Num() == Other->OwnProperties.Num();
	for (int32 Index = 0; bSame && Index < OwnProperties.Num(); ++Index)
	{
		const FProperty* Left = OwnProperties[Index];
		const FProperty* Right = Other->OwnProperties[Index];
		const bool bSameWay = ((uint64)Left->PropertyFlags & Direction) == ((uint64)Right->PropertyFlags & Direction);
		bSame = Left->SameType(Right) && bSameWay && Left->ArrayDim == Right->ArrayDim;
	}
	return bSame;
}
