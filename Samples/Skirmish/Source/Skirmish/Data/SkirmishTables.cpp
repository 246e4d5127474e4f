#include "Data/SkirmishTables.h"

#include "Data/SkirmishRows.h"
#include "Engine/DataTable.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Skirmish.h"

namespace
{

/** A table of what the file holds. Faults go to the log; the rows that are sound are kept. */
UDataTable* LoadTable(UObject* Outer, UScriptStruct* RowStruct, const TCHAR* FileName)
{
	UDataTable* Table = NewObject<UDataTable>(Outer);
	Table->RowStruct = RowStruct;

	const FString Path = FPaths::ProjectContentDir() / TEXT("Data") / FileName;
	FString Text;
	if (!FFileHelper::LoadFileToString(Text, *Path))
	{
		UE_LOG(LogSkirmish, Error, TEXT("Can't read the table %s"), *Path);
		return Table;
	}
	for (const FString& Problem : Table->CreateTableFromCSVString(Text))
	{
		UE_LOG(LogSkirmish, Warning, TEXT("%s: %s"), FileName, *Problem);
	}
	return Table;
}

}

void USkirmishTables::Initialize(FSubsystemCollectionBase& Collection)
{
	Super::Initialize(Collection);
	Weapons = LoadTable(this, FSkirmishWeaponRow::StaticStruct(), TEXT("Weapons.csv"));
	Waves = LoadTable(this, FSkirmishWaveRow::StaticStruct(), TEXT("Waves.csv"));
}

const FSkirmishWeaponRow* USkirmishTables::FindWeapon(FName WeaponName) const
{
	return Weapons->FindRow<FSkirmishWeaponRow>(WeaponName, TEXT("USkirmishTables::FindWeapon"));
}

TArray<FSkirmishWaveRow*> USkirmishTables::GetWaves() const
{
	TArray<FSkirmishWaveRow*> Rows;
	Waves->GetAllRows(TEXT("USkirmishTables::GetWaves"), Rows);
	return Rows;
}
