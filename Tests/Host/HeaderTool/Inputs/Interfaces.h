#pragma once

#include "UObject/Interface.h"

#include "Interfaces.generated.h"

UINTERFACE(MinimalAPI)
class UDamageable : public UInterface
{
	GENERATED_BODY()
};

class IDamageable
{
	GENERATED_BODY()

public:
	UFUNCTION(BlueprintCallable, Category = "Damage")
	virtual float ApplyDamage(float Amount) = 0;
};

UCLASS()
class UBarrel
	: public UObject
	, public IDamageable
{
	GENERATED_UCLASS_BODY()

	virtual float ApplyDamage(float Amount) override;
};

UCLASS()
class USteelBarrel : public UBarrel
{
	GENERATED_BODY()
};
