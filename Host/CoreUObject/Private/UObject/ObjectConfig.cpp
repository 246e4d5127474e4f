#include "UObject/ObjectConfigStore.h"
#include "UObject/UnrealType.h"

namespace
{
IObjectConfigStore* CurrentStore = nullptr;

/** One property's place in the config. */
struct FConfigPlace
{
	FString File;
	FString Section;
};

/** The class that a property's section is named after: its own for global config, else the object's. */
const UClass* SectionClass(const FProperty* Property, const UClass* ObjectClass)
{
	return Property->HasAnyPropertyFlags(CPF_GlobalConfig) ? Property->GetOwnerClass() : ObjectClass;
}

FConfigPlace PlaceOf(UObject* Object, const FProperty* Property, const UClass* Class, const TCHAR* Filename)
{
	const UClass* Owner = SectionClass(Property, Class);
	FConfigPlace Place{
		Filename ? FString(Filename) : CurrentStore->GetFile(Owner->GetConfigName()), Owner->GetConfigSection()};
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

/** Reads a whole array, a line an element. @return false, with no change, if an element can't be read. */
bool ReadArray(const FArrayProperty* Property, void* Data, const TArray<FString>& Lines, UObject* Object)
{
	FScriptArrayHelper Helper(Property, Data);
	const int32 OldNum = Helper.Num();
	for (const FString& Line : Lines)
	{
		const int32 Index = Helper.AddValue();
		if (!Property->Inner->ImportText_Direct(*Line, Helper.GetRawPtr(Index), Object, PPF_None))
		{
			Helper.Resize(OldNum);
			return false;
		}
	}
	Helper.RemoveValues(0, OldNum);
	return true;
}

void LoadProperty(UObject* Object, const FProperty* Property, const FConfigPlace& Place)
{
	for (int32 Index = 0; Index < Property->ArrayDim; ++Index)
	{
		TArray<FString> Lines;
		if (!CurrentStore->GetValues(Place.File, Place.Section, KeyOf(Property, Index), Lines) || Lines.IsEmpty())
		{
			continue;
		}
		void* Data = Property->ContainerPtrToValuePtr<void>(Object, Index);
		const FArrayProperty* Array = CastField<FArrayProperty>(Property);
		const bool bIsList =
			Array && !(Lines.Num() == 1 && Property->ImportText_Direct(*Lines[0], Data, Object, PPF_None));
		if (bIsList)
		{
			ReadArray(Array, Data, Lines, Object);
		}
		else if (!Array)
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
		CurrentStore->SetValues(Place.File, Place.Section, KeyOf(Property, Index), Lines);
	}
}
} // namespace

IObjectConfigStore* IObjectConfigStore::Get()
{
	return CurrentStore;
}

void IObjectConfigStore::Set(IObjectConfigStore* Store)
{
	CurrentStore = Store;
}

FString UClass::GetConfigName() const
{
	return ClassConfigName.IsNone() ? FString() : ClassConfigName.ToString();
}

void UObject::OverridePerObjectConfigSection(FString&) {}

void UObject::LoadConfig(UClass* ConfigClass, const TCHAR* Filename, uint32, FProperty* PropertyToLoad)
{
	if (!CurrentStore)
	{
		return;
	}
	const UClass* Class = ConfigClass ? ConfigClass : GetClass();
	for (const FProperty* Each = Class->PropertyLink; Each; Each = Each->PropertyLinkNext)
	{
		if (Each->HasAnyPropertyFlags(CPF_Config) && (!PropertyToLoad || PropertyToLoad == Each))
		{
			LoadProperty(this, Each, PlaceOf(this, Each, Class, Filename));
		}
	}
}

void UObject::ReloadConfig(
	UClass* ConfigClass, const TCHAR* Filename, uint32 PropagationFlags, FProperty* PropertyToLoad)
{
	LoadConfig(ConfigClass, Filename, PropagationFlags, PropertyToLoad);
	PostReloadConfig(PropertyToLoad);
}

void UObject::SaveConfig(uint64 Flags, const TCHAR* Filename, FConfigCacheIni*, bool bAllowCopyToDefaultObject)
{
	if (!CurrentStore || !GetClass()->HasAnyClassFlags(CLASS_Config))
	{
		return;
	}
	UObject* Defaults = bAllowCopyToDefaultObject ? GetClass()->GetDefaultObject() : this;
	TSet<FString> Files;
	for (const FProperty* Each = GetClass()->PropertyLink; Each; Each = Each->PropertyLinkNext)
	{
		if (Each->HasAnyPropertyFlags(CPF_Config) && Each->HasAnyPropertyFlags(Flags))
		{
			const FConfigPlace Place = PlaceOf(this, Each, GetClass(), Filename);
			SaveProperty(this, Each, Place);
			Files.Add(Place.File);
			Each->CopyCompleteValue_InContainer(Defaults, this);
		}
	}
	for (const FString& File : Files)
	{
		CurrentStore->Flush(File);
	}
}

void UObject::UpdateSinglePropertyInConfigFile(const FProperty* InProperty, const FString& InConfigIniName)
{
	check(InProperty && InProperty->HasAnyPropertyFlags(CPF_Config));
	if (CurrentStore)
	{
		SaveProperty(this, InProperty, PlaceOf(this, InProperty, GetClass(), *InConfigIniName));
		CurrentStore->Flush(InConfigIniName);
	}
}

bool UObject::TryUpdateDefaultConfigFile(const FString& SpecificFileLocation, bool)
{
	if (!CurrentStore)
	{
		return false;
	}
	const FString File = SpecificFileLocation.IsEmpty() ? GetDefaultConfigFilename() : SpecificFileLocation;
	SaveConfig(CPF_Config, *File);
	return CurrentStore->Flush(File);
}

FString UObject::GetDefaultConfigFilename() const
{
	return CurrentStore ? CurrentStore->GetDefaultFile(GetClass()->GetConfigName()) : FString();
}
