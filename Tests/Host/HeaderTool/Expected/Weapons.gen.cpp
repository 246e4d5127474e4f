#include "UObject/GeneratedSource.h"

#include "Inputs/Weapon.h"
#include "Inputs/Interfaces.h"

#pragma GCC diagnostic ignored "-Winvalid-offsetof"

UClass* Z_Class_ACharacter();
UClass* Z_Class_UBarrel();
UClass* Z_Class_UInterface();
UClass* Z_Class_UObject();
UClass* Z_Class_UWeapon();

struct Z_EFireMode_Statics
{
	static constexpr Reflection::FMetaDataTable Meta_Single[] = {
		{"DisplayName", "Single shot"},
		{"ToolTip", "One shot a pull."},
	};
	static constexpr Reflection::FMetaDataTable Meta_Automatic[] = {
		{"Hidden", ""},
	};
	static constexpr Reflection::FEnumeratorTable Values[] = {
		{"Single", int64(EFireMode::Single), Meta_Single},
		{"Burst", int64(EFireMode::Burst)},
		{"Automatic", int64(EFireMode::Automatic), Meta_Automatic},
	};
	static constexpr Reflection::FMetaDataTable MetaData[] = {
		{"BlueprintType", "true"},
		{"ToolTip", "How a weapon fires."},
	};
	static constexpr Reflection::FEnumTable Table = {
		.CppName = "EFireMode",
		.Package = "/Script/Weapons",
		.Form = UEnum::ECppForm::EnumClass,
		.Flags = EEnumFlags::None,
		.UnderlyingSize = sizeof(EFireMode),
		.Values = Values,
		.MetaData = MetaData,
	};
};
static Reflection::FEnumRegistration Z_EFireMode_Registration(Z_EFireMode_Statics::Table);
template <>
UEnum* StaticEnum<EFireMode>()
{
	return Z_EFireMode_Registration.Get();
}

struct Z_EOldStyle_Statics
{
	static constexpr Reflection::FEnumeratorTable Values[] = {
		{"OLD_First", int64(EOldStyle::OLD_First)},
		{"OLD_Second", int64(EOldStyle::OLD_Second)},
	};
	static constexpr Reflection::FEnumTable Table = {
		.CppName = "EOldStyle",
		.Package = "/Script/Weapons",
		.Form = UEnum::ECppForm::Regular,
		.Flags = EEnumFlags::None,
		.UnderlyingSize = sizeof(EOldStyle),
		.Values = Values,
	};
};
static Reflection::FEnumRegistration Z_EOldStyle_Registration(Z_EOldStyle_Statics::Table);
template <>
UEnum* StaticEnum<EOldStyle>()
{
	return Z_EOldStyle_Registration.Get();
}

struct Z_FOnFired_Statics
{
	struct FParms
	{
		UWeapon* Weapon;
		int32 RoundsLeft;
	};
	static constexpr Reflection::FPropertyTable Parameters[] = {
		{.Name = "Weapon", .Kind = EPropertyKind::Object, .Type = &Reflection::FieldOf<&Z_Class_UWeapon>, .Flags = CPF_Parm, .Offset = offsetof(FParms, Weapon)},
		{.Name = "RoundsLeft", .Kind = EPropertyKind::Int, .Flags = CPF_Parm, .Offset = offsetof(FParms, RoundsLeft)},
	};
	static constexpr Reflection::FFunctionTable Table = {
		.Name = "OnFired__DelegateSignature",
		.Package = "/Script/Weapons",
		.Flags = FUNC_Public | FUNC_Delegate | FUNC_MulticastDelegate,
		.Parameters = Parameters,
		.ParmsSize = sizeof(FParms),
		.ParmsAlignment = alignof(FParms),
	};
};
static Reflection::FDelegateRegistration Z_FOnFired_Registration(Z_FOnFired_Statics::Table);
UFunction* Z_Delegate_FOnFired()
{
	return Z_FOnFired_Registration.Get();
}

