#include "UObject/GarbageCollection.h"
#include "UObject/Interface.h"
#include "UObject/ReflectionTables.h"

/** Describes a class of the reflection system itself: it has no reflected members, so no tool writes its table. */
#define IMPLEMENT_INTRINSIC_CLASS(TClass, SuperGetter, ClassFlags)                                                 \
	struct Z_##TClass##_Statics                                                                                    \
	{                                                                                                              \
		static void Construct(const FObjectInitializer& Initializer) { ::new (Initializer.GetMemory()) TClass(); } \
		static constexpr Reflection::FClassTable Table = {                                                         \
			.CppName = #TClass,                                                                                    \
			.Package = "/Script/CoreUObject",                                                                      \
			.Super = SuperGetter,                                                                                  \
			.Size = sizeof(TClass),                                                                                \
			.Alignment = alignof(TClass),                                                                          \
			.Flags = CLASS_Intrinsic | ClassFlags,                                                                 \
			.Construct = &Construct,                                                                               \
			.AddReferencedObjects = &TClass::AddReferencedObjects,                                                 \
		};                                                                                                         \
	};                                                                                                             \
	static Reflection::FClassRegistration Z_##TClass##_Registration(Z_##TClass##_Statics::Table);                  \
	UClass* Z_Class_##TClass()                                                                                     \
	{                                                                                                              \
		return Z_##TClass##_Registration.Get();                                                                    \
	}                                                                                                              \
	UClass* TClass::StaticClass()                                                                                  \
	{                                                                                                              \
		return Z_Class_##TClass();                                                                                 \
	}

IMPLEMENT_INTRINSIC_CLASS(UObject, nullptr, CLASS_Abstract)
IMPLEMENT_INTRINSIC_CLASS(UField, &Z_Class_UObject, CLASS_Abstract)
IMPLEMENT_INTRINSIC_CLASS(UStruct, &Z_Class_UField, CLASS_None)
IMPLEMENT_INTRINSIC_CLASS(UScriptStruct, &Z_Class_UStruct, CLASS_None)
IMPLEMENT_INTRINSIC_CLASS(UFunction, &Z_Class_UStruct, CLASS_None)
IMPLEMENT_INTRINSIC_CLASS(UClass, &Z_Class_UStruct, CLASS_None)
IMPLEMENT_INTRINSIC_CLASS(UEnum, &Z_Class_UField, CLASS_None)
IMPLEMENT_INTRINSIC_CLASS(UPackage, &Z_Class_UObject, CLASS_None)
IMPLEMENT_INTRINSIC_CLASS(UInterface, &Z_Class_UObject, CLASS_Abstract)

bool UClass::IsBuilt()
{
	return Z_UClass_Registration.Object != nullptr;
}
