#pragma once

#include "UObject/ObjectMacros.h"

class UDamageable;
UClass* Z_Class_UDamageable();
#define FID_Weapons_Interfaces_h_9_GENERATED_BODY \
	DECLARE_REFLECTED_CLASS(UDamageable, UInterface) \
	public: \
	UDamageable() = default; \
	private:

class IDamageable;
#define FID_Weapons_Interfaces_h_14_GENERATED_BODY \
	DECLARE_REFLECTED_INTERFACE(IDamageable, UDamageable) \
	private:

class UBarrel;
UClass* Z_Class_UBarrel();
#define FID_Weapons_Interfaces_h_24_GENERATED_BODY \
	DECLARE_REFLECTED_CLASS(UBarrel, UObject) \
	public: \
	UBarrel(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get()); \
	public:

class USteelBarrel;
UClass* Z_Class_USteelBarrel();
#define FID_Weapons_Interfaces_h_32_GENERATED_BODY \
	DECLARE_REFLECTED_CLASS(USteelBarrel, UBarrel) \
	public: \
	USteelBarrel(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get()) : Super(ObjectInitializer) {} \
	private:

#undef CURRENT_FILE_ID
#define CURRENT_FILE_ID FID_Weapons_Interfaces_h
