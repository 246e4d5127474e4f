#include "Health/SkirmishHealthComponent.h"

#include "GameFramework/Actor.h"

USkirmishHealthComponent::USkirmishHealthComponent()
{
	PrimaryComponentTick.bCanEverTick = false;
}

void USkirmishHealthComponent::BeginPlay()
{
	Super::BeginPlay();
	CurrentHealth = MaxHealth;
	GetOwner()->OnTakeAnyDamage.AddUniqueDynamic(this, &USkirmishHealthComponent::HandleDamage);
}

void USkirmishHealthComponent::EndPlay(const EEndPlayReason::Type Reason)
{
	GetOwner()->OnTakeAnyDamage.RemoveDynamic(this, &USkirmishHealthComponent::HandleDamage);
	Super::EndPlay(Reason);
}

bool USkirmishHealthComponent::Heal(float Amount)
{
	if (bDead || Amount <= 0.0f || CurrentHealth >= MaxHealth)
	{
		return false;
	}
	SetHealth(FMath::Min(CurrentHealth + Amount, MaxHealth));
	return true;
}

void USkirmishHealthComponent::Kill(AController* Killer, AActor* Causer)
{
	TakeHealth(CurrentHealth, Killer, Causer);
}

void USkirmishHealthComponent::ScaleMaxHealth(float Scale)
{
	ensureMsgf(!HasBegunPlay(), TEXT("%s is already in play"), *GetNameSafe(GetOwner()));
	MaxHealth = FMath::Max(1.0f, MaxHealth * Scale);
}

float USkirmishHealthComponent::GetHealthFraction() const
{
	return CurrentHealth / MaxHealth;
}

void USkirmishHealthComponent::HandleDamage(
	AActor* DamagedActor, float Damage, const UDamageType* DamageType, AController* InstigatedBy, AActor* DamageCauser)
{
	if (Damage > 0.0f)
	{
		TakeHealth(Damage, InstigatedBy, DamageCauser);
	}
}

void USkirmishHealthComponent::SetHealth(float NewHealth)
{
	const float OldHealth = CurrentHealth;
	CurrentHealth = NewHealth;
	OnHealthChanged.Broadcast(this, OldHealth, NewHealth);
}

void USkirmishHealthComponent::TakeHealth(float Amount, AController* Killer, AActor* Causer)
{
	if (bDead)
	{
		return;
	}
	// Set before anyone is told: a listener that deals damage in its turn must not kill a second time.
	bDead = CurrentHealth <= Amount;
	SetHealth(FMath::Max(0.0f, CurrentHealth - Amount));
	if (bDead)
	{
		OnDied.Broadcast(this, Killer, Causer);
	}
}
