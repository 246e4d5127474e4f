#include "Input/SkirmishInputActions.h"

#include "EnhancedActionKeyMapping.h"
#include "InputAction.h"
#include "InputCoreTypes.h"
#include "InputMappingContext.h"
#include "InputModifiers.h"

namespace
{

UInputAction* MakeAction(UObject* Outer, const TCHAR* Name, EInputActionValueType ValueType)
{
	UInputAction* Action = NewObject<UInputAction>(Outer, Name);
	Action->ValueType = ValueType;
	return Action;
}

/** Turns a key's single axis from X, where keys report, to Y. */
UInputModifier* MakeSwizzle(UObject* Outer)
{
	UInputModifierSwizzleAxis* Swizzle = NewObject<UInputModifierSwizzleAxis>(Outer);
	Swizzle->Order = EInputAxisSwizzle::YXZ;
	return Swizzle;
}

UInputModifier* MakeNegate(UObject* Outer, bool bX, bool bY)
{
	UInputModifierNegate* Negate = NewObject<UInputModifierNegate>(Outer);
	Negate->bX = bX;
	Negate->bY = bY;
	Negate->bZ = false;
	return Negate;
}

}

USkirmishInputActions* USkirmishInputActions::Create(UObject* Outer)
{
	USkirmishInputActions* Actions = NewObject<USkirmishInputActions>(Outer);
	Actions->MakeActions();
	Actions->Mapping = NewObject<UInputMappingContext>(Actions, TEXT("Mapping"));
	Actions->MapMove();
	Actions->MapLook();
	Actions->MapButtons();
	return Actions;
}

void USkirmishInputActions::MakeActions()
{
	Move = MakeAction(this, TEXT("Move"), EInputActionValueType::Axis2D);
	Look = MakeAction(this, TEXT("Look"), EInputActionValueType::Axis2D);
	Jump = MakeAction(this, TEXT("Jump"), EInputActionValueType::Boolean);
	Fire = MakeAction(this, TEXT("Fire"), EInputActionValueType::Boolean);
	Reload = MakeAction(this, TEXT("Reload"), EInputActionValueType::Boolean);
	SwitchWeapon = MakeAction(this, TEXT("SwitchWeapon"), EInputActionValueType::Boolean);
}

void USkirmishInputActions::MapMove()
{
	Mapping->MapKey(Move, EKeys::D);
	Mapping->MapKey(Move, EKeys::A).Modifiers.Add(MakeNegate(Mapping, true, false));
	Mapping->MapKey(Move, EKeys::W).Modifiers.Add(MakeSwizzle(Mapping));

	FEnhancedActionKeyMapping& Back = Mapping->MapKey(Move, EKeys::S);
	Back.Modifiers.Add(MakeSwizzle(Mapping));
	Back.Modifiers.Add(MakeNegate(Mapping, false, true));

	Mapping->MapKey(Move, EKeys::Gamepad_Left2D);
}

void USkirmishInputActions::MapLook()
{
	// The controller's pitch grows downward.
	Mapping->MapKey(Look, EKeys::Mouse2D).Modifiers.Add(MakeNegate(Mapping, false, true));
	Mapping->MapKey(Look, EKeys::Gamepad_Right2D).Modifiers.Add(MakeNegate(Mapping, false, true));
}

void USkirmishInputActions::MapButtons()
{
	Mapping->MapKey(Jump, EKeys::SpaceBar);
	Mapping->MapKey(Jump, EKeys::Gamepad_FaceButton_Bottom);
	Mapping->MapKey(Fire, EKeys::LeftMouseButton);
	Mapping->MapKey(Fire, EKeys::Gamepad_RightTrigger);
	Mapping->MapKey(Reload, EKeys::R);
	Mapping->MapKey(Reload, EKeys::Gamepad_FaceButton_Left);
	Mapping->MapKey(SwitchWeapon, EKeys::Q);
	Mapping->MapKey(SwitchWeapon, EKeys::Gamepad_FaceButton_Top);
}
