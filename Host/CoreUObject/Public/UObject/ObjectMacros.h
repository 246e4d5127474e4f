#pragma once

#include "Misc/EnumClassFlags.h"
#include "UObject/ObjectFlags.h"
#include "UObject/PropertyFlags.h"
#include "UObject/Script.h"

#include <type_traits>

class FObjectInitializer;
class FReferenceCollector;
class UClass;
class UEnum;
class UFunction;
class UObject;
class UScriptStruct;
struct FFrame;

/** The macros that the header tool reads. For the compiler they are empty, but for the body that the tool wrote. */
#define UCLASS(...)
#define USTRUCT(...)
#define UENUM(...)
#define UINTERFACE(...)
#define UPROPERTY(...)
#define UFUNCTION(...)
#define UPARAM(...)
#define UMETA(...)
#define UDELEGATE(...)

#define BODY_MACRO_COMBINE_INNER(A, B, C, D) A##B##C##D
#define BODY_MACRO_COMBINE(A, B, C, D) BODY_MACRO_COMBINE_INNER(A, B, C, D)
#define GENERATED_BODY(...) BODY_MACRO_COMBINE(CURRENT_FILE_ID, _, __LINE__, _GENERATED_BODY)
#define GENERATED_UCLASS_BODY(...) GENERATED_BODY()
#define GENERATED_USTRUCT_BODY(...) GENERATED_BODY()
#define GENERATED_UINTERFACE_BODY(...) GENERATED_BODY()

/** What every reflected class declares; its definitions stand in the generated source. */
#define DECLARE_REFLECTED_CLASS(TClass, TSuper) \
public:                                         \
	friend struct Z_##TClass##_Statics;         \
	using Super = TSuper;                       \
	using ThisClass = TClass;                   \
	static UClass* StaticClass();               \
	TClass(const TClass&) = delete;             \
	TClass& operator=(const TClass&) = delete;

/** What the C++ side of a reflected interface declares: the way to its reflected twin. */
#define DECLARE_REFLECTED_INTERFACE(TInterface, TClass) \
public:                                                 \
	friend struct Z_##TClass##_Statics;                 \
	using UClassType = TClass;                          \
	using ThisClass = TInterface;                       \
	virtual ~TInterface() = default;

/** The reflected twin of a C++ type. Game thread. */
template <typename EnumType>
UEnum* StaticEnum();

template <typename ClassType>
UClass* StaticClass()
{
	return ClassType::StaticClass();
}

/** Specialised by generated code for each dynamic delegate type: its kind and its signature. */
template <typename DelegateType>
struct TDelegateSignature;
