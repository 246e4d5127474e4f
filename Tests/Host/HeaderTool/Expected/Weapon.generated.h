#pragma once

#include "UObject/ObjectMacros.h"

enum class EFireMode : uint8;
template <>
UEnum* StaticEnum<EFireMode>();

enum EOldStyle : int;
template <>
UEnum* StaticEnum<EOldStyle>();

class FOnFired;
UFunction* Z_Delegate_FOnFired();
template <>
struct TDelegateSignature<FOnFired>
{
	static constexpr bool bMulticast = true;
	static UFunction* Get() { return Z_Delegate_FOnFired(); }
};

class FMayFire;
UFunction* Z_Delegate_FMayFire();
template <>
struct TDelegateSignature<FMayFire>
{
	static constexpr bool bMulticast = false;
	static UFunction* Get() { return Z_Delegate_FMayFire(); }
};

struct FAmmunition;
#define FID_Weapons_Weapon_h_40_GENERATED_BODY \
	friend struct Z_FAmmunition_Statics; \
	static UScriptStruct* StaticStruct(); \
	using Super = FTableRowBase;

class UWeapon;
UClass* Z_Class_UWeapon();
#define FID_Weapons_Weapon_h_63_GENERATED_BODY \
	DECLARE_REFLECTED_CLASS(UWeapon, UObject) \
	virtual bool CanFire_Implementation(const FString& Reason) const; \
	private:

#undef CURRENT_FILE_ID
#define CURRENT_FILE_ID FID_Weapons_Weapon_h
