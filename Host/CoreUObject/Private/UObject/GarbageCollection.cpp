#include "UObject/GarbageCollection.h"

#include "ObjectTable.h"
#include "UObject/GCObject.h"
#include "UObject/ReflectionTables.h"
#include "UObject/UnrealType.h"

bool GIsGarbageCollecting = false;
bool GIsSavingPackage = false;

namespace
{
TSet<FGCObject*>& Referencers()
{
	// Never freed: a static of another file may unregister at the very end.
	static TSet<FGCObject*>& List = *new TSet<FGCObject*>();
	return List;
}

bool Has(const FObjectSlot& Slot, EInternalObjectFlags Flags)
{
	return EnumHasAnyFlags(Slot.Flags, Flags);
}

/** Finds all that is alive, from the roots along the references. */
class FMarker : public FReferenceCollector
{
public:
	explicit FMarker(EObjectFlags InKeepFlags)
		: KeepFlags(InKeepFlags)
	{
	}

	void Run()
	{
		for (FObjectSlot& Slot : Table.GetSlots())
		{
			Slot.Flags |= Slot.Object ? EInternalObjectFlags::Unreachable : EInternalObjectFlags::None;
		}
		for (const FObjectSlot& Slot : Table.GetSlots())
		{
			if (Slot.Object && IsRoot(Slot))
			{
				Reach(Slot.Object);
			}
		}
		for (FGCObject* Referencer : Referencers())
		{
			Referencer->AddReferencedObjects(*this);
		}
		while (!Pending.IsEmpty())
		{
			Visit(Pending.Pop());
		}
	}

	void HandleReference(UObject*& Object) override
	{
		if (!Object)
		{
			return;
		}
		const FObjectSlot& Slot = Table.SlotOf(Object);
		if (Has(Slot, EInternalObjectFlags::Garbage) && !Has(Slot, EInternalObjectFlags::RootSet))
		{
			Object = nullptr;
			return;
		}
		Reach(Object);
	}

private:
	bool IsRoot(const FObjectSlot& Slot) const
	{
		const bool bKept =
			Slot.Object->HasAnyFlags(KeepFlags | RF_MarkAsNative) && !Has(Slot, EInternalObjectFlags::Garbage);
		return bKept || Has(Slot, EInternalObjectFlags::RootSet);
	}

	void Reach(UObject* Object)
	{
		FObjectSlot& Slot = Table.SlotOf(Object);
		if (Has(Slot, EInternalObjectFlags::Unreachable))
		{
			Slot.Flags &= ~EInternalObjectFlags::Unreachable;
			Pending.Push(Object);
		}
	}

	/** The class and the outer are kept even when they are marked as garbage: the object can't do without. */
	void Visit(UObject* Object)
	{
		UClass* Class = Object->GetClass();
		Reach(Class);
		if (UObject* Outer = Object->GetOuter())
		{
			Reach(Outer);
		}
		Class->CollectReferences(Object, *this);
		if (Class->ClassAddReferencedObjects)
		{
			Class->ClassAddReferencedObjects(Object, *this);
		}
		if (Object->IsA(UStruct::StaticClass()))
		{
			VisitStruct((UStruct*)Object);
		}
	}

	void VisitStruct(UStruct* Struct)
	{
		if (UStruct* Parent = Struct->GetSuperStruct())
		{
			Reach(Parent);
		}
		for (UField* Child = Struct->Children; Child; Child = Child->Next)
		{
			Reach(Child);
		}
		for (FField* Field = Struct->ChildProperties; Field; Field = Field->Next)
		{
			VisitField(Field);
		}
	}

	/** The types that a property refers to. */
	void VisitField(const FField* Field)
	{
		TArray<FField*> Inner;
		const FProperty* Property = CastField<FProperty>(Field);
		Property->GetInnerFields(Inner);
		for (const FField* Each : Inner)
		{
			VisitField(Each);
		}
		const FStructProperty* Struct = CastField<FStructProperty>(Field);
		const FObjectPropertyBase* Object = CastField<FObjectPropertyBase>(Field);
		const FEnumProperty* Enum = CastField<FEnumProperty>(Field);
		const FClassProperty* ClassReference = CastField<FClassProperty>(Field);
		const FByteProperty* Byte = CastField<FByteProperty>(Field);
		UObject* const Types[] = {Struct ? Struct->Struct : nullptr, Object ? Object->PropertyClass : nullptr,
			Enum ? Enum->GetEnum() : nullptr, ClassReference ? ClassReference->MetaClass : nullptr,
			Byte ? Byte->Enum : nullptr};
		for (UObject* Type : Types)
		{
			if (Type)
			{
				Reach(Type);
			}
		}
	}

	FObjectTable& Table = FObjectTable::Get();
	EObjectFlags KeepFlags;
	TArray<UObject*> Pending;
};

TArray<UObject*> TakeUnreachable()
{
	TArray<UObject*> Dead;
	for (const FObjectSlot& Slot : FObjectTable::Get().GetSlots())
	{
		if (Slot.Object && Has(Slot, EInternalObjectFlags::Unreachable))
		{
			Dead.Add(Slot.Object);
		}
	}
	return Dead;
}

/** What describes other objects goes after them: first plain objects, then functions and structs, then classes. */
int32 OrderOfDeath(const UObject* Object)
{
	if (Object->IsA(UClass::StaticClass()))
	{
		return 3;
	}
	return Object->IsA(UField::StaticClass()) ? 2 : Object->GetOuter() ? 0 : 1;
}

void DestroyAll(TArray<UObject*>& Dead)
{
	for (UObject* Object : Dead)
	{
		Object->BeginDestroy();
	}
	for (UObject* Object : Dead)
	{
		Object->FinishDestroy();
	}
	TArray<UObject*> Groups[4];
	for (UObject* Object : Dead)
	{
		Groups[OrderOfDeath(Object)].Add(Object);
	}
	for (const TArray<UObject*>& Group : Groups)
	{
		for (UObject* Object : Group)
		{
			FObjectTable::Get().Detach(Object);
		}
	}
	for (const TArray<UObject*>& Group : Groups)
	{
		for (UObject* Object : Group)
		{
			FObjectTable::Destroy(Object, &Group == &Groups[0]);
		}
	}
}
} // namespace

FGCObject::FGCObject()
{
	Referencers().Add(this);
}

FGCObject::~FGCObject()
{
	Referencers().Remove(this);
}

void CollectGarbage(EObjectFlags KeepFlags, bool)
{
	Reflection::BuildNewTypes();
	check(!GIsGarbageCollecting && !FObjectInitializer::Current());
	TGuardValue<bool> Collecting(GIsGarbageCollecting, true);
	FMarker(KeepFlags).Run();
	TArray<UObject*> Dead = TakeUnreachable();
	DestroyAll(Dead);
}

void ShutdownUObjects()
{
	check(!GIsGarbageCollecting);
	TGuardValue<bool> Collecting(GIsGarbageCollecting, true);
	TArray<UObject*> All;
	for (FObjectSlot& Slot : FObjectTable::Get().GetSlots())
	{
		if (Slot.Object)
		{
			Slot.Flags |= EInternalObjectFlags::Unreachable;
			All.Add(Slot.Object);
		}
	}
	DestroyAll(All);
	Reflection::ForgetTypes();
}