struct Z_FMayFire_Statics
{
	struct FParms
	{
		FString Reason;
		bool ReturnValue;
	};
	static constexpr Reflection::FPropertyTable Parameters[] = {
		{.Name = "Reason", .Kind = EPropertyKind::Str, .Flags = CPF_Parm, .Offset = offsetof(FParms, Reason)},
		{.Name = "ReturnValue", .Kind = EPropertyKind::Bool, .Flags = CPF_Parm | CPF_OutParm | CPF_ReturnParm, .Offset = offsetof(FParms, ReturnValue)},
	};
	static constexpr Reflection::FFunctionTable Table = {
		.Name = "MayFire__DelegateSignature",
		.Package = "/Script/Weapons",
		.Flags = FUNC_Public | FUNC_Delegate,
		.Parameters = Parameters,
		.ParmsSize = sizeof(FParms),
		.ParmsAlignment = alignof(FParms),
	};
};
static Reflection::FDelegateRegistration Z_FMayFire_Registration(Z_FMayFire_Statics::Table);
UFunction* Z_Delegate_FMayFire()
{
	return Z_FMayFire_Registration.Get();
}

struct Z_FAmmunition_Statics
{
	static constexpr Reflection::FMetaDataTable Meta_Rounds[] = {
		{"Category", "Ammo|Basic"},
		{"ClampMin", "0"},
		{"ClampMax", "300"},
	};
	REFLECTION_RAW_ACCESS static void SetBit_bTracer(void* Memory)
	{
		static_cast<FAmmunition*>(Memory)->bTracer = true;
	}
	static constexpr Reflection::FMetaDataTable Meta_Colour[] = {
		{"EditCondition", "bTracer"},
		{"EditConditionHides", ""},
	};
	static constexpr Reflection::FPropertyTable Properties[] = {
		{.Name = "Rounds", .Kind = EPropertyKind::Int, .Flags = CPF_NativeAccessSpecifierPublic | CPF_Edit | CPF_BlueprintVisible, .Offset = offsetof(FAmmunition, Rounds), .MetaData = Meta_Rounds},
		{.Name = "bTracer", .Kind = EPropertyKind::Bool, .Flags = CPF_NativeAccessSpecifierPublic, .SetBit = &SetBit_bTracer, .OwnerSize = sizeof(FAmmunition)},
		{.Name = "Colour", .Kind = Reflection::KindOf<FLinearColor>(), .Type = &Reflection::TypeOf<FLinearColor>, .Flags = CPF_NativeAccessSpecifierPublic, .Offset = offsetof(FAmmunition, Colour), .MetaData = Meta_Colour},
	};
	static constexpr Reflection::FMetaDataTable MetaData[] = {
		{"BlueprintType", "true"},
	};
	static constexpr Reflection::FStructTable Table = {
		.CppName = "FAmmunition",
		.Package = "/Script/Weapons",
		.Super = &Reflection::TypeOf<FTableRowBase>,
		.Flags = STRUCT_NoFlags,
		.Ops = &Reflection::StructOpsOf<FAmmunition>,
		.Properties = Properties,
		.MetaData = MetaData,
	};
};
static Reflection::FStructRegistration Z_FAmmunition_Registration(Z_FAmmunition_Statics::Table);
UScriptStruct* FAmmunition::StaticStruct()
{
	return Z_FAmmunition_Registration.Get();
}

