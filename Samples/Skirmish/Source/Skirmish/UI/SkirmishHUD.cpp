#include "UI/SkirmishHUD.h"

#include "Characters/SkirmishPlayerCharacter.h"
#include "Engine/Canvas.h"
#include "Engine/World.h"
#include "Game/SkirmishGameState.h"
#include "Health/SkirmishHealthComponent.h"
#include "Weapons/SkirmishWeapon.h"

namespace
{

constexpr float HudMargin = 40.0f;

FString DescribePhase(const ASkirmishGameState& Match)
{
	switch (Match.GetPhase())
	{
	case ESkirmishPhase::Waiting:
		return Match.GetWave() == 0 ? TEXT("Get ready") : TEXT("Wave cleared");
	case ESkirmishPhase::Won:
		return TEXT("You survived");
	case ESkirmishPhase::Lost:
		return TEXT("You died");
	default:
		return FString();
	}
}

}

void ASkirmishHUD::DrawHUD()
{
	Super::DrawHUD();
	if (const auto* Match = GetWorld()->GetGameState<ASkirmishGameState>())
	{
		DrawMatch(*Match);
	}
	const auto* Player = Cast<ASkirmishPlayerCharacter>(GetOwningPawn());
	if (!Player || Player->IsDead())
	{
		return;
	}
	DrawCrosshair();
	DrawHealth(*Player);
	if (const ASkirmishWeapon* Weapon = Player->GetWeapon())
	{
		DrawAmmo(*Weapon);
	}
}

void ASkirmishHUD::DrawCrosshair()
{
	constexpr float Inner = 5.0f;
	constexpr float Outer = 14.0f;
	const float X = Canvas->ClipX * 0.5f;
	const float Y = Canvas->ClipY * 0.5f;
	DrawLine(X - Outer, Y, X - Inner, Y, TextColor, 2.0f);
	DrawLine(X + Inner, Y, X + Outer, Y, TextColor, 2.0f);
	DrawLine(X, Y - Outer, X, Y - Inner, TextColor, 2.0f);
	DrawLine(X, Y + Inner, X, Y + Outer, TextColor, 2.0f);
}

void ASkirmishHUD::DrawHealth(const ASkirmishPlayerCharacter& Player)
{
	constexpr float Width = 260.0f;
	constexpr float Height = 18.0f;
	const float Y = Canvas->ClipY - HudMargin - Height;
	const float Fraction = Player.GetHealth()->GetHealthFraction();
	DrawRect(FLinearColor(0.0f, 0.0f, 0.0f, 0.5f), HudMargin, Y, Width, Height);
	DrawRect(Fraction > 0.3f ? HealthyColor : AlarmColor, HudMargin, Y, Width * Fraction, Height);
}

void ASkirmishHUD::DrawAmmo(const ASkirmishWeapon& Weapon)
{
	const FString Name = Weapon.GetWeaponName().ToString();
	const FString Text = Weapon.IsReloading()
		? FString::Printf(TEXT("%s  reloading"), *Name)
		: FString::Printf(TEXT("%s  %d / %d"), *Name, Weapon.GetAmmoInMagazine(), Weapon.GetReserveAmmo());
	float Width = 0.0f;
	float Height = 0.0f;
	GetTextSize(Text, Width, Height, nullptr, 1.6f);
	DrawText(Text, TextColor, Canvas->ClipX - HudMargin - Width, Canvas->ClipY - HudMargin - Height, nullptr, 1.6f);
}

void ASkirmishHUD::DrawMatch(const ASkirmishGameState& Match)
{
	const FString Status = FString::Printf(TEXT("Wave %d of %d     Enemies %d     Score %d"), Match.GetWave(),
		Match.GetWaveCount(), Match.GetEnemiesLeft(), Match.GetScore());
	DrawCentred(Status, HudMargin, TextColor, 1.3f);

	const bool bLost = Match.GetPhase() == ESkirmishPhase::Lost;
	DrawCentred(DescribePhase(Match), Canvas->ClipY * 0.3f, bLost ? AlarmColor : TextColor, 2.5f);
}

void ASkirmishHUD::DrawCentred(const FString& Text, float Y, const FLinearColor& Color, float Scale)
{
	if (Text.IsEmpty())
	{
		return;
	}
	float Width = 0.0f;
	float Height = 0.0f;
	GetTextSize(Text, Width, Height, nullptr, Scale);
	DrawText(Text, Color, (Canvas->ClipX - Width) * 0.5f, Y, nullptr, Scale);
}
