#include "Misc/ConfigCacheIni.h"
#include "Misc/OutputDevice.h"
#include "Misc/Paths.h"
#include "UObject/UnrealType.h"

namespace
{
/** One property's place in the config. */
struct FConfigPlace
{
	FConfigCacheIni& Config;
	/** Later files go before earlier ones when reading; the last is written. */
	TArray<FString> Files;
	FString Section;
};

/** Takes the reports of an attempt that may fail. */
class FSilence : public FOutputDevice
{
public:
	void Serialize(const TCHAR*, ELogVerbosity::Type, const FName&) override {}
};

FString DefaultFile(const UClass* Class)
{
	return FPaths::ProjectConfigDir() + TEXT("Default") + Class->GetConfigName() + TEXT(".ini");
}

FString SavedFile(const UClass* Class)
{
	return FPaths::ProjectSavedDir() + TEXT("Config/") + Class->GetConfigName() + TEXT(".ini");
}

/** The class that a property's section is named after: its own for global config, else the object's. */
const UClass* SectionClass(const FProperty* Property, const UClass* ObjectClass)
{
	return Property->HasAnyPropertyFlags(CPF_GlobalConfig) ? Property->GetOwnerClass() : ObjectClass;
}

FConfigPlace PlaceOf(
	FConfigCacheIni& Config, UObject* Object, const FProperty* Property, const UClass* Class, const TCHAR* Filename)
{
	const UClass* Owner = SectionClass(Property, Class);
	FConfigPlace Place{Config, {}, Owner->GetConfigSection()};
	Place.Files = Filename ? TArray<FString>{Filename} : TArray<FString>{DefaultFile(Owner), SavedFile(Owner)};
	if (Owner->HasAnyClassFlags(CLASS_PerObjectConfig) && !Object->HasAnyFlags(RF_ClassDefaultObject))
	{
		Place.Section = Object->GetPathName();
		Object->OverridePerObjectConfigSection(Place.Section);
	}
	return Place;
}

FString KeyOf(const FProperty* Property, int32 Index)
{
	return Property->ArrayDim > 1 ? FString::Printf(TEXT("%s[%d]"), *Property->GetName(), Index) : Property->GetName();
}

/** Reads an array, a line an element. @return false, with no change, if an element can't be read. */
bool ReadLines(
	const FArrayProperty* Property, void* Data, const TArray<FString>& Lines, UObject* Object, FOutputDevice* Error)
{
	FScriptArrayHelper Helper(Property, Data);
	const int32 OldNum = Helper.Num();
	for (const FString& Line : Lines)
	{
		const int32 Index = Helper.AddValue();
		if (!Property->Inner->ImportText_Direct(*Line, Helper.GetRawPtr(Index), Object, PPF_None, Error))
		{
			Helper.Resize(OldNum);
			return false;
		}
	}
	Helper.RemoveValues(0, OldNum);
	return true;
}

/** Reads an array that stands in lines, or as one list `(a,b,c)`. */
void ReadArray(const FArrayProperty* Property, void* Data, const TArray<FString>& Lines, UObject* Object)
{
	FSilence Silence;
	const bool bMayBeList = Lines.Num() == 1 && Lines[0].StartsWith(TEXT("("));
	if (!ReadLines(Property, Data, Lines, Object, bMayBeList ? &Silence : nullptr) && bMayBeList)
	{
		Property->ImportText_Direct(*Lines[0], Data, Object, PPF_None);
	}
}

TArray<FString> FindLines(const FConfigPlace& Place, const FString& Key)
{
	TArray<FString> Lines;
	for (int32 Index = Place.Files.Num() - 1; Lines.IsEmpty() && Index >= 0; --Index)
	{
		Place.Config.GetArray(*Place.Section, *Key, Lines, Place.Files[Index]);
	}
	return Lines;
}

void LoadProperty(UObject* Object, const FProperty* Property, const FConfigPlace& Place)
{
	for (int32 Index = 0; Index < Property->ArrayDim; ++Index)
	{
		const TArray<FString> Lines = FindLines(Place, KeyOf(Property, Index));
		void* Data = Property->ContainerPtrToValuePtr<void>(Object, Index);
		const FArrayProperty* Array = CastField<FArrayProperty>(Property);
		if (Array && !Lines.IsEmpty())
		{
			ReadArray(Array, Data, Lines, Object);
		}
		else if (!Lines.IsEmpty())
		{
			Property->ImportText_Direct(*Lines.Last(), Data, Object, PPF_None);
		}
	}
}

void SaveProperty(UObject* Object, const FProperty* Property, const FConfigPlace& Place)
{
	for (int32 Index = 0; Index < Property->ArrayDim; ++Index)
	{
		TArray<FString> Lines;
		void* Data = Property->ContainerPtrToValuePtr<void>(Object, Index);
		if (const FArrayProperty* Array = CastField<FArrayProperty>(Property))
		{
			const FScriptArrayHelper Helper(Array, Data);
			for (int32 Element = 0; Element < Helper.Num(); ++Element)
			{
				Array->Inner->ExportTextItem_Direct(
					Lines.AddDefaulted_GetRef(), Helper.GetRawPtr(Element), nullptr, Object, PPF_None);
			}
		}
		else
		{
			Property->ExportTextItem_Direct(Lines.AddDefaulted_GetRef(), Data, nullptr, Object, PPF_None);
		}
		Place.Config.SetArray(*Place.Section, *KeyOf(Property, Index), Lines, Place.Files.Last());
	}
}
} // namespace

