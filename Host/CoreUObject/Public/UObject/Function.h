#pragma once

#include "UObject/Struct.h"

/**
 * A function that can be called by reflection. Its properties are the parameters in order, the result last. Game
 * thread.
 *
 * A call takes a frame: ParmsSize bytes in which every parameter is a constructed value at its property's offset.
 * FStructOnScope makes such a frame and UObject::ProcessEvent calls with it.
 */
class UFunction : public UStruct
{
	DECLARE_REFLECTED_CLASS(UFunction, UStruct)

	using FNativeFuncPtr = void (*)(UObject* Object, void* Parms);
	using FScriptBody = TFunction<void(UObject* Object, void* Parms)>;

	UFunction() = default;

	bool HasAnyFunctionFlags(EFunctionFlags Flags) const { return (FunctionFlags & Flags) != FUNC_None; }
	bool HasAllFunctionFlags(EFunctionFlags Flags) const { return (FunctionFlags & Flags) == Flags; }
	UFunction* GetSuperFunction() const { return (UFunction*)GetSuperStruct(); }
	UClass* GetOuterUClass() const;
	/** The property of the result, or null. */
	FProperty* GetReturnProperty() const;

	/** Whether a call does anything. */
	bool HasBody() const { return NativeFunc || Script; }
	/** Calls the body, if there is one. */
	void Invoke(UObject* Object, void* Parms);
	void SetNativeFunc(FNativeFuncPtr Function) { NativeFunc = Function; }
	FNativeFuncPtr GetNativeFunc() const { return NativeFunc; }
	/** Gives a body made at run time, which goes before a native one. */
	void SetScript(FScriptBody Body) { Script = MoveTemp(Body); }

	/** Counts the parameters and measures the frame, besides linking. */
	void StaticLink(bool bRelinkExistingProperties = false) override;
	const TCHAR* GetPrefixCPP() const override { return TEXT(""); }
	/** Whether both have the same parameter types in the same order and direction. */
	bool IsSignatureCompatibleWith(const UFunction* Other) const;

	EFunctionFlags FunctionFlags = FUNC_None;
	/** Parameters, the result included. */
	int32 NumParms = 0;
	int32 ParmsSize = 0;
	/** Offset of the result in the frame, or MAX_uint16 without one. */
	int32 ReturnValueOffset = MAX_uint16;

private:
	friend class FReflectionBuilder;

	FNativeFuncPtr NativeFunc = nullptr;
	FScriptBody Script;
};