struct Z_UWeapon_Statics
{
	static constexpr Reflection::FPropertyTable Owners_Inner = {.Name = "Owners_Inner", .Kind = EPropertyKind::Name};
	static constexpr Reflection::FPropertyTable Owners_Value = {.Name = "Owners_Value", .Kind = EPropertyKind::Object, .Type = &Reflection::FieldOf<&Z_Class_ACharacter>};
	static constexpr Reflection::FPropertyTable Attachments_Inner = {.Name = "Attachments_Inner", .Kind = EPropertyKind::Object, .Type = &Reflection::FieldOf<&Z_Class_UWeapon>};
	static constexpr Reflection::FMetaDataTable Meta_Attachments[] = {
		{"EditInline", "true"},
	};
	static constexpr Reflection::FPropertyTable Names_Inner = {.Name = "Names_Inner", .Kind = EPropertyKind::Str};
	static constexpr Reflection::FPropertyTable Properties[] = {
		{.Name = "OnFired", .Kind = EPropertyKind::MulticastDelegate, .Type = &Reflection::TypeOf<FOnFired>, .Flags = CPF_NativeAccessSpecifierPublic | CPF_BlueprintAssignable | CPF_BlueprintVisible, .Offset = offsetof(UWeapon, OnFired)},
		{.Name = "Owners", .Kind = EPropertyKind::Map, .Inner = &Owners_Inner, .Value = &Owners_Value, .Flags = CPF_NativeAccessSpecifierPublic | CPF_Config | CPF_Edit | CPF_UObjectWrapper, .Offset = offsetof(UWeapon, Owners)},
		{.Name = "Attachments", .Kind = EPropertyKind::Array, .Inner = &Attachments_Inner, .Flags = CPF_NativeAccessSpecifierPublic | CPF_Edit | CPF_PersistentInstance | CPF_ExportObject | CPF_InstancedReference | CPF_UObjectWrapper, .Offset = offsetof(UWeapon, Attachments), .MetaData = Meta_Attachments},
		{.Name = "Names", .Kind = EPropertyKind::Set, .Inner = &Names_Inner, .Flags = CPF_NativeAccessSpecifierPublic | CPF_Transient, .Offset = offsetof(UWeapon, Names)},
		{.Name = "Holder", .Kind = EPropertyKind::WeakObject, .Type = &Reflection::FieldOf<&Z_Class_ACharacter>, .Flags = CPF_NativeAccessSpecifierPublic, .Offset = offsetof(UWeapon, Holder)},
		{.Name = "Mesh", .Kind = EPropertyKind::SoftObject, .Type = &Reflection::FieldOf<&Z_Class_UObject>, .Flags = CPF_NativeAccessSpecifierPublic, .Offset = offsetof(UWeapon, Mesh)},
		{.Name = "Old", .Kind = EPropertyKind::Byte, .Type = &Reflection::EnumOf<EOldStyle>, .Flags = CPF_NativeAccessSpecifierPublic | CPF_Edit | CPF_DisableEditOnInstance, .Offset = offsetof(UWeapon, Old)},
		{.Name = "Kind", .Kind = EPropertyKind::Class, .Type = &Reflection::FieldOf<&Z_Class_UObject>, .Flags = CPF_NativeAccessSpecifierPublic, .Offset = offsetof(UWeapon, Kind)},
		{.Name = "Note", .Kind = EPropertyKind::Text, .Flags = CPF_NativeAccessSpecifierPublic | CPF_Edit | CPF_EditConst, .Offset = offsetof(UWeapon, Note)},
		{.Name = "Magazine", .Kind = Reflection::KindOf<FAmmunition>(), .Type = &Reflection::TypeOf<FAmmunition>, .Flags = CPF_NativeAccessSpecifierProtected, .Offset = offsetof(UWeapon, Magazine)},
		{.Name = "Damage", .Kind = EPropertyKind::Float, .Flags = CPF_NativeAccessSpecifierProtected, .Offset = offsetof(UWeapon, Damage), .ArrayDim = int32(std::extent_v<decltype(UWeapon::Damage)>)},
	};
	struct FParms_Fire
	{
		ACharacter* Shooter;
		FVector Direction;
		FHitResult Trace;
		FHitResult Hit;
		float Spread;
		EFireMode Mode;
		FString Sound;
		FName Tag;
		bool ReturnValue;
	};
	static constexpr Reflection::FPropertyTable Parameters_Fire[] = {
		{.Name = "Shooter", .Kind = EPropertyKind::Object, .Type = &Reflection::FieldOf<&Z_Class_ACharacter>, .Flags = CPF_Parm, .Offset = offsetof(FParms_Fire, Shooter)},
		{.Name = "Direction", .Kind = Reflection::KindOf<FVector>(), .Type = &Reflection::TypeOf<FVector>, .Flags = CPF_Parm | CPF_ConstParm | CPF_OutParm | CPF_ReferenceParm, .Offset = offsetof(FParms_Fire, Direction)},
		{.Name = "Trace", .Kind = Reflection::KindOf<FHitResult>(), .Type = &Reflection::TypeOf<FHitResult>, .Flags = CPF_Parm | CPF_OutParm | CPF_ReferenceParm, .Offset = offsetof(FParms_Fire, Trace)},
		{.Name = "Hit", .Kind = Reflection::KindOf<FHitResult>(), .Type = &Reflection::TypeOf<FHitResult>, .Flags = CPF_Parm | CPF_OutParm, .Offset = offsetof(FParms_Fire, Hit)},
		{.Name = "Spread", .Kind = EPropertyKind::Float, .Flags = CPF_Parm, .Offset = offsetof(FParms_Fire, Spread)},
		{.Name = "Mode", .Kind = EPropertyKind::Enum, .Underlying = Reflection::UnderlyingKind<EFireMode>(), .Type = &Reflection::EnumOf<EFireMode>, .Flags = CPF_Parm, .Offset = offsetof(FParms_Fire, Mode)},
		{.Name = "Sound", .Kind = EPropertyKind::Str, .Flags = CPF_Parm, .Offset = offsetof(FParms_Fire, Sound)},
		{.Name = "Tag", .Kind = EPropertyKind::Name, .Flags = CPF_Parm, .Offset = offsetof(FParms_Fire, Tag)},
		{.Name = "ReturnValue", .Kind = EPropertyKind::Bool, .Flags = CPF_Parm | CPF_OutParm | CPF_ReturnParm, .Offset = offsetof(FParms_Fire, ReturnValue)},
	};
	static constexpr Reflection::FMetaDataTable Meta_Fire[] = {
		{"Category", "Weapon"},
		{"ToolTip", "Fires once."},
		{"CPP_Default_Spread", "1.500000"},
		{"CPP_Default_Mode", "Burst"},
		{"CPP_Default_Sound", "bang, \"loud\""},
		{"CPP_Default_Tag", "None"},
	};
	static void Exec_Fire([[maybe_unused]] UObject* Object, [[maybe_unused]] void* Memory)
	{
		FParms_Fire& Parms = *static_cast<FParms_Fire*>(Memory);
		Parms.ReturnValue = static_cast<UWeapon*>(Object)->Fire(Parms.Shooter, Parms.Direction, Parms.Trace, Parms.Hit, Parms.Spread, Parms.Mode, Parms.Sound, Parms.Tag);
	}
	struct FParms_GetKnownWeapons
	{
		const UObject* WorldContext;
		FVector Place;
		TArray<TSubclassOf<UWeapon>> ReturnValue;
	};
	static constexpr Reflection::FPropertyTable GetKnownWeapons_ReturnValue_Inner = {.Name = "ReturnValue_Inner", .Kind = EPropertyKind::Class, .Type = &Reflection::FieldOf<&Z_Class_UWeapon>};
	static constexpr Reflection::FPropertyTable Parameters_GetKnownWeapons[] = {
		{.Name = "WorldContext", .Kind = EPropertyKind::Object, .Type = &Reflection::FieldOf<&Z_Class_UObject>, .Flags = CPF_Parm | CPF_ConstParm, .Offset = offsetof(FParms_GetKnownWeapons, WorldContext)},
		{.Name = "Place", .Kind = Reflection::KindOf<FVector>(), .Type = &Reflection::TypeOf<FVector>, .Flags = CPF_Parm, .Offset = offsetof(FParms_GetKnownWeapons, Place)},
		{.Name = "ReturnValue", .Kind = EPropertyKind::Array, .Inner = &GetKnownWeapons_ReturnValue_Inner, .Flags = CPF_Parm | CPF_OutParm | CPF_ReturnParm, .Offset = offsetof(FParms_GetKnownWeapons, ReturnValue)},
	};
	static constexpr Reflection::FMetaDataTable Meta_GetKnownWeapons[] = {
		{"Category", "Weapon"},
		{"CPP_Default_Place", "(X=1.000000,Y=2.500000,Z=-3.000000)"},
	};
	static void Exec_GetKnownWeapons([[maybe_unused]] UObject* Object, [[maybe_unused]] void* Memory)
	{
		FParms_GetKnownWeapons& Parms = *static_cast<FParms_GetKnownWeapons*>(Memory);
		Parms.ReturnValue = UWeapon::GetKnownWeapons(Parms.WorldContext, Parms.Place);
	}
	struct FParms_GetRounds
	{
		int32 ReturnValue;
	};
	static constexpr Reflection::FPropertyTable Parameters_GetRounds[] = {
		{.Name = "ReturnValue", .Kind = EPropertyKind::Int, .Flags = CPF_Parm | CPF_OutParm | CPF_ReturnParm, .Offset = offsetof(FParms_GetRounds, ReturnValue)},
	};
	static void Exec_GetRounds([[maybe_unused]] UObject* Object, [[maybe_unused]] void* Memory)
	{
		FParms_GetRounds& Parms = *static_cast<FParms_GetRounds*>(Memory);
		Parms.ReturnValue = static_cast<UWeapon*>(Object)->GetRounds();
	}
	struct FParms_CountRounds
	{
		int32 ReturnValue;
	};
	static constexpr Reflection::FPropertyTable Parameters_CountRounds[] = {
		{.Name = "ReturnValue", .Kind = EPropertyKind::Int, .Flags = CPF_Parm | CPF_OutParm | CPF_ReturnParm, .Offset = offsetof(FParms_CountRounds, ReturnValue)},
	};
	static void Exec_CountRounds([[maybe_unused]] UObject* Object, [[maybe_unused]] void* Memory)
	{
		FParms_CountRounds& Parms = *static_cast<FParms_CountRounds*>(Memory);
		Parms.ReturnValue = static_cast<UWeapon*>(Object)->CountRounds();
	}
	struct FParms_OnJammed
	{
		int32 Severity;
		FString Message;
	};
	static constexpr Reflection::FPropertyTable Parameters_OnJammed[] = {
		{.Name = "Severity", .Kind = EPropertyKind::Int, .Flags = CPF_Parm, .Offset = offsetof(FParms_OnJammed, Severity)},
		{.Name = "Message", .Kind = EPropertyKind::Str, .Flags = CPF_Parm | CPF_OutParm, .Offset = offsetof(FParms_OnJammed, Message)},
	};
	struct FParms_CanFire
	{
		FString Reason;
		bool ReturnValue;
	};
	static constexpr Reflection::FPropertyTable Parameters_CanFire[] = {
		{.Name = "Reason", .Kind = EPropertyKind::Str, .Flags = CPF_Parm, .Offset = offsetof(FParms_CanFire, Reason)},
		{.Name = "ReturnValue", .Kind = EPropertyKind::Bool, .Flags = CPF_Parm | CPF_OutParm | CPF_ReturnParm, .Offset = offsetof(FParms_CanFire, ReturnValue)},
	};
	static void Exec_CanFire([[maybe_unused]] UObject* Object, [[maybe_unused]] void* Memory)
	{
		FParms_CanFire& Parms = *static_cast<FParms_CanFire*>(Memory);
		Parms.ReturnValue = static_cast<UWeapon*>(Object)->CanFire_Implementation(Parms.Reason);
	}
	static constexpr Reflection::FFunctionTable Functions[] = {
		{
		.Name = "Fire",
		.Flags = FUNC_BlueprintCallable | FUNC_Public | FUNC_Native | FUNC_HasOutParms,
		.Exec = &Exec_Fire,
		.Parameters = Parameters_Fire,
		.ParmsSize = sizeof(FParms_Fire),
		.ParmsAlignment = alignof(FParms_Fire),
		.MetaData = Meta_Fire,
		},
		{
		.Name = "GetKnownWeapons",
		.Flags = FUNC_BlueprintCallable | FUNC_BlueprintPure | FUNC_Public | FUNC_Native | FUNC_Static,
		.Exec = &Exec_GetKnownWeapons,
		.Parameters = Parameters_GetKnownWeapons,
		.ParmsSize = sizeof(FParms_GetKnownWeapons),
		.ParmsAlignment = alignof(FParms_GetKnownWeapons),
		.MetaData = Meta_GetKnownWeapons,
		},
		{
		.Name = "GetRounds",
		.Flags = FUNC_BlueprintCallable | FUNC_Public | FUNC_Native | FUNC_Const | FUNC_BlueprintPure,
		.Exec = &Exec_GetRounds,
		.Parameters = Parameters_GetRounds,
		.ParmsSize = sizeof(FParms_GetRounds),
		.ParmsAlignment = alignof(FParms_GetRounds),
		},
		{
		.Name = "CountRounds",
		.Flags = FUNC_BlueprintCallable | FUNC_Public | FUNC_Native | FUNC_Const,
		.Exec = &Exec_CountRounds,
		.Parameters = Parameters_CountRounds,
		.ParmsSize = sizeof(FParms_CountRounds),
		.ParmsAlignment = alignof(FParms_CountRounds),
		},
		{
		.Name = "OnJammed",
		.Flags = FUNC_BlueprintEvent | FUNC_Event | FUNC_Public | FUNC_HasOutParms,
		.Parameters = Parameters_OnJammed,
		.ParmsSize = sizeof(FParms_OnJammed),
		.ParmsAlignment = alignof(FParms_OnJammed),
		},
		{
		.Name = "CanFire",
		.Flags = FUNC_BlueprintEvent | FUNC_Event | FUNC_Public | FUNC_Native | FUNC_Const,
		.Exec = &Exec_CanFire,
		.Parameters = Parameters_CanFire,
		.ParmsSize = sizeof(FParms_CanFire),
		.ParmsAlignment = alignof(FParms_CanFire),
		},
	};
	static inline const Reflection::FInterfaceTable Interfaces[] = {
		Reflection::InterfaceOf<UWeapon, IDamageSource>(),
	};
	static constexpr Reflection::FMetaDataTable MetaData[] = {
		{"IsBlueprintBase", "true"},
		{"BlueprintType", "true"},
		{"HideCategories", "Tags My Things"},
		{"DisplayName", "Gun"},
		{"ToolTip", "A thing that shoots.\n\nSecond paragraph with a \"quote\" and \303\274n\303\257code."},
	};
	static void Construct(const FObjectInitializer& Initializer)
	{
		::new (Initializer.GetMemory()) UWeapon(Initializer);
	}
	static constexpr Reflection::FClassTable Table = {
		.CppName = "UWeapon",
		.Package = "/Script/Weapons",
		.Super = &Z_Class_UObject,
		.Size = sizeof(UWeapon),
		.Alignment = alignof(UWeapon),
		.Flags = CLASS_Native | CLASS_Abstract | CLASS_Config | CLASS_DefaultConfig,
		.Config = "Game",
		.Construct = &Construct,
		.AddReferencedObjects = &UWeapon::AddReferencedObjects,
		.Properties = Properties,
		.Functions = Functions,
		.Interfaces = Interfaces,
		.MetaData = MetaData,
	};
};
static Reflection::FClassRegistration Z_UWeapon_Registration(Z_UWeapon_Statics::Table);
UClass* Z_Class_UWeapon()
{
	return Z_UWeapon_Registration.Get();
}
UClass* UWeapon::StaticClass()
{
	return Z_Class_UWeapon();
}
void UWeapon::OnJammed(int32 Severity, FString& Message)
{
	Z_UWeapon_Statics::FParms_OnJammed Parms{Severity, Message};
	this->ProcessEvent(FindFunctionChecked(FName(TEXT("OnJammed"))), &Parms);
	Message = Parms.Message;
}
bool UWeapon::CanFire(const FString& Reason) const
{
	Z_UWeapon_Statics::FParms_CanFire Parms{Reason, {}};
	const_cast<UWeapon*>(this)->ProcessEvent(FindFunctionChecked(FName(TEXT("CanFire"))), &Parms);
	return Parms.ReturnValue;
}

