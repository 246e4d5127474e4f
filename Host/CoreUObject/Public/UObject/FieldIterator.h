#pragma once

#include "UObject/Class.h"
#include "UObject/Property.h"

enum class EFieldIterationFlags : uint8
{
	None = 0,
	IncludeSuper = 1,
	IncludeDeprecated = 2,
	IncludeInterfaces = 4,
	IncludeAll = IncludeSuper | IncludeDeprecated | IncludeInterfaces,
	Default = IncludeSuper | IncludeDeprecated
};
ENUM_CLASS_FLAGS(EFieldIterationFlags)

namespace EFieldIteratorFlags
{
enum SuperClassFlags
{
	ExcludeSuper = 0,
	IncludeSuper
};
enum DeprecatedPropertyFlags
{
	ExcludeDeprecated = 0,
	IncludeDeprecated
};
enum InterfaceClassFlags
{
	ExcludeInterfaces = 0,
	IncludeInterfaces
};
}

/**
 * Walks the properties or the functions of a struct, in the order of declaration, own ones before the parent's. The
 * struct doesn't change meanwhile. Game thread.
 */
template <typename T>
class TFieldIterator
{
	static constexpr bool bWalksFields = std::is_base_of_v<FField, T>;
	using FNode = std::conditional_t<bWalksFields, FField, UField>;

public:
	explicit TFieldIterator(const UStruct* InStruct, EFieldIterationFlags InFlags = EFieldIterationFlags::Default)
		: Struct(InStruct)
		, Flags(InFlags)
	{
		Enter();
	}
	TFieldIterator(const UStruct* InStruct, EFieldIteratorFlags::SuperClassFlags SuperFlags,
		EFieldIteratorFlags::DeprecatedPropertyFlags DeprecatedFlags = EFieldIteratorFlags::IncludeDeprecated,
		EFieldIteratorFlags::InterfaceClassFlags InterfaceFlags = EFieldIteratorFlags::ExcludeInterfaces)
		: TFieldIterator(InStruct,
			  (SuperFlags ? EFieldIterationFlags::IncludeSuper : EFieldIterationFlags::None) |
				  (DeprecatedFlags ? EFieldIterationFlags::IncludeDeprecated : EFieldIterationFlags::None) |
				  (InterfaceFlags ? EFieldIterationFlags::IncludeInterfaces : EFieldIterationFlags::None))
	{
	}

	explicit operator bool() const { return Node != nullptr; }
	T* operator*() const { return (T*)Node; }
	T* operator->() const { return (T*)Node; }
	TFieldIterator& operator++()
	{
		Node = (FNode*)Node->Next;
		SkipToMatch();
		return *this;
	}
	bool operator!=(const TFieldIterator& Other) const { return Node != Other.Node; }
	bool operator==(const TFieldIterator& Other) const { return Node == Other.Node; }
	/** The struct that the field at hand belongs to. */
	const UStruct* GetStruct() const { return Struct; }

	/** Makes an end for ranges. */
	TFieldIterator() = default;

private:
	static FNode* First(const UStruct* Owner)
	{
		if constexpr (bWalksFields)
		{
			return Owner->ChildProperties;
		}
		else
		{
			return Owner->Children;
		}
	}
	bool Matches() const
	{
		if constexpr (bWalksFields)
		{
			const bool bDeprecated =
				Node->template IsA<FProperty>() && ((FProperty*)Node)->HasAnyPropertyFlags(CPF_Deprecated);
			return Node->template IsA<T>() && (!bDeprecated || Has(EFieldIterationFlags::IncludeDeprecated));
		}
		else
		{
			return Node->IsA(T::StaticClass());
		}
	}
	bool Has(EFieldIterationFlags Flag) const { return (Flags & Flag) != EFieldIterationFlags::None; }
	void Enter()
	{
		Node = Struct ? First(Struct) : nullptr;
		NextInterface = 0;
		SkipToMatch();
	}
	void SkipToMatch()
	{
		while (true)
		{
			while (Node && !Matches())
			{
				Node = (FNode*)Node->Next;
			}
			if (Node || !Struct || !GoOn())
			{
				return;
			}
		}
	}
	/** To the interfaces of the struct at hand, then to its parent. @return false at the end. */
	bool GoOn()
	{
		if (!bWalksFields && Has(EFieldIterationFlags::IncludeInterfaces) && Struct->IsA(UClass::StaticClass()))
		{
			const UClass* Class = (const UClass*)Struct;
			if (NextInterface < Class->Interfaces.Num())
			{
				const UClass* Interface = Class->Interfaces[NextInterface++].Class;
				Node = Interface ? First(Interface) : nullptr;
				return true;
			}
		}
		NextInterface = 0;
		Struct = Has(EFieldIterationFlags::IncludeSuper) ? Struct->GetSuperStruct() : nullptr;
		Node = Struct ? First(Struct) : nullptr;
		return Struct != nullptr;
	}

	const UStruct* Struct = nullptr;
	FNode* Node = nullptr;
	EFieldIterationFlags Flags = EFieldIterationFlags::None;
	int32 NextInterface = 0;
};

/** The same for range-based loops. */
template <typename T>
struct TFieldRange
{
	template <typename... ArgTypes>
	explicit TFieldRange(const UStruct* Struct, ArgTypes... Args)
		: Begin(Struct, Args...)
	{
	}
	TFieldIterator<T> begin() const { return Begin; }
	TFieldIterator<T> end() const { return TFieldIterator<T>(); }

private:
	TFieldIterator<T> Begin;
};

/** The field of this name and kind; null without it. */
template <typename T>
T* FindFProperty(const UStruct* Owner, FName Name)
{
	return Owner ? CastField<T>(Owner->FindPropertyByName(Name)) : nullptr;
}
