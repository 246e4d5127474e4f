#include "Logging/LogMacros.h"
#include "Misc/ConfigCacheIni.h"
#include "Misc/Paths.h"
#include "Properties/ConfigLines.h"
#include "Properties/ConfigText.h"
#include "Properties/ScratchValue.h"
#include "UObject/UnrealType.h"

DEFINE_LOG_CATEGORY_STATIC(LogObjectConfig, Log, All);

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

/** One key in one file. */
struct FConfigKey
{
	FConfigCacheIni& Config;
	const FString& File;
	const FString& Section;
	FString Key;

	bool IsThere() const { return Config.Find(File).HasKey(Section, Key); }
	TArray<const FConfigLine*> FindLines() const { return Config.Find(File).FindLines(Section, Key); }
	FString GetPlace() const { return File + TEXT("|") + Section + TEXT("|") + Key; }
};

/**
 * The value that an object had when a key was last read or written for it. A save leaves keys alone whose value is
 * still that: they may hold what this program couldn't read, or what another one has written since.
 */
TMap<FString, FString>& KnownValues()
{
	static TMap<FString, FString> Values;
	return Values;
}

/** The lines of each array as this program last read or wrote them, from which its changes are told. */
TMap<FString, TArray<FString>>& KnownLines()
{
	static TMap<FString, TArray<FString>> Lines;
	return Lines;
}

FString ExportWhole(UObject* Object, const FProperty* Property, int32 Index)
{
	FString Text;
	Property->ExportTextItem_Direct(
		Text, Property->ContainerPtrToValuePtr<void>(Object, Index), nullptr, Object, PPF_None);
	return Text;
}

TArray<FString> ValuesOf(const TArray<const FConfigLine*>& Lines)
{
	TArray<FString> Values;
	for (const FConfigLine* Line : Lines)
	{
		Values.Add(Line->Value);
	}
	return Values;
}

void Warn(const FConfigKey& Key, const FConfigLine& Line, const FString& Problem)
{
	const FString Prefix = Key.Key + TEXT(": ");
	UE_LOG(LogObjectConfig, Warning, TEXT("%s(%d): %s%s; the line is kept as it is"), *Key.File,
		Key.Config.Find(Key.File).GetLineNumber(Line), Problem.StartsWith(Prefix) ? TEXT("") : *Prefix, *Problem);
}

void LoadValue(UObject* Object, const FProperty* Property, int32 Index, const FConfigKey& Key)
{
	const TArray<const FConfigLine*> Lines = Key.FindLines();
	void* Data = Property->ContainerPtrToValuePtr<void>(Object, Index);
	if (const FArrayProperty* Array = CastField<FArrayProperty>(Property))
	{
		ConfigLines::Read(Array, ValuesOf(Lines), Data, Object,
			[&](int32 Line, const FString& Problem) { Warn(Key, *Lines[Line], Problem); });
		KnownLines().Add(Key.GetPlace(), ValuesOf(Lines));
	}
	else if (!Lines.IsEmpty())
	{
		// A value that can't be read has been told of, and the property keeps its own.
		(void)ConfigText::Read(Property, Lines.Last()->Value, Data, Object,
			[&](const FString& Problem) { Warn(Key, *Lines.Last(), Problem); });
	}
	KnownValues().Add(Key.GetPlace(), ExportWhole(Object, Property, Index));
}

void LoadProperty(UObject* Object, const FProperty* Property, const FConfigPlace& Place)
{
	for (int32 Index = 0; Index < Property->ArrayDim; ++Index)
	{
		bool bLoaded = false;
		for (int32 File = Place.Files.Num() - 1; File >= 0; --File)
		{
			const FConfigKey Key{Place.Config, Place.Files[File], Place.Section, KeyOf(Property, Index)};
			KnownValues().Remove(Key.GetPlace());
			KnownLines().Remove(Key.GetPlace());
			if (Key.FindLines().IsEmpty())
			{
				KnownLines().Add(Key.GetPlace(), {});
			}
			else if (!bLoaded)
			{
				LoadValue(Object, Property, Index, Key);
				bLoaded = true;
			}
		}
	}
}

void SaveValue(UObject* Object, const FProperty* Property, int32 Index, const FConfigKey& Key)
{
	const TArray<FString> OldLines = ValuesOf(Key.FindLines());
	const void* Data = Property->ContainerPtrToValuePtr<void>(Object, Index);
	if (const FArrayProperty* Array = CastField<FArrayProperty>(Property))
	{
		TArray<FString>* Known = KnownLines().Find(Key.GetPlace());
		const TArray<FString> Before = Known ? *Known : OldLines;
		const TArray<FString> Lines = ConfigLines::Write(Array, Data, Object, Before);
		// An empty array has no lines; to write that anew would take away what another program has added since.
		if (!Lines.IsEmpty() || Key.IsThere())
		{
			Key.Config.ChangeArray(*Key.Section, *Key.Key, Before, Lines, Key.File);
			KnownLines().Add(Key.GetPlace(), Lines);
		}
		return;
	}
	const FString Old = OldLines.IsEmpty() ? FString() : OldLines.Last();
	const FScratchValue Scratch(Property);
	if (!OldLines.IsEmpty() && !ConfigText::Read(Property, Old, Scratch.Get(), Object, [](const FString&) {}))
	{
		Key.Config.CommentOut(*Key.Section, *Key.Key, Key.File);
	}
	Key.Config.SetString(*Key.Section, *Key.Key, *ConfigText::Write(Property, Data, Object, Old), Key.File);
}

/** @param bAlways also what hasn't changed since it was last read or written. */
void SaveProperty(UObject* Object, const FProperty* Property, const FConfigPlace& Place, bool bAlways)
{
	for (int32 Index = 0; Index < Property->ArrayDim; ++Index)
	{
		const FConfigKey Key{Place.Config, Place.Files.Last(), Place.Section, KeyOf(Property, Index)};
		const FString Whole = ExportWhole(Object, Property, Index);
		FString& Known = KnownValues().FindOrAdd(Key.GetPlace());
		if (bAlways || !Key.IsThere() || !Known.Equals(Whole))
		{
			SaveValue(Object, Property, Index, Key);
			Known = Whole;
		}
	}
}

/** Tells of the keys in a class's section that none of its properties has. */
void WarnOfUnknownKeys(const UClass* Class, const TArray<FString>& Files)
{
	const FString Section = Class->GetConfigSection();
	for (const FString& File : Files)
	{
		for (const FConfigLine* Line : GConfig->Find(File).GetKeyLines(Section))
		{
			FString Name = Line->Key;
			Line->Key.Split(TEXT("["), &Name, nullptr);
			const FProperty* Property = Class->FindPropertyByName(FName(Name, FNAME_Find));
			if (!Property || !Property->HasAnyPropertyFlags(CPF_Config))
			{
				Warn({*GConfig, File, Section, Line->Key}, *Line, TEXT("no setting has this name"));
			}
		}
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
	if (GConfig && HasAnyFlags(RF_ClassDefaultObject) && Class == GetClass() && !PropertyToLoad && !Filename)
	{
		WarnOfUnknownKeys(Class, {DefaultFile(Class), SavedFile(Class)});
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
			SaveProperty(this, Each, Place, false);
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
		SaveProperty(this, InProperty, PlaceOf(*GConfig, this, InProperty, GetClass(), *InConfigIniName), true);
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
