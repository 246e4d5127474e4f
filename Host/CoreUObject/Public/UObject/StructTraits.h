#pragma once

#include "UObject/ScriptStruct.h"

/** Specialised for struct types of C++ that carry no GENERATED_BODY, such as FVector: gives their reflected twin. */
template <typename StructType>
struct TBaseStructure
{
	static UScriptStruct* Get() { return StructType::StaticStruct(); }
};

template <typename StructType>
UScriptStruct* StaticStruct()
{
	return TBaseStructure<StructType>::Get();
}

/** Specialised by a struct type to claim operations, as in `enum { WithAddStructReferencedObjects = true };`. */
struct TStructOpsTypeTraitsBase
{
	static constexpr bool WithImportTextItem = false;
	static constexpr bool WithExportTextItem = false;
	static constexpr bool WithIdentical = false;
	static constexpr bool WithAddStructReferencedObjects = false;
};
using TStructOpsTypeTraitsBase2Base = TStructOpsTypeTraitsBase;

template <typename StructType>
struct TStructOpsTypeTraitsBase2 : TStructOpsTypeTraitsBase
{
};

template <typename StructType>
struct TStructOpsTypeTraits : TStructOpsTypeTraitsBase2<StructType>
{
};

namespace Reflection
{
template <typename T>
concept CHasTypeHash = requires(const T& Value)
{
	{
		GetTypeHash(Value)
		} -> std::convertible_to<uint32>;
};

/** Fills in the operations that T has. */
template <typename T>
constexpr FCppStructOps MakeStructOps()
{
	using FTraits = TStructOpsTypeTraits<T>;
	FCppStructOps Ops;
	Ops.Size = (int32)sizeof(T);
	Ops.Alignment = (int32)alignof(T);
	Ops.Construct = [](void* Dest) { ::new (Dest) T(); };
	Ops.Destruct = [](void* Dest) { ((T*)Dest)->~T(); };
	Ops.Copy = [](void* Dest, const void* Source) { *(T*)Dest = *(const T*)Source; };
	Ops.bIsPlainOldData = std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>;
	if constexpr (FTraits::WithIdentical)
	{
		Ops.Identical = [](const void* A, const void* B) { return ((const T*)A)->Identical((const T*)B, 0); };
	}
	if constexpr (CHasTypeHash<T>)
	{
		Ops.GetTypeHash = [](const void* Value) { return (uint32)GetTypeHash(*(const T*)Value); };
	}
	if constexpr (FTraits::WithImportTextItem)
	{
		Ops.ImportTextItem =
			[](void* Value, const TCHAR*& Buffer, int32 PortFlags, UObject* Parent, FOutputDevice* Error)
		{ return ((T*)Value)->ImportTextItem(Buffer, PortFlags, Parent, Error); };
	}
	if constexpr (FTraits::WithExportTextItem)
	{
		Ops.ExportTextItem =
			[](const void* Value, FString& Text, const void* Default, UObject* Parent, int32 PortFlags, UObject* Root)
		{
			const T& Defaults = Default ? *(const T*)Default : *(const T*)Value;
			return ((const T*)Value)->ExportTextItem(Text, Defaults, Parent, PortFlags, Root);
		};
	}
	if constexpr (FTraits::WithAddStructReferencedObjects)
	{
		Ops.AddStructReferencedObjects = [](void* Value, FReferenceCollector& Collector)
		{ ((T*)Value)->AddStructReferencedObjects(Collector); };
	}
	return Ops;
}

template <typename T>
inline constexpr FCppStructOps StructOpsOf = MakeStructOps<T>();
} // namespace Reflection