struct Z_UDamageable_Statics
{
	struct FParms_ApplyDamage
	{
		float Amount;
		float ReturnValue;
	};
	static constexpr Reflection::FPropertyTable Parameters_ApplyDamage[] = {
		{.Name = "Amount", .Kind = EPropertyKind::Float, .Flags = CPF_Parm, .Offset = offsetof(FParms_ApplyDamage, Amount)},
		{.Name = "ReturnValue", .Kind = EPropertyKind::Float, .Flags = CPF_Parm | CPF_OutParm | CPF_ReturnParm, .Offset = offsetof(FParms_ApplyDamage, ReturnValue)},
	};
	static constexpr Reflection::FMetaDataTable Meta_ApplyDamage[] = {
		{"Category", "Damage"},
	};
	static void Exec_ApplyDamage([[maybe_unused]] UObject* Object, [[maybe_unused]] void* Memory)
	{
		FParms_ApplyDamage& Parms = *static_cast<FParms_ApplyDamage*>(Memory);
		Parms.ReturnValue = static_cast<IDamageable*>(Object->GetInterfaceAddress(UDamageable::StaticClass()))->ApplyDamage(Parms.Amount);
	}
	static constexpr Reflection::FFunctionTable Functions[] = {
		{
		.Name = "ApplyDamage",
		.Flags = FUNC_BlueprintCallable | FUNC_Public | FUNC_Native,
		.Exec = &Exec_ApplyDamage,
		.Parameters = Parameters_ApplyDamage,
		.ParmsSize = sizeof(FParms_ApplyDamage),
		.ParmsAlignment = alignof(FParms_ApplyDamage),
		.MetaData = Meta_ApplyDamage,
		},
	};
	static void Construct(const FObjectInitializer& Initializer)
	{
		::new (Initializer.GetMemory()) UDamageable();
	}
	static constexpr Reflection::FClassTable Table = {
		.CppName = "UDamageable",
		.Package = "/Script/Weapons",
		.Super = &Z_Class_UInterface,
		.Size = sizeof(UDamageable),
		.Alignment = alignof(UDamageable),
		.Flags = CLASS_Native | CLASS_Interface | CLASS_Abstract | CLASS_MinimalAPI,
		.Construct = &Construct,
		.AddReferencedObjects = &UDamageable::AddReferencedObjects,
		.Functions = Functions,
	};
};
static Reflection::FClassRegistration Z_UDamageable_Registration(Z_UDamageable_Statics::Table);
UClass* Z_Class_UDamageable()
{
	return Z_UDamageable_Registration.Get();
}
UClass* UDamageable::StaticClass()
{
	return Z_Class_UDamageable();
}

