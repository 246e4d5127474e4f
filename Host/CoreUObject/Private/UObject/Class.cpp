#include "UObject/Class.h"

#include "ObjectFactory.h"
#include "UObject/GarbageCollection.h"
#include "UObject/Property.h"

UObject* UClass::GetDefaultObject(bool bCreateIfNeeded)
{
	if (!ClassDefaultObject && bCreateIfNeeded)
	{
		const FName Name(GetDefaultObjectName());
		StaticConstructObject(GetOuter(), this, Name, RF_Public | RF_ClassDefaultObject | RF_ArchetypeObject);
	}
	return ClassDefaultObject;
}

UFunction* UClass::FindFunctionByName(FName Name, EIncludeSuperFlag::Type IncludeSuper) const
{
	for (const UClass* Class = this; Class; Class = Class->GetSuperClass())
	{
		if (UFunction* const* Found = Class->FunctionMap.Find(Name))
		{
			return *Found;
		}
		for (const FImplementedInterface& Each : Class->Interfaces)
		{
			UFunction* Found = IncludeSuper && Each.Class ? Each.Class->FindFunctionByName(Name) : nullptr;
			if (Found)
			{
				return Found;
			}
		}
		if (IncludeSuper == EIncludeSuperFlag::ExcludeSuper)
		{
			break;
		}
	}
	return nullptr;
}

void UClass::AddFunctionToFunctionMap(UFunction* Function, FName Name)
{
	FunctionMap.Add(Name, Function);
}

void UClass::RemoveFunctionFromFunctionMap(UFunction* Function)
{
	FunctionMap.Remove(Function->GetFName());
}

void UClass::GenerateFunctionList(TArray<FName>& OutNames) const
{
	FunctionMap.GenerateKeyArray(OutNames);
}

const FImplementedInterface* UClass::FindInterface(const UClass* Interface) const
{
	for (const UClass* Class = this; Class; Class = Class->GetSuperClass())
	{
		for (const FImplementedInterface& Each : Class->Interfaces)
		{
			if (Each.Class && Each.Class->IsChildOf(Interface))
			{
				return &Each;
			}
		}
	}
	return nullptr;
}

bool UClass::ImplementsInterface(const UClass* Interface) const
{
	return FindInterface(Interface) != nullptr;
}

void UClass::SetSuperStruct(UStruct* NewSuperStruct)
{
	if (UClass* Old = GetSuperClass())
	{
		Old->DirectChildren.Remove(this);
	}
	Super::SetSuperStruct(NewSuperStruct);
	if (UClass* Parent = GetSuperClass())
	{
		Parent->DirectChildren.Add(this);
	}
}

void UClass::Bind()
{
	UClass* Parent = GetSuperClass();
	if (!Parent)
	{
		return;
	}
	ClassConstructor = ClassConstructor ? ClassConstructor : Parent->ClassConstructor;
	ClassAddReferencedObjects =
		ClassAddReferencedObjects ? ClassAddReferencedObjects : Parent->ClassAddReferencedObjects;
	ClassFlags |= Parent->ClassFlags & CLASS_Inherit;
	ClassConfigName = ClassConfigName.IsNone() ? Parent->ClassConfigName : ClassConfigName;
	ClassWithin = ClassWithin ? ClassWithin : Parent->ClassWithin;
}

void UClass::StaticLink(bool bRelinkExistingProperties)
{
	check(ClassConstructor || HasAnyClassFlags(CLASS_Abstract));
	Super::StaticLink(bRelinkExistingProperties);
	CollectPostConstructProperties();
	ClassFlags |= CLASS_Constructed;
}

void UClass::CollectPostConstructProperties()
{
	PostConstructProperties.Reset();
	for (FProperty* Each = PropertyLink; Each; Each = Each->PropertyLinkNext)
	{
		const UClass* Owner = Each->GetOwnerClass();
		if (Each->HasAnyPropertyFlags(CPF_Config) || !Owner->HasNativeLayout())
		{
			PostConstructProperties.Add(Each);
		}
	}
}

const TCHAR* UClass::GetPrefixCPP() const
{
	static const FName ActorName(TEXT("Actor"));
	for (const UClass* Class = this; Class; Class = Class->GetSuperClass())
	{
		if (Class->GetFName() == ActorName)
		{
			return TEXT("A");
		}
	}
	return TEXT("U");
}

void UClass::InitializeScriptProperties(void* Dest) const
{
	if (HasNativeLayout())
	{
		return;
	}
	GetSuperClass()->InitializeScriptProperties(Dest);
	InitializeOwnProperties(Dest);
}

void UClass::DestroyScriptProperties(void* Dest) const
{
	for (const UClass* Class = this; Class && !Class->HasNativeLayout(); Class = Class->GetSuperClass())
	{
		Class->DestroyOwnProperties(Dest);
	}
}

void UClass::BeginDestroy()
{
	// The parent itself stays known: objects of this class are still to be destroyed through it.
	if (UClass* Parent = GetSuperClass())
	{
		Parent->DirectChildren.Remove(this);
	}
	Super::BeginDestroy();
}

void UClass::AddReferencedObjects(UObject* InThis, FReferenceCollector& Collector)
{
	UClass* This = (UClass*)InThis;
	Collector.AddReferencedObject(This->ClassDefaultObject);
	Collector.AddReferencedObject(This->ClassGeneratedBy);
	for (FImplementedInterface& Each : This->Interfaces)
	{
		Collector.AddReferencedObject(Each.Class);
	}
	UObject::AddReferencedObjects(InThis, Collector);
}
