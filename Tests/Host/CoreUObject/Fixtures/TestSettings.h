#pragma once

#include "Engine/DeveloperSettings.h"
#include "Host/CoreUObject/Fixtures/Creature.h"

#include "TestSettings.generated.h"

UCLASS(config = Game, defaultconfig)
class UTestSettings : public UDeveloperSettings
{
	GENERATED_BODY()

public:
	void PostInitProperties() override
	{
		Super::PostInitProperties();
		CountAtInit = Count;
	}

	UPROPERTY(Config)
	int32 Count = 3;

	UPROPERTY(Config)
	TArray<FMeal> Meals;

	UPROPERTY(Config)
	TArray<FString> Names;

	UPROPERTY(Config)
	FString Text = TEXT("default");

	UPROPERTY(Config)
	EMood Mood = EMood::Calm;

	UPROPERTY()
	int32 NotSaved = 1;

	int32 CountAtInit = 0;
};
