#include "ObjectFactory.h"

#include "ObjectTable.h"
#include "UObject/GarbageCollection.h"
#include "UObject/UObjectHash.h"
#include "UObject/UnrealType.h"

namespace
{
/** Lets references to parts of one object refer to the parts of the same name in another. */
class FPartRemapper : public FReferenceCollector
{
public:
	FPartRemapper(UObject* InFrom, UObject* InTo)
		: From(InFrom)
		, To(InTo)
	{
	}

	void HandleReference(UObject*& Object) override
	{
		if (Object == From)
		{
			Object = To;
			return;
		}
		if (Object && Object->IsIn(From))
		{
			UObject* Twin = StaticFindObject(Object->GetClass(), To, Object->GetPathName(From));
			Object = Twin ? Twin : Object;
		}
	}

private:
	UObject* From;
	UObject* To;
};

FName FindFreeName(UObject* Outer, FName Base, int32& Number)
{
	FName Name(Base, ++Number);
	while (FObjectTable::Get().Find(nullptr, Outer, Name, false))
	{
		Name = FName(Base, ++Number);
	}
	return Name;
}

/** Takes the name away from the object that has it. */
void Displace(UObject* Object)
{
	check(!Object->IsA(UPackage::StaticClass()) && !Object->IsRooted());
	UPackage* Transient = GetTransientPackage();
	FObjectTable::Get().ChangeIdentity(
		Object, MakeUniqueObjectName(Transient, Object->GetClass(), TEXT("TRASH")), Transient);
	Object->MarkAsGarbage();
}
} // namespace

UObject* FObjectFactory::Make(UClass* Class, UObject* Outer, FName Name, EObjectFlags Flags, UObject* Template)
{
	check(Class && !GIsGarbageCollecting);
	const bool bIsDefault = (Flags & RF_ClassDefaultObject) != RF_NoFlags;
	checkf(bIsDefault || !Class->HasAnyClassFlags(CLASS_Abstract), TEXT("%s is abstract"), *Class->GetName());
	const bool bNeedsOuter = !Outer && !Class->IsChildOf(UPackage::StaticClass());
	Outer = bNeedsOuter ? GetTransientPackage() : Outer;
	if (Name.IsNone())
	{
		Name = FindFreeName(Outer, Class->GetFName(), Class->NextObjectNumber);
	}
	else if (UObject* Existing = FObjectTable::Get().Find(nullptr, Outer, Name, false))
	{
		Displace(Existing);
	}
	UClass* DefaultsFrom = bIsDefault ? Class->GetSuperClass() : Class;
	UObject* Archetype = Template ? Template : (DefaultsFrom ? DefaultsFrom->GetDefaultObject() : nullptr);
	UObject* Object = Construct(Class, Outer, Name, Flags, Archetype);
	TakeStartingValues(Object, Archetype, Template != nullptr);
	if (bIsDefault)
	{
		Class->ClassDefaultObject = Object;
	}
	if (bIsDefault && Class->HasAnyClassFlags(CLASS_Config))
	{
		Object->LoadConfig(Class);
	}
	Object->PostInitProperties();
	return Object;
}

UObject* FObjectFactory::Construct(UClass* Class, UObject* Outer, FName Name, EObjectFlags Flags, UObject* Archetype)
{
	check(Class->ClassConstructor);
	FObjectInitializer Initializer(Class, Outer, Name, Flags, Archetype);
	const SIZE_T Size = (SIZE_T)Class->GetStructureSize();
	Initializer.Memory = FMemory::Malloc(Size, (uint32)Class->GetMinAlignment());
	FMemory::Memzero(Initializer.Memory, Size);
	Class->ClassConstructor(Initializer);
	check(Initializer.Object);
	Class->InitializeScriptProperties(Initializer.Object);
	return Initializer.Object;
}

void FObjectFactory::TakeStartingValues(UObject* Object, UObject* Archetype, bool bFromTemplate)
{
	if (!Archetype)
	{
		return;
	}
	const bool bIsChildDefault = Object->HasAnyFlags(RF_ClassDefaultObject);
	if (bFromTemplate)
	{
		CopyAllValues(Object, Archetype);
	}
	else
	{
		CopyValues(Object, Archetype, Archetype->GetClass()->PostConstructProperties);
	}
	TArray<UObject*> Parts;
	if (!bIsChildDefault || !Object->GetClass()->IsNative())
	{
		Object->GetDefaultSubobjects(Parts);
	}
	for (UObject* Part : Parts)
	{
		UObject* PartTemplate = Archetype->GetDefaultSubobjectByName(Part->GetFName());
		if (PartTemplate && PartTemplate->GetClass() == Part->GetClass())
		{
			CopyAllValues(Part, PartTemplate);
		}
	}
}

void FObjectFactory::CopyValues(UObject* Dest, UObject* Source, const TArray<FProperty*>& Properties)
{
	FPartRemapper Remapper(Source, Dest);
	for (const FProperty* Property : Properties)
	{
		if (!Property->HasAnyPropertyFlags(CPF_DuplicateTransient))
		{
			Property->CopyCompleteValue_InContainer(Dest, Source);
			Property->CollectReferences_InContainer(Dest, Remapper);
		}
	}
}

void FObjectFactory::CopyAllValues(UObject* Dest, UObject* Source)
{
	const UClass* Common = Dest->GetClass();
	while (!Source->IsA(Common))
	{
		Common = Common->GetSuperClass();
	}
	TArray<FProperty*> Properties;
	for (FProperty* Each = Common->PropertyLink; Each; Each = Each->PropertyLinkNext)
	{
		Properties.Add(Each);
	}
	CopyValues(Dest, Source, Properties);
}

UObject* StaticConstructObject(UObject* Outer, const UClass* Class, FName Name, EObjectFlags Flags, UObject* Template)
{
	return FObjectFactory::Make((UClass*)Class, Outer, Name, Flags, Template);
}

UObject* StaticDuplicateObject(const UObject* Source, UObject* Outer, FName Name)
{
	UObject* From = (UObject*)Source;
	const EObjectFlags Flags = From->GetFlags() & (RF_Public | RF_Standalone | RF_Transactional | RF_Transient);
	UObject* Copy = StaticConstructObject(Outer, From->GetClass(), Name, Flags, From);
	TArray<UObject*> Parts;
	GetObjectsWithOuter(From, Parts, false);
	for (UObject* Part : Parts)
	{
		if (!StaticFindObjectFast(nullptr, Copy, Part->GetFName()) && !Part->IsA(UField::StaticClass()))
		{
			StaticDuplicateObject(Part, Copy, Part->GetFName());
		}
	}
	FObjectFactory::CopyAllValues(Copy, From);
	return Copy;
}

FName MakeUniqueObjectName(UObject* Outer, const UClass* Class, FName BaseName)
{
	int32 Number = 0;
	return FindFreeName(Outer, BaseName.IsNone() ? Class->GetFName() : BaseName, Number);
}
