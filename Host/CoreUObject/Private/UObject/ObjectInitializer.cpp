#include "UObject/ObjectInitializer.h"

#include "ObjectFactory.h"

namespace
{
FObjectInitializer* Innermost = nullptr;
}

FObjectInitializer::FObjectInitializer(
	UClass* InClass, UObject* InOuter, FName InName, EObjectFlags InFlags, UObject* InArchetype)
	: Class(InClass)
	, Outer(InOuter)
	, Name(InName)
	, Flags(InFlags)
	, Archetype(InArchetype)
	, Enclosing(Innermost)
{
	Innermost = this;
}

FObjectInitializer::~FObjectInitializer()
{
	Innermost = Enclosing;
}

FObjectInitializer& FObjectInitializer::Get()
{
	checkf(Innermost, TEXT("no object is under construction"));
	return *Innermost;
}

FObjectInitializer* FObjectInitializer::Current()
{
	return Innermost;
}

const FObjectInitializer::FOverride* FObjectInitializer::FindOverride(FName SubobjectName) const
{
	return Overrides.FindByPredicate([SubobjectName](const FOverride& Each) { return Each.Name == SubobjectName; });
}

const FObjectInitializer& FObjectInitializer::SetDefaultSubobjectClass(FName SubobjectName, const UClass* InClass) const
{
	if (!FindOverride(SubobjectName))
	{
		Overrides.Add(FOverride{SubobjectName, InClass});
	}
	return *this;
}

const FObjectInitializer& FObjectInitializer::DoNotCreateDefaultSubobject(FName SubobjectName) const
{
	return SetDefaultSubobjectClass(SubobjectName, nullptr);
}

UObject* FObjectInitializer::CreateDefaultSubobject(UObject* InOuter, FName SubobjectName, const UClass* ReturnType,
	const UClass* ClassToCreate, bool bIsRequired, bool bIsTransient) const
{
	const FOverride* Override = FindOverride(SubobjectName);
	const UClass* Wanted = Override ? Override->Class : ClassToCreate;
	if (!Wanted)
	{
		checkf(!bIsRequired || Override, TEXT("%s has no class"), *SubobjectName.ToString());
		return nullptr;
	}
	check(InOuter == Object && Wanted->IsChildOf(ReturnType));
	EObjectFlags PartFlags =
		RF_DefaultSubObject | (InOuter->GetFlags() & (RF_Public | RF_Transactional | RF_Transient));
	PartFlags |= InOuter->IsTemplate() ? RF_ArchetypeObject : RF_NoFlags;
	PartFlags |= bIsTransient ? RF_Transient : RF_NoFlags;
	return StaticConstructObject(InOuter, Wanted, SubobjectName, PartFlags);
}
