#pragma once

#include "UObject/Class.h"
#include "UObject/EnumProperty.h"

/** The kinds of properties that generated code names. */
enum class EPropertyKind : uint8
{
	Int8,
	Int16,
	Int,
	Int64,
	Byte,
	UInt16,
	UInt32,
	UInt64,
	Float,
	Double,
	Bool,
	Enum,
	Str,
	Name,
	Text,
	Struct,
	Object,
	Class,
	WeakObject,
	SoftObject,
	SoftClass,
	Interface,
	Array,
	Set,
	Map,
	Delegate,
	MulticastDelegate
};

/** Lets a bit be set in raw memory of a class's size, to find out where the compiler put it. */
#define REFLECTION_RAW_ACCESS __attribute__((no_sanitize("undefined")))

/** The constant tables that generated code describes types with, and the registrations that hand them over. */
namespace Reflection
{
/** A constant array of the program, of any length. */
template <typename T>
struct TTable
{
	constexpr TTable() = default;
	template <int32 Count>
	constexpr TTable(const T (&Rows)[Count])
		: First(Rows)
		, Num(Count)
	{
	}
	constexpr const T* begin() const { return First; }
	constexpr const T* end() const { return First + Num; }

	const T* First = nullptr;
	int32 Num = 0;
};

struct FMetaDataTable
{
	const char* Key = nullptr;
	const char* Value = nullptr;
};

struct FPropertyTable
{
	const char* Name = nullptr;
	EPropertyKind Kind = EPropertyKind::Int;
	/** Of an enumeration: the number underneath. */
	EPropertyKind Underlying = EPropertyKind::Byte;
	/** The class, struct, enumeration or signature behind the property. */
	UField* (*Type)() = nullptr;
	const FPropertyTable* Inner = nullptr;
	const FPropertyTable* Value = nullptr;
	EPropertyFlags Flags = CPF_None;
	/** Of a bit: sets it in zeroed memory of OwnerSize bytes. */
	void (*SetBit)(void* Memory) = nullptr;
	uint64 OwnerSize = 0;
	uint64 Offset = 0;
	int32 ArrayDim = 1;
	TTable<FMetaDataTable> MetaData{};
};

struct FFunctionTable
{
	const char* Name = nullptr;
	const char* Package = nullptr;
	EFunctionFlags Flags = FUNC_None;
	UFunction::FNativeFuncPtr Exec = nullptr;
	TTable<FPropertyTable> Parameters{};
	uint64 ParmsSize = 0;
	uint64 ParmsAlignment = 1;
	TTable<FMetaDataTable> MetaData{};
};

struct FInterfaceTable
{
	UClass* (*Class)() = nullptr;
	int32 Offset = 0;
};

struct FClassTable
{
	const char* CppName = nullptr;
	const char* Package = nullptr;
	UClass* (*Super)() = nullptr;
	uint64 Size = 0;
	uint64 Alignment = 1;
	EClassFlags Flags = CLASS_None;
	const char* Config = nullptr;
	UClass::FConstructor Construct = nullptr;
	UClass::FAddReferencedObjects AddReferencedObjects = nullptr;
	TTable<FPropertyTable> Properties{};
	TTable<FFunctionTable> Functions{};
	TTable<FInterfaceTable> Interfaces{};
	TTable<FMetaDataTable> MetaData{};
};

struct FStructTable
{
	const char* CppName = nullptr;
	const char* Package = nullptr;
	UField* (*Super)() = nullptr;
	EStructFlags Flags = STRUCT_NoFlags;
	const FCppStructOps* Ops = nullptr;
	TTable<FPropertyTable> Properties{};
	TTable<FMetaDataTable> MetaData{};
};

struct FEnumeratorTable
{
	const char* Name = nullptr;
	int64 Value = 0;
	TTable<FMetaDataTable> MetaData{};
};

struct FEnumTable
{
	const char* CppName = nullptr;
	const char* Package = nullptr;
	UEnum::ECppForm Form = UEnum::ECppForm::EnumClass;
	EEnumFlags Flags = EEnumFlags::None;
	uint64 UnderlyingSize = 1;
	TTable<FEnumeratorTable> Values{};
	TTable<FMetaDataTable> MetaData{};
};

/** Enters a type's table into the list of types to build, when the program starts, and knows the type once it is built.
 */
template <typename TableType, typename ObjectType>
class TRegistration
{
public:
	explicit TRegistration(const TableType& InTable)
		: Table(&InTable)
		, Next(First)
	{
		First = this;
		++Count;
	}

