#include "UObject/CoreStructs.h"

#include "UObject/ReflectionTables.h"

#include <cstddef>

namespace
{
using Reflection::FPropertyTable;
using Reflection::FStructRegistration;
using Reflection::FStructTable;
using Reflection::StructOpsOf;

constexpr EPropertyFlags MemberFlags = CPF_Edit | CPF_BlueprintVisible | CPF_SaveGame;

#define CORE_MEMBER(TStruct, Member, MemberKind)                                                                      \
	{                                                                                                                 \
		.Name = #Member, .Kind = EPropertyKind::MemberKind, .Flags = MemberFlags, .Offset = offsetof(TStruct, Member) \
	}

constexpr FPropertyTable VectorMembers[] = {
	CORE_MEMBER(FVector, X, Double), CORE_MEMBER(FVector, Y, Double), CORE_MEMBER(FVector, Z, Double)};
constexpr FPropertyTable Vector2DMembers[] = {CORE_MEMBER(FVector2D, X, Double), CORE_MEMBER(FVector2D, Y, Double)};
constexpr FPropertyTable RotatorMembers[] = {
	CORE_MEMBER(FRotator, Pitch, Double), CORE_MEMBER(FRotator, Yaw, Double), CORE_MEMBER(FRotator, Roll, Double)};
constexpr FPropertyTable LinearColorMembers[] = {CORE_MEMBER(FLinearColor, R, Float),
	CORE_MEMBER(FLinearColor, G, Float), CORE_MEMBER(FLinearColor, B, Float), CORE_MEMBER(FLinearColor, A, Float)};
constexpr FPropertyTable ColorMembers[] = {CORE_MEMBER(FColor, B, Byte), CORE_MEMBER(FColor, G, Byte),
	CORE_MEMBER(FColor, R, Byte), CORE_MEMBER(FColor, A, Byte)};

template <typename StructType>
constexpr FStructTable Describe(const char* CppName, Reflection::TTable<FPropertyTable> Members)
{
	FStructTable Table;
	Table.CppName = CppName;
	Table.Package = "/Script/CoreUObject";
	Table.Flags = STRUCT_Atomic;
	Table.Ops = &StructOpsOf<StructType>;
	Table.Properties = Members;
	return Table;
}
} // namespace

#define IMPLEMENT_CORE_STRUCT(TStruct, Members)                                               \
	static constexpr FStructTable Z_##TStruct##_Table = Describe<TStruct>(#TStruct, Members); \
	static FStructRegistration Z_##TStruct##_Registration(Z_##TStruct##_Table);               \
	UScriptStruct* TBaseStructure<TStruct>::Get()                                             \
	{                                                                                         \
		return Z_##TStruct##_Registration.Get();                                              \
	}

IMPLEMENT_CORE_STRUCT(FVector, VectorMembers)
IMPLEMENT_CORE_STRUCT(FVector2D, Vector2DMembers)
IMPLEMENT_CORE_STRUCT(FRotator, RotatorMembers)
IMPLEMENT_CORE_STRUCT(FLinearColor, LinearColorMembers)
IMPLEMENT_CORE_STRUCT(FColor, ColorMembers)
IMPLEMENT_CORE_STRUCT(FSoftObjectPath, {})
IMPLEMENT_CORE_STRUCT(FSoftClassPath, {})
