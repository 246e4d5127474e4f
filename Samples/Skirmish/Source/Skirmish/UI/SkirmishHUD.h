#pragma once

#include "CoreMinimal.h"
#include "GameFramework/HUD.h"

#include "SkirmishHUD.generated.h"

class ASkirmishGameState;
class ASkirmishPlayerCharacter;
class ASkirmishWeapon;

/** Draws what a player must know: the crosshair, hit points, ammunition, the wave and the score. */
UCLASS()
class SKIRMISH_API ASkirmishHUD : public AHUD
{
	GENERATED_BODY()

public:
	virtual void DrawHUD() override;

private:
	void DrawCrosshair();
	void DrawHealth(const ASkirmishPlayerCharacter& Player);
	void DrawAmmo(const ASkirmishWeapon& Weapon);
	void DrawMatch(const ASkirmishGameState& Match);

	/** Draws a line of text around the middle of the screen. Y is in pixels from the top. */
	void DrawCentred(const FString& Text, float Y, const FLinearColor& Color, float Scale);

	UPROPERTY(EditDefaultsOnly, Category = "HUD")
	FLinearColor TextColor = FLinearColor(0.9f, 0.9f, 0.9f);

	UPROPERTY(EditDefaultsOnly, Category = "HUD")
	FLinearColor HealthyColor = FLinearColor(0.25f, 0.75f, 0.3f);

	UPROPERTY(EditDefaultsOnly, Category = "HUD")
	FLinearColor AlarmColor = FLinearColor(0.85f, 0.2f, 0.15f);
};
