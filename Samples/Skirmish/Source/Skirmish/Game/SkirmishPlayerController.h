#pragma once

#include "CoreMinimal.h"
#include "GameFramework/PlayerController.h"

#include "SkirmishPlayerController.generated.h"

class USkirmishInputActions;

/** Owns the input of its player: pawns come and go, the key mapping stays. */
UCLASS()
class SKIRMISH_API ASkirmishPlayerController : public APlayerController
{
	GENERATED_BODY()

public:
	/** There from the moment that the controller can possess a pawn. */
	const USkirmishInputActions& GetInputActions() const;

	virtual void PostInitializeComponents() override;

protected:
	virtual void BeginPlay() override;
	virtual void SetupInputComponent() override;

private:
	UPROPERTY(Transient)
	TObjectPtr<USkirmishInputActions> InputActions;
};