	/** The type, built on first demand together with all others that are known by then. */
	ObjectType* Get()
	{
		if (!Object)
		{
			ProcessNewlyLoadedUObjects();
			check(Object);
		}
		return Object;
	}

	const TableType* Table;
	TRegistration* Next;
	ObjectType* Object = nullptr;

	static inline TRegistration* First = nullptr;
	static inline int32 Count = 0;

private:
	static void ProcessNewlyLoadedUObjects();
};

using FClassRegistration = TRegistration<FClassTable, UClass>;
using FStructRegistration = TRegistration<FStructTable, UScriptStruct>;
using FEnumRegistration = TRegistration<FEnumTable, UEnum>;
using FDelegateRegistration = TRegistration<FFunctionTable, UFunction>;

/** Builds what was registered since the last call: all objects first, then what they say about each other. */
void BuildNewTypes();
/** Forgets every type once their objects are gone, so that the next demand builds them anew. */
void ForgetTypes();

template <typename TableType, typename ObjectType>
void TRegistration<TableType, ObjectType>::ProcessNewlyLoadedUObjects()
{
	BuildNewTypes();
}

/** Whether F is a dynamic delegate rather than a struct. */
template <typename F>
concept CDynamicDelegate = requires
{
	TDelegateSignature<F>::bMulticast;
};

template <typename F>
constexpr EPropertyKind KindOf()
{
	if constexpr (CDynamicDelegate<F>)
	{
		return TDelegateSignature<F>::bMulticast ? EPropertyKind::MulticastDelegate : EPropertyKind::Delegate;
	}
	else
	{
		return EPropertyKind::Struct;
	}
}

template <typename F>
UField* TypeOf()
{
	if constexpr (CDynamicDelegate<F>)
	{
		return TDelegateSignature<F>::Get();
	}
	else
	{
		return TBaseStructure<F>::Get();
	}
}

template <typename E>
UField* EnumOf()
{
	return StaticEnum<E>();
}

template <auto Getter>
UField* FieldOf()
{
	return Getter();
}

template <typename E>
constexpr EPropertyKind UnderlyingKind()
{
	constexpr bool bSigned = std::is_signed_v<std::underlying_type_t<E>>;
	switch (sizeof(E))
	{
	case 1:
		return bSigned ? EPropertyKind::Int8 : EPropertyKind::Byte;
	case 2:
		return bSigned ? EPropertyKind::Int16 : EPropertyKind::UInt16;
	case 4:
		return bSigned ? EPropertyKind::Int : EPropertyKind::UInt32;
	default:
		return bSigned ? EPropertyKind::Int64 : EPropertyKind::UInt64;
	}
}

/** How far into an object its interface lies; an I type without a reflected twin gives no class. */
template <typename ClassType, typename InterfaceType>
REFLECTION_RAW_ACCESS FInterfaceTable InterfaceOf()
{
	if constexpr (requires { typename InterfaceType::UClassType; })
	{
		ClassType* Probe = (ClassType*)(UPTRINT)0x10000;
		const int32 Offset = (int32)((UPTRINT) static_cast<InterfaceType*>(Probe) - (UPTRINT)Probe);
		return {&InterfaceType::UClassType::StaticClass, Offset};
	}
	else
	{
		return {};
	}
}
} // namespace Reflection
