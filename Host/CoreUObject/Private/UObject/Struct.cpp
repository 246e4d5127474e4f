#include "UObject/Struct.h"

#include "UObject/GarbageCollection.h"
#include "UObject/Property.h"

UStruct::~UStruct()
{
	DestroyProperties();
}

void UStruct::DestroyProperties()
{
	while (ChildProperties)
	{
		FField* Field = ChildProperties;
		ChildProperties = Field->Next;
		delete Field;
	}
	PropertyLink = nullptr;
	OwnProperties.Empty();
	ReferenceProperties.Empty();
}

void UStruct::SetSuperStruct(UStruct* NewSuperStruct)
{
	check(!NewSuperStruct || !NewSuperStruct->IsChildOf(this));
	SuperStruct = NewSuperStruct;
}

bool UStruct::IsChildOf(const UStruct* SomeBase) const
{
	const UStruct* Struct = this;
	while (Struct && Struct != SomeBase)
	{
		Struct = Struct->SuperStruct;
	}
	return Struct && SomeBase;
}

FProperty* UStruct::FindPropertyByName(FName Name) const
{
	FProperty* Property = PropertyLink;
	while (Property && Property->GetFName() != Name)
	{
		Property = Property->PropertyLinkNext;
	}
	return Property;
}

void UStruct::AddCppProperty(FProperty* Property)
{
	check(Property && Property->GetOwnerVariant().ToUObject() == this);
	FField** Place = &ChildProperties;
	while (*Place)
	{
		Place = &(*Place)->Next;
	}
	*Place = Property;
	Property->Next = nullptr;
}

void UStruct::RemoveCppProperty(FProperty* Property)
{
	FField** Place = &ChildProperties;
	while (*Place && *Place != Property)
	{
		Place = &(*Place)->Next;
	}
	check(*Place);
	*Place = Property->Next;
	delete Property;
	StaticLink(true);
}

void UStruct::AddChild(UField* Child)
{
	UField** Place = &Children;
	while (*Place)
	{
		Place = &(*Place)->Next;
	}
	*Place = Child;
	Child->Next = nullptr;
}

void UStruct::RemoveChild(UField* Child)
{
	UField** Place = &Children;
	while (*Place && *Place != Child)
	{
		Place = &(*Place)->Next;
	}
	if (*Place)
	{
		*Place = Child->Next;
		Child->Next = nullptr;
	}
}

void UStruct::StaticLink(bool)
{
	OwnProperties.Reset();
	for (FField* Field = ChildProperties; Field; Field = Field->Next)
	{
		if (FProperty* Property = CastField<FProperty>(Field))
		{
			Property->LinkType();
			OwnProperties.Add(Property);
		}
	}
	if (!bNativeLayout)
	{
		PropertiesSize = SuperStruct ? SuperStruct->PropertiesSize : 0;
		MinAlignment = SuperStruct ? SuperStruct->MinAlignment : 1;
		for (FProperty* Property : OwnProperties)
		{
			Property->SetOffset_Internal(Align(PropertiesSize, (uint64)Property->GetMinAlignment()));
			PropertiesSize = Property->GetOffset_ForInternal() + Property->GetSize();
			MinAlignment = FMath::Max(MinAlignment, Property->GetMinAlignment());
		}
	}
	PropertyLink = SuperStruct ? SuperStruct->PropertyLink : nullptr;
	ReferenceProperties = SuperStruct ? SuperStruct->ReferenceProperties : TArray<FProperty*>();
	for (int32 Index = OwnProperties.Num() - 1; Index >= 0; --Index)
	{
		OwnProperties[Index]->PropertyLinkNext = PropertyLink;
		PropertyLink = OwnProperties[Index];
		if (PropertyLink->ContainsObjectReference())
		{
			ReferenceProperties.Add(PropertyLink);
		}
	}
}

void UStruct::InitializeOwnProperties(void* Dest) const
{
	for (const FProperty* Property : OwnProperties)
	{
		Property->InitializeValue_InContainer(Dest);
	}
}

void UStruct::DestroyOwnProperties(void* Dest) const
{
	for (const FProperty* Property : OwnProperties)
	{
		Property->DestroyValue_InContainer(Dest);
	}
}

void UStruct::InitializeStruct(void* Dest, int32 ArrayDim) const
{
	for (int32 Index = 0; Index < ArrayDim; ++Index)
	{
		uint8* Value = (uint8*)Dest + Index * GetStructureSize();
		FMemory::Memzero(Value, (SIZE_T)GetStructureSize());
		for (const FProperty* Property = PropertyLink; Property; Property = Property->PropertyLinkNext)
		{
			Property->InitializeValue_InContainer(Value);
		}
	}
}

void UStruct::DestroyStruct(void* Dest, int32 ArrayDim) const
{
	for (int32 Index = 0; Index < ArrayDim; ++Index)
	{
		uint8* Value = (uint8*)Dest + Index * GetStructureSize();
		for (const FProperty* Property = PropertyLink; Property; Property = Property->PropertyLinkNext)
		{
			Property->DestroyValue_InContainer(Value);
		}
	}
}

void UStruct::CollectReferences(void* Data, FReferenceCollector& Collector) const
{
	for (const FProperty* Property : ReferenceProperties)
	{
		Property->CollectReferences_InContainer(Data, Collector);
	}
	const UScriptStruct* ScriptStruct = HasNativeLayout() ? Cast<UScriptStruct>(this) : nullptr;
	const FCppStructOps* Ops = ScriptStruct ? ScriptStruct->GetCppStructOps() : nullptr;
	if (Ops && Ops->AddStructReferencedObjects)
	{
		Ops->AddStructReferencedObjects(Data, Collector);
	}
}
