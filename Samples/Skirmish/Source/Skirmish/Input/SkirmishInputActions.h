#pragma once

#include "CoreMinimal.h"
#include "UObject/Object.h"

#include "SkirmishInputActions.generated.h"

class UInputAction;
class UInputMappingContext;

/** What a player can do, and the keys for it. Made in code, so that the project plays without a single asset. */
UCLASS()
class SKIRMISH_API USkirmishInputActions : public UObject
{
	GENERATED_BODY()

public:
	/** Makes the actions and maps the keys. The result belongs to the outer's lifetime: keep it in a property. */
	static USkirmishInputActions* Create(UObject* Outer);

	/** X is right, Y is forward, each from -1 to 1. */
	UPROPERTY(Transient)
	TObjectPtr<UInputAction> Move;

	/** X is yaw, Y is pitch. */
	UPROPERTY(Transient)
	TObjectPtr<UInputAction> Look;

	UPROPERTY(Transient)
	TObjectPtr<UInputAction> Jump;

	UPROPERTY(Transient)
	TObjectPtr<UInputAction> Fire;

	UPROPERTY(Transient)
	TObjectPtr<UInputAction> Reload;

	UPROPERTY(Transient)
	TObjectPtr<UInputAction> SwitchWeapon;

	UPROPERTY(Transient)
	TObjectPtr<UInputMappingContext> Mapping;

private:
	void MakeActions();
	void MapMove();
	void MapLook();
	void MapButtons();
};