struct Z_UBarrel_Statics
{
	static inline const Reflection::FInterfaceTable Interfaces[] = {
		Reflection::InterfaceOf<UBarrel, IDamageable>(),
	};
	static void Construct(const FObjectInitializer& Initializer)
	{
		::new (Initializer.GetMemory()) UBarrel(Initializer);
	}
	static constexpr Reflection::FClassTable Table = {
		.CppName = "UBarrel",
		.Package = "/Script/Weapons",
		.Super = &Z_Class_UObject,
		.Size = sizeof(UBarrel),
		.Alignment = alignof(UBarrel),
		.Flags = CLASS_Native,
		.Construct = &Construct,
		.AddReferencedObjects = &UBarrel::AddReferencedObjects,
		.Interfaces = Interfaces,
	};
};
static Reflection::FClassRegistration Z_UBarrel_Registration(Z_UBarrel_Statics::Table);
UClass* Z_Class_UBarrel()
{
	return Z_UBarrel_Registration.Get();
}
UClass* UBarrel::StaticClass()
{
	return Z_Class_UBarrel();
}

struct Z_USteelBarrel_Statics
{
	static void Construct(const FObjectInitializer& Initializer)
	{
		::new (Initializer.GetMemory()) USteelBarrel(Initializer);
	}
	static constexpr Reflection::FClassTable Table = {
		.CppName = "USteelBarrel",
		.Package = "/Script/Weapons",
		.Super = &Z_Class_UBarrel,
		.Size = sizeof(USteelBarrel),
		.Alignment = alignof(USteelBarrel),
		.Flags = CLASS_Native,
		.Construct = &Construct,
		.AddReferencedObjects = &USteelBarrel::AddReferencedObjects,
	};
};
static Reflection::FClassRegistration Z_USteelBarrel_Registration(Z_USteelBarrel_Statics::Table);
UClass* Z_Class_USteelBarrel()
{
	return Z_USteelBarrel_Registration.Get();
}
UClass* USteelBarrel::StaticClass()
{
	return Z_Class_USteelBarrel();
}

extern "C" void CorvexaReflection_Weapons() {}