FString UClass::GetConfigName() const
{
	return ClassConfigName.IsNone() ? FString() : ClassConfigName.ToString();
}

void UObject::OverridePerObjectConfigSection(FString&) {}

void UObject::LoadConfig(UClass* ConfigClass, const TCHAR* Filename, uint32, FProperty* PropertyToLoad)
{
	const UClass* Class = ConfigClass ? ConfigClass : GetClass();
	for (const FProperty* Each = GConfig ? Class->PropertyLink : nullptr; Each; Each = Each->PropertyLinkNext)
	{
		if (Each->HasAnyPropertyFlags(CPF_Config) && (!PropertyToLoad || PropertyToLoad == Each))
		{
			LoadProperty(this, Each, PlaceOf(*GConfig, this, Each, Class, Filename));
		}
	}
}

void UObject::ReloadConfig(
	UClass* ConfigClass, const TCHAR* Filename, uint32 PropagationFlags, FProperty* PropertyToLoad)
{
	LoadConfig(ConfigClass, Filename, PropagationFlags, PropertyToLoad);
	PostReloadConfig(PropertyToLoad);
}

void UObject::SaveConfig(uint64 Flags, const TCHAR* Filename, FConfigCacheIni* Config, bool bAllowCopyToDefaultObject)
{
	FConfigCacheIni* Target = Config ? Config : GConfig;
	if (!Target || !GetClass()->HasAnyClassFlags(CLASS_Config))
	{
		return;
	}
	UObject* Defaults = bAllowCopyToDefaultObject ? GetClass()->GetDefaultObject() : this;
	TSet<FString> Files;
	for (const FProperty* Each = GetClass()->PropertyLink; Each; Each = Each->PropertyLinkNext)
	{
		if (Each->HasAnyPropertyFlags(CPF_Config) && Each->HasAnyPropertyFlags(Flags))
		{
			const FConfigPlace Place = PlaceOf(*Target, this, Each, GetClass(), Filename);
			SaveProperty(this, Each, Place);
			Files.Add(Place.Files.Last());
			Each->CopyCompleteValue_InContainer(Defaults, this);
		}
	}
	for (const FString& File : Files)
	{
		// A file that can't be written is logged by the config, and its changes wait there for the next call.
		(void)Target->Flush(false, File);
	}
}

void UObject::UpdateSinglePropertyInConfigFile(const FProperty* InProperty, const FString& InConfigIniName)
{
	check(InProperty && InProperty->HasAnyPropertyFlags(CPF_Config));
	if (GConfig)
	{
		SaveProperty(this, InProperty, PlaceOf(*GConfig, this, InProperty, GetClass(), *InConfigIniName));
		(void)GConfig->Flush(false, InConfigIniName);
	}
}

bool UObject::TryUpdateDefaultConfigFile(const FString& SpecificFileLocation, bool)
{
	if (!GConfig)
	{
		return false;
	}
	const FString File = SpecificFileLocation.IsEmpty() ? GetDefaultConfigFilename() : SpecificFileLocation;
	SaveConfig(CPF_Config, *File);
	return GConfig->Flush(false, File);
}

FString UObject::GetDefaultConfigFilename() const
{
	return DefaultFile(GetClass());
}
