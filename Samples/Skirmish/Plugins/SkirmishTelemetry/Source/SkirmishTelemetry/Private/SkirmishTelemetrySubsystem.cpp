#include "SkirmishTelemetrySubsystem.h"

#include "Logging/LogMacros.h"
#include "Misc/DateTime.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"

DEFINE_LOG_CATEGORY_STATIC(LogSkirmishTelemetry, Log, All);

void USkirmishTelemetrySubsystem::Deinitialize()
{
	// A session in which nobody fired leaves no file behind.
	if (!Tallies.IsEmpty())
	{
		const FString FileName = FDateTime::Now().ToString() + TEXT(".csv");
		const FString Path = FPaths::ProjectSavedDir() / TEXT("Telemetry") / FileName;
		if (!FFileHelper::SaveStringToFile(FormatCsv(), *Path))
		{
			UE_LOG(LogSkirmishTelemetry, Warning, TEXT("Can't write %s"), *Path);
		}
	}
	Super::Deinitialize();
}

void USkirmishTelemetrySubsystem::RecordShot(FName Weapon, bool bHit)
{
	FSkirmishWeaponTally& Tally = Tallies.FindOrAdd(Weapon);
	++Tally.Shots;
	Tally.Hits += bHit ? 1 : 0;
}

void USkirmishTelemetrySubsystem::RecordKill(FName Weapon)
{
	++Tallies.FindOrAdd(Weapon).Kills;
}

FSkirmishWeaponTally USkirmishTelemetrySubsystem::GetTally(FName Weapon) const
{
	return Tallies.FindRef(Weapon);
}

FString USkirmishTelemetrySubsystem::FormatCsv() const
{
	FString Text = TEXT("Weapon,Shots,Hits,Kills\n");
	for (const TPair<FName, FSkirmishWeaponTally>& Entry : Tallies)
	{
		const FSkirmishWeaponTally& Tally = Entry.Value;
		Text += FString::Printf(TEXT("%s,%d,%d,%d\n"), *Entry.Key.ToString(), Tally.Shots, Tally.Hits, Tally.Kills);
	}
	return Text;
}
