#include "Weapons/SkirmishWeapon.h"

#include "Components/StaticMeshComponent.h"
#include "Data/SkirmishTables.h"
#include "DrawDebugHelpers.h"
#include "Engine/GameInstance.h"
#include "Engine/HitResult.h"
#include "Engine/StaticMesh.h"
#include "Engine/World.h"
#include "GameFramework/Controller.h"
#include "GameFramework/DamageType.h"
#include "GameFramework/Pawn.h"
#include "Health/SkirmishHealthComponent.h"
#include "Kismet/GameplayStatics.h"
#include "SkirmishTelemetrySubsystem.h"
#include "TimerManager.h"
#include "UObject/ConstructorHelpers.h"
#include "Weapons/SkirmishCollision.h"

ASkirmishWeapon::ASkirmishWeapon()
{
	PrimaryActorTick.bCanEverTick = false;

	Mesh = CreateDefaultSubobject<UStaticMeshComponent>(TEXT("Mesh"));
	Mesh->SetCollisionEnabled(ECollisionEnabled::NoCollision);
	Mesh->SetRelativeScale3D(FVector(0.6, 0.08, 0.12));
	RootComponent = Mesh;

	static ConstructorHelpers::FObjectFinder<UStaticMesh> Barrel(TEXT("/Engine/BasicShapes/Cube.Cube"));
	Mesh->SetStaticMesh(Barrel.Object);
}

void ASkirmishWeapon::EndPlay(const EEndPlayReason::Type Reason)
{
	Holster();
	Super::EndPlay(Reason);
}

bool ASkirmishWeapon::Equip(FName InWeaponName)
{
	const USkirmishTables* Tables = UGameInstance::GetSubsystem<USkirmishTables>(GetGameInstance());
	const FSkirmishWeaponRow* Row = Tables ? Tables->FindWeapon(InWeaponName) : nullptr;
	if (!Row)
	{
		return false;
	}
	WeaponName = InWeaponName;
	Stats = *Row;
	AmmoInMagazine = Stats.MagazineSize;
	ReserveAmmo = Stats.ReserveAmmo;
	return true;
}

void ASkirmishWeapon::StartFire()
{
	// Pulling the trigger again and again must not beat the weapon's rate of fire.
	const double Interval = 1.0 / FMath::Max(0.1f, Stats.RoundsPerSecond);
	const double SinceLastShot = GetWorld()->GetTimeSeconds() - LastShotSeconds;
	const double FirstDelay = FMath::Max(0.0, Interval - SinceLastShot);
	GetWorldTimerManager().SetTimer(FireTimer, this, &ASkirmishWeapon::FireWhileTriggerIsDown,
		static_cast<float>(Interval), true, static_cast<float>(FirstDelay));
}

void ASkirmishWeapon::StopFire()
{
	GetWorldTimerManager().ClearTimer(FireTimer);
}

void ASkirmishWeapon::FireWhileTriggerIsDown()
{
	// While it reloads, the trigger stays down and fire goes on afterwards. With nothing left it's let go.
	if (!TryFire() && !bReloading)
	{
		StopFire();
	}
}

bool ASkirmishWeapon::TryFire()
{
	if (bReloading)
	{
		return false;
	}
	if (AmmoInMagazine < 0)
	{
		StartReload();
		return false;
	}

	--AmmoInMagazine;
	LastShotSeconds = GetWorld()->GetTimeSeconds();
	const bool bHit = FirePellets();
	if (auto* Telemetry = UGameInstance::GetSubsystem<USkirmishTelemetrySubsystem>(GetGameInstance()))
	{
		Telemetry->RecordShot(WeaponName, bHit);
	}
	return true;
}

void ASkirmishWeapon::StartReload()
{
	if (bReloading || ReserveAmmo <= 0 || AmmoInMagazine >= Stats.MagazineSize)
	{
		return;
	}
	bReloading = true;
	// A rate of zero would clear the timer instead of setting it.
	const float Delay = FMath::Max(0.05f, Stats.ReloadSeconds);
	GetWorldTimerManager().SetTimer(ReloadTimer, this, &ASkirmishWeapon::FinishReload, Delay, false);
}

void ASkirmishWeapon::FinishReload()
{
	bReloading = false;
	const int32 Moved = FMath::Min(Stats.MagazineSize - AmmoInMagazine, ReserveAmmo);
	AmmoInMagazine += Moved;
	ReserveAmmo -= Moved;
}

void ASkirmishWeapon::Holster()
{
	StopFire();
	GetWorldTimerManager().ClearTimer(ReloadTimer);
	bReloading = false;
}

bool ASkirmishWeapon::AddMagazines(int32 Count)
{
	if (Count <= 0 || ReserveAmmo >= Stats.ReserveAmmo)
	{
		return false;
	}
	ReserveAmmo = FMath::Min(ReserveAmmo + Count * Stats.MagazineSize, Stats.ReserveAmmo);
	return true;
}

bool ASkirmishWeapon::GetAim(FVector& OutStart, FVector& OutDirection) const
{
	const APawn* Shooter = GetInstigator();
	const AController* Controller = Shooter ? Shooter->GetController() : nullptr;
	if (!Controller)
	{
		return false;
	}
	FRotator View;
	Controller->GetPlayerViewPoint(OutStart, View);
	OutDirection = View.Vector();
	// The camera floats behind the shooter: start level with them, or whoever stands at their back is shot as well.
	OutStart += OutDirection * FVector::DotProduct(Shooter->GetActorLocation() - OutStart, OutDirection);
	return true;
}

bool ASkirmishWeapon::FirePellets()
{
	FVector Start;
	FVector Aim;
	if (!GetAim(Start, Aim))
	{
		return false;
	}
	const float Spread = FMath::DegreesToRadians(Stats.SpreadDegrees);
	bool bHit = false;
	for (int32 Pellet = 0; Pellet < Stats.Pellets; ++Pellet)
	{
		bHit |= FirePellet(Start, FMath::VRandCone(Aim, Spread));
	}
	return bHit;
}

bool ASkirmishWeapon::FirePellet(const FVector& Start, const FVector& Direction)
{
	FCollisionQueryParams Params(SCENE_QUERY_STAT(SkirmishWeapon), false, this);
	Params.AddIgnoredActor(GetInstigator());

	FHitResult Hit;
	const FVector End = Start + Direction * Stats.Range;
	const bool bBlocked = GetWorld()->LineTraceSingleByChannel(Hit, Start, End, SkirmishWeaponChannel, Params);
	const FVector Impact = bBlocked ? FVector(Hit.ImpactPoint) : End;
	DrawDebugLine(GetWorld(), GetActorLocation(), Impact, FColor::Yellow, false, 0.05f);

	AActor* Victim = Hit.GetActor();
	const auto* Health = Victim ? Victim->FindComponentByClass<USkirmishHealthComponent>() : nullptr;
	if (!Health || Health->IsDead())
	{
		return false;
	}
	UGameplayStatics::ApplyPointDamage(
		Victim, Stats.Damage, Direction, Hit, GetInstigatorController(), this, UDamageType::StaticClass());
	return true;
}
