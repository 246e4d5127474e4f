#include "Game/SkirmishPlayerController.h"

#include "Engine/LocalPlayer.h"
#include "EnhancedInputSubsystems.h"
#include "Input/SkirmishInputActions.h"
#include "InputMappingContext.h"

void ASkirmishPlayerController::PostInitializeComponents()
{
	Super::PostInitializeComponents();
	InputActions = USkirmishInputActions::Create(this);
}

const USkirmishInputActions& ASkirmishPlayerController::GetInputActions() const
{
	check(InputActions);
	return *InputActions;
}

void ASkirmishPlayerController::BeginPlay()
{
	Super::BeginPlay();
	SetInputMode(FInputModeGameOnly());
}

void ASkirmishPlayerController::SetupInputComponent()
{
	Super::SetupInputComponent();
	const ULocalPlayer* LocalPlayer = GetLocalPlayer();
	if (auto* Input = ULocalPlayer::GetSubsystem<UEnhancedInputLocalPlayerSubsystem>(LocalPlayer))
	{
		Input->AddMappingContext(GetInputActions().Mapping, 0);
	}
}
