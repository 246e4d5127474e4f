#include "UObject/UObjectBaseUtility.h"

#include "ObjectTable.h"
#include "UObject/Package.h"

UObjectBase::UObjectBase()
{
	FObjectInitializer& Initializer = FObjectInitializer::Get();
	checkf(!Initializer.Object && (void*)this == Initializer.Memory, TEXT("objects are made by NewObject alone"));
	ObjectFlags = Initializer.Flags;
	ClassPrivate = Initializer.Class;
	NamePrivate = Initializer.Name;
	OuterPrivate = Initializer.Outer;
	Initializer.Object = (UObject*)(void*)this;
	FObjectTable::Get().Add(this);
}

UObjectBase::~UObjectBase()
{
	FObjectTable::Get().Remove(this);
}

bool UObjectBaseUtility::IsTemplate(EObjectFlags TemplateTypes) const
{
	for (const UObjectBaseUtility* Each = this; Each; Each = Each->GetOuter())
	{
		if (Each->HasAnyFlags(TemplateTypes))
		{
			return true;
		}
	}
	return false;
}

FString UObjectBaseUtility::GetPathName(const UObject* StopOuter) const
{
	const UObject* Outer = GetOuter();
	if (!Outer || Outer == StopOuter)
	{
		return GetName();
	}
	FString Path = Outer->GetPathName(StopOuter);
	const bool bFirstInside = Outer->GetOuter() && !Outer->GetOuter()->GetOuter() && Outer->GetOuter() != StopOuter;
	Path += bFirstInside ? TEXT(':') : TEXT('.');
	GetFName().AppendString(Path);
	return Path;
}

FString UObjectBaseUtility::GetFullName(const UObject* StopOuter) const
{
	return GetClass()->GetName() + TEXT(" ") + GetPathName(StopOuter);
}

FString UObjectBaseUtility::GetExportPath() const
{
	return FString::Printf(TEXT("%s'%s'"), *GetClass()->GetPathName(), *GetPathName());
}

UPackage* UObjectBaseUtility::GetPackage() const
{
	const UObjectBaseUtility* Top = this;
	while (Top->GetOuter())
	{
		Top = Top->GetOuter();
	}
	return Top->IsA(UPackage::StaticClass()) ? (UPackage*)Top : nullptr;
}

UObject* UObjectBaseUtility::GetTypedOuter(const UClass* Target) const
{
	UObject* Outer = GetOuter();
	while (Outer && !Outer->IsA(Target))
	{
		Outer = Outer->GetOuter();
	}
	return Outer;
}

bool UObjectBaseUtility::IsIn(const UObject* SomeOuter) const
{
	const UObject* Outer = GetOuter();
	while (Outer && Outer != SomeOuter)
	{
		Outer = Outer->GetOuter();
	}
	return Outer && SomeOuter;
}

bool UObjectBaseUtility::IsA(const UClass* SomeBase) const
{
	return SomeBase && GetClass()->IsChildOf(SomeBase);
}

void* UObjectBaseUtility::GetInterfaceAddress(UClass* InterfaceClass)
{
	const FImplementedInterface* Found = GetClass()->FindInterface(InterfaceClass);
	return Found && !Found->bImplementedByK2 ? (uint8*)this + Found->PointerOffset : nullptr;
}

EInternalObjectFlags UObjectBaseUtility::GetInternalFlags() const
{
	return FObjectTable::Get().SlotOf(this).Flags;
}

void UObjectBaseUtility::AddToRoot()
{
	FObjectTable::Get().SlotOf(this).Flags |= EInternalObjectFlags::RootSet;
}

void UObjectBaseUtility::RemoveFromRoot()
{
	FObjectTable::Get().SlotOf(this).Flags &= ~EInternalObjectFlags::RootSet;
}

bool UObjectBaseUtility::IsRooted() const
{
	return EnumHasAnyFlags(GetInternalFlags(), EInternalObjectFlags::RootSet);
}

void UObjectBaseUtility::MarkAsGarbage()
{
	check(!IsRooted());
	FObjectTable::Get().SlotOf(this).Flags |= EInternalObjectFlags::Garbage;
}

void UObjectBaseUtility::ClearGarbage()
{
	FObjectTable::Get().SlotOf(this).Flags &= ~EInternalObjectFlags::Garbage;
}

bool UObjectBaseUtility::IsUnreachable() const
{
	return EnumHasAnyFlags(GetInternalFlags(), EInternalObjectFlags::Unreachable);
}

bool UObjectBaseUtility::MarkPackageDirty() const
{
	UPackage* Package = GetPackage();
	if (!Package || Package == GetTransientPackage() || HasAnyFlags(RF_Transient))
	{
		return false;
	}
	Package->SetDirtyFlag(true);
	return true;
}

bool IsValid(const UObject* Object)
{
	return Object && !EnumHasAnyFlags(Object->GetInternalFlags(), EInternalObjectFlags::Garbage);
}
