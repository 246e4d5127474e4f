#include "UObject/Object.h"

#include "ObjectFactory.h"
#include "ObjectTable.h"
#include "UObject/PropertyChangedEvent.h"
#include "UObject/UObjectHash.h"
#include "UObject/UnrealType.h"

void UObject::BeginDestroy()
{
	SetFlags(RF_BeginDestroyed);
}

void UObject::FinishDestroy()
{
	SetFlags(RF_FinishDestroyed);
}

void UObject::PostRename(UObject*, FName) {}

void UObject::PostReloadConfig(FProperty*) {}

void UObject::PreEditChange(FProperty*)
{
	Modify();
}

void UObject::PostEditChangeProperty(FPropertyChangedEvent&) {}

void UObject::PostEditChangeChainProperty(FPropertyChangedChainEvent& PropertyChangedEvent)
{
	PostEditChangeProperty(PropertyChangedEvent);
}

void UObject::PostEditChange()
{
	FPropertyChangedEvent Event(nullptr);
	PostEditChangeProperty(Event);
}

bool UObject::CanEditChange(const FProperty* InProperty) const
{
	return !InProperty || !InProperty->HasAnyPropertyFlags(CPF_EditConst);
}

bool UObject::Modify(bool bAlwaysMarkDirty)
{
	if (bAlwaysMarkDirty)
	{
		MarkPackageDirty();
	}
	return HasAnyFlags(RF_Transactional);
}

bool UObject::IsAsset() const
{
	const UObject* Package = GetOuter();
	return Package && Package->IsA(UPackage::StaticClass()) && HasAnyFlags(RF_Public) &&
		!HasAnyFlags(RF_Transient | RF_ClassDefaultObject) && !IsA(UField::StaticClass());
}

void UObject::GetAssetRegistryTags(TMap<FName, FString>& OutTags) const
{
	for (const FProperty* Each = GetClass()->PropertyLink; Each; Each = Each->PropertyLinkNext)
	{
		if (Each->HasAnyPropertyFlags(CPF_AssetRegistrySearchable))
		{
			FString& Value = OutTags.Add(Each->GetFName());
			Each->ExportTextItem_InContainer(Value, this, nullptr, (UObject*)this, PPF_None);
		}
	}
}

void UObject::AddReferencedObjects(UObject*, FReferenceCollector&) {}

bool UObject::Rename(const TCHAR* NewName, UObject* NewOuter, ERenameFlags Flags)
{
	UObject* Outer = NewOuter ? NewOuter : GetOuter();
	check(Outer != this && (!Outer || !Outer->IsIn(this)));
	const FName Name = NewName ? FName(NewName) : MakeUniqueObjectName(Outer, GetClass());
	const UObject* Existing = FObjectTable::Get().Find(nullptr, Outer, Name, false);
	if (Name.IsNone() || (Existing && Existing != this))
	{
		return false;
	}
	if (Flags & REN_Test)
	{
		return true;
	}
	UObject* OldOuter = GetOuter();
	const FName OldName = GetFName();
	FObjectTable::Get().ChangeIdentity(this, Name, Outer);
	PostRename(OldOuter, OldName);
	return true;
}

UObject* UObject::GetArchetype() const
{
	UClass* Class = GetClass();
	if (HasAnyFlags(RF_ClassDefaultObject))
	{
		return Class->GetSuperClass() ? Class->GetSuperClass()->GetDefaultObject() : nullptr;
	}
	const UObject* OuterArchetype =
		HasAnyFlags(RF_DefaultSubObject) && GetOuter() ? GetOuter()->GetArchetype() : nullptr;
	UObject* Part = OuterArchetype ? ((UObject*)OuterArchetype)->GetDefaultSubobjectByName(GetFName()) : nullptr;
	return Part ? Part : Class->GetDefaultObject();
}

UObject* UObject::GetDefaultSubobjectByName(FName ToFind)
{
	UObject* Found = FObjectTable::Get().Find(nullptr, this, ToFind, false);
	return Found && Found->HasAnyFlags(RF_DefaultSubObject) ? Found : nullptr;
}

void UObject::GetDefaultSubobjects(TArray<UObject*>& OutSubobjects) const
{
	TArray<UObject*> Inner;
	GetObjectsWithOuter(this, Inner, false);
	for (UObject* Each : Inner)
	{
		if (Each->HasAnyFlags(RF_DefaultSubObject))
		{
			OutSubobjects.Add(Each);
		}
	}
}

UObject* UObject::CreateDefaultSubobject(
	FName Name, UClass* ReturnType, UClass* ClassToCreate, bool bRequired, bool bTransient)
{
	FObjectInitializer* Initializer = FObjectInitializer::Current();
	checkf(Initializer && Initializer->GetObj() == this, TEXT("parts are made by constructors alone"));
	return Initializer->CreateDefaultSubobject(this, Name, ReturnType, ClassToCreate, bRequired, bTransient);
}

UFunction* UObject::FindFunction(FName Name) const
{
	return GetClass()->FindFunctionByName(Name);
}

UFunction* UObject::FindFunctionChecked(FName Name) const
{
	UFunction* Function = FindFunction(Name);
	checkf(Function, TEXT("%s has no function %s"), *GetFullName(), *Name.ToString());
	return Function;
}

void UObject::ProcessEvent(UFunction* Function, void* Parms)
{
	check(Function && (Parms || Function->ParmsSize == 0));
	Function->Invoke(this, Parms);
}
