#include "Characters/SkirmishPlayerCharacter.h"

#include "Camera/CameraComponent.h"
#include "Components/InputComponent.h"
#include "Engine/World.h"
#include "EnhancedInputComponent.h"
#include "Game/SkirmishGameMode.h"
#include "Game/SkirmishPlayerController.h"
#include "GameFramework/CharacterMovementComponent.h"
#include "GameFramework/SpringArmComponent.h"
#include "Input/SkirmishInputActions.h"
#include "InputActionValue.h"
#include "Skirmish.h"
#include "Weapons/SkirmishWeapon.h"

ASkirmishPlayerCharacter::ASkirmishPlayerCharacter()
{
	bUseControllerRotationYaw = true;
	GetCharacterMovement()->MaxWalkSpeed = 550.0f;
	GetCharacterMovement()->AirControl = 0.35f;

	CameraBoom = CreateDefaultSubobject<USpringArmComponent>(TEXT("CameraBoom"));
	CameraBoom->SetupAttachment(RootComponent);
	CameraBoom->TargetArmLength = 320.0f;
	CameraBoom->SocketOffset = FVector(0.0, 60.0, 70.0);
	CameraBoom->bUsePawnControlRotation = true;

	Camera = CreateDefaultSubobject<UCameraComponent>(TEXT("Camera"));
	Camera->SetupAttachment(CameraBoom, USpringArmComponent::SocketName);

	Loadout = {FName(TEXT("Rifle")), FName(TEXT("Shotgun")), FName(TEXT("Pistol"))};
}

void ASkirmishPlayerCharacter::BeginPlay()
{
	Super::BeginPlay();
	SpawnLoadout();
}

void ASkirmishPlayerCharacter::EndPlay(const EEndPlayReason::Type Reason)
{
	for (ASkirmishWeapon* Weapon : Weapons)
	{
		// When the whole world ends, a weapon may have gone first.
		if (IsValid(Weapon))
		{
			Weapon->Destroy();
		}
	}
	Weapons.Empty();
	Super::EndPlay(Reason);
}

void ASkirmishPlayerCharacter::SpawnLoadout()
{
	FActorSpawnParameters Params;
	Params.Owner = this;
	Params.Instigator = this;
	for (const FName WeaponName : Loadout)
	{
		ASkirmishWeapon* Weapon = GetWorld()->SpawnActor<ASkirmishWeapon>(Params);
		if (!Weapon || !Weapon->Equip(WeaponName))
		{
			UE_LOG(LogSkirmish, Warning, TEXT("%s can't carry '%s'"), *GetName(), *WeaponName.ToString());
			if (Weapon)
			{
				Weapon->Destroy();
			}
			continue;
		}
		Weapon->AttachToComponent(RootComponent, FAttachmentTransformRules::KeepRelativeTransform);
		Weapon->SetActorRelativeLocation(GripOffset);
		Weapon->SetActorHiddenInGame(!Weapons.IsEmpty());
		Weapons.Add(Weapon);
	}
}

ASkirmishWeapon* ASkirmishPlayerCharacter::GetWeapon() const
{
	return Weapons.IsValidIndex(WeaponInHand) ? Weapons[WeaponInHand].Get() : nullptr;
}

void ASkirmishPlayerCharacter::SetupPlayerInputComponent(UInputComponent* PlayerInputComponent)
{
	Super::SetupPlayerInputComponent(PlayerInputComponent);

	const ASkirmishPlayerController* Player = GetController<ASkirmishPlayerController>();
	UEnhancedInputComponent* Input = Cast<UEnhancedInputComponent>(PlayerInputComponent);
	if (!Player || !Input)
	{
		UE_LOG(LogSkirmish, Error, TEXT("%s gets no input: wrong controller or input component class"), *GetName());
		return;
	}

	const USkirmishInputActions& Actions = Player->GetInputActions();
	Input->BindAction(Actions.Move, ETriggerEvent::Triggered, this, &ThisClass::Move);
	Input->BindAction(Actions.Look, ETriggerEvent::Triggered, this, &ThisClass::Look);
	Input->BindAction(Actions.Jump, ETriggerEvent::Started, this, &ACharacter::Jump);
	Input->BindAction(Actions.Jump, ETriggerEvent::Completed, this, &ACharacter::StopJumping);
	Input->BindAction(Actions.Fire, ETriggerEvent::Started, this, &ThisClass::StartFire);
	Input->BindAction(Actions.Fire, ETriggerEvent::Completed, this, &ThisClass::StopFire);
	Input->BindAction(Actions.Reload, ETriggerEvent::Started, this, &ThisClass::Reload);
	Input->BindAction(Actions.SwitchWeapon, ETriggerEvent::Started, this, &ThisClass::SwitchWeapon);
}

void ASkirmishPlayerCharacter::Move(const FInputActionValue& Value)
{
	// Pitch is left out: looking at the floor must not slow the player down.
	const FRotator Heading(0.0, GetControlRotation().Yaw, 0.0);
	const FVector2D Axis = Value.Get<FVector2D>();
	AddMovementInput(Heading.RotateVector(FVector::ForwardVector), static_cast<float>(Axis.Y));
	AddMovementInput(Heading.RotateVector(FVector::RightVector), static_cast<float>(Axis.X));
}

void ASkirmishPlayerCharacter::Look(const FInputActionValue& Value)
{
	const FVector2D Axis = Value.Get<FVector2D>();
	AddControllerYawInput(static_cast<float>(Axis.X));
	AddControllerPitchInput(static_cast<float>(Axis.Y));
}

void ASkirmishPlayerCharacter::StartFire()
{
	if (ASkirmishWeapon* Weapon = GetWeapon())
	{
		Weapon->StartFire();
	}
}

void ASkirmishPlayerCharacter::StopFire()
{
	if (ASkirmishWeapon* Weapon = GetWeapon())
	{
		Weapon->StopFire();
	}
}

void ASkirmishPlayerCharacter::Reload()
{
	if (ASkirmishWeapon* Weapon = GetWeapon())
	{
		Weapon->StartReload();
	}
}

void ASkirmishPlayerCharacter::SwitchWeapon()
{
	if (Weapons.Num() < 2)
	{
		return;
	}
	Weapons[WeaponInHand]->Holster();
	Weapons[WeaponInHand]->SetActorHiddenInGame(true);
	WeaponInHand = (WeaponInHand + 1) % Weapons.Num();
	Weapons[WeaponInHand]->SetActorHiddenInGame(false);
}

void ASkirmishPlayerCharacter::Die()
{
	if (ASkirmishWeapon* Weapon = GetWeapon())
	{
		Weapon->Holster();
	}
	DisableInput(GetController<APlayerController>());
	if (auto* GameMode = GetWorld()->GetAuthGameMode<ASkirmishGameMode>())
	{
		GameMode->NotifyPlayerDied();
	}
}
