#include "ObjectFactory.h"
#include "ObjectTable.h"
#include "PropertyBuilder.h"
#include "UObject/GarbageCollection.h"

using namespace Reflection;

/** Brings the type system up and adds the types of modules: first every object, then supers, members and layout. */
class FReflectionBuilder
{
public:
	static void Run();
	static void Forget();

private:
	/** The registrations of one list that came since the last run, in the order of registration. */
	template <typename RegistrationType>
	static TArray<RegistrationType*> TakeNew(RegistrationType*& LastSeen)
	{
		TArray<RegistrationType*> New;
		for (RegistrationType* Each = RegistrationType::First; Each != LastSeen; Each = Each->Next)
		{
			New.Add(Each);
		}
		LastSeen = RegistrationType::First;
		Algo_Reverse(New);
		return New;
	}
	template <typename T>
	static void Algo_Reverse(TArray<T>& Items)
	{
		for (int32 Left = 0, Right = Items.Num() - 1; Left < Right; ++Left, --Right)
		{
			Swap(Items[Left], Items[Right]);
		}
	}

	static FName TypeName(const char* CppName) { return FName(FString(CppName + 1)); }
	static void MakeClasses(const TArray<FClassRegistration*>& Classes);
	static void MakeOthers(const TArray<FStructRegistration*>& Structs, const TArray<FEnumRegistration*>& Enums,
		const TArray<FDelegateRegistration*>& Delegates);
	static UPackage* PackageOf(const char* Name);
	static void DescribeClass(const FClassRegistration& Registration);
	static void DescribeStruct(const FStructRegistration& Registration);
	static void DescribeEnum(const FEnumRegistration& Registration);
	static void DescribeFunction(UFunction* Function, const FFunctionTable& Table);
	static void AddFunctions(UClass* Class, const FClassTable& Table);
	static void AddProperties(UStruct* Struct, const TTable<FPropertyTable>& Rows);
	static void Link(UStruct* Struct, TSet<UStruct*>& Pending);
	static void LinkValueTypes(UStruct* Struct, TSet<UStruct*>& Pending);

	static inline FClassRegistration* LastClass = nullptr;
	static inline FStructRegistration* LastStruct = nullptr;
	static inline FEnumRegistration* LastEnum = nullptr;
	static inline FDelegateRegistration* LastDelegate = nullptr;
};

UPackage* FReflectionBuilder::PackageOf(const char* Name)
{
	const FName PackageName{FString(Name)};
	UObject* Found = FObjectTable::Get().Find(UPackage::StaticClass(), nullptr, PackageName, true);
	return Found ? (UPackage*)Found : FObjectFactory::MakeType<UPackage>(UPackage::StaticClass(), PackageName);
}

void FReflectionBuilder::MakeClasses(const TArray<FClassRegistration*>& Classes)
{
	for (FClassRegistration* Each : Classes)
	{
		Each->Object = FObjectFactory::MakeType<UClass>(nullptr, TypeName(Each->Table->CppName));
	}
	for (FClassRegistration* Each : Classes)
	{
		FObjectTable::Get().ChangeClass(Each->Object, UClass::StaticClass());
	}
	for (FClassRegistration* Each : Classes)
	{
		const FClassTable& Table = *Each->Table;
		UClass* Class = Each->Object;
		Class->bNativeLayout = true;
		Class->PropertiesSize = (int32)Table.Size;
		Class->MinAlignment = (int32)Table.Alignment;
		Class->ClassConstructor = Table.Construct;
		Class->ClassAddReferencedObjects = Table.AddReferencedObjects;
		Class->ClassFlags = Table.Flags | CLASS_Native;
		Class->ClassConfigName = Table.Config ? FName(FString(Table.Config)) : FName();
		if (Table.Super)
		{
			Class->SetSuperStruct(Table.Super());
		}
	}
	for (FClassRegistration* Each : Classes)
	{
		FObjectTable::Get().ChangeIdentity(Each->Object, Each->Object->GetFName(), PackageOf(Each->Table->Package));
	}
}

void FReflectionBuilder::MakeOthers(const TArray<FStructRegistration*>& Structs,
	const TArray<FEnumRegistration*>& Enums, const TArray<FDelegateRegistration*>& Delegates)
{
	const auto Enter = [](auto* Registration, auto* Object)
	{
		Registration->Object = Object;
		FObjectTable::Get().ChangeIdentity(Object, Object->GetFName(), PackageOf(Registration->Table->Package));
	};
	for (FStructRegistration* Each : Structs)
	{
		Enter(Each,
			FObjectFactory::MakeType<UScriptStruct>(UScriptStruct::StaticClass(), TypeName(Each->Table->CppName)));
	}
	for (FEnumRegistration* Each : Enums)
	{
		Enter(Each, FObjectFactory::MakeType<UEnum>(UEnum::StaticClass(), FName(FString(Each->Table->CppName))));
	}
	for (FDelegateRegistration* Each : Delegates)
	{
		Enter(Each, FObjectFactory::MakeType<UFunction>(UFunction::StaticClass(), FName(FString(Each->Table->Name))));
	}
}

void FReflectionBuilder::AddProperties(UStruct* Struct, const TTable<FPropertyTable>& Rows)
{
	FField** Place = &Struct->ChildProperties;
	for (const FPropertyTable& Row : Rows)
	{
		*Place = PropertyBuilder::Build(Struct, Row);
		Place = &(*Place)->Next;
	}
}

void FReflectionBuilder::DescribeFunction(UFunction* Function, const FFunctionTable& Table)
{
	Function->bNativeLayout = true;
	Function->PropertiesSize = (int32)Table.ParmsSize;
	Function->MinAlignment = (int32)Table.ParmsAlignment;
	Function->FunctionFlags = Table.Flags;
	Function->NativeFunc = Table.Exec;
	PropertyBuilder::AddMetaData(*Function, Table.MetaData);
	AddProperties(Function, Table.Parameters);
}

void FReflectionBuilder::AddFunctions(UClass* Class, const FClassTable& Table)
{
	UField** Place = &Class->Children;
	for (const FFunctionTable& Row : Table.Functions)
	{
		UFunction* Function = FObjectFactory::MakeType<UFunction>(UFunction::StaticClass(), FName(FString(Row.Name)));
		FObjectTable::Get().ChangeIdentity(Function, Function->GetFName(), Class);
		DescribeFunction(Function, Row);
		Class->AddFunctionToFunctionMap(Function, Function->GetFName());
		*Place = Function;
		Place = &Function->Next;
	}
}

void FReflectionBuilder::DescribeClass(const FClassRegistration& Registration)
{
	UClass* Class = Registration.Object;
	for (const FInterfaceTable& Row : Registration.Table->Interfaces)
	{
		if (Row.Class)
		{
			Class->Interfaces.Add(FImplementedInterface{Row.Class(), Row.Offset, false});
		}
	}
	PropertyBuilder::AddMetaData(*Class, Registration.Table->MetaData);
	AddProperties(Class, Registration.Table->Properties);
	AddFunctions(Class, *Registration.Table);
}

void FReflectionBuilder::DescribeStruct(const FStructRegistration& Registration)
{
	UScriptStruct* Struct = Registration.Object;
	Struct->bNativeLayout = true;
	Struct->CppStructOps = Registration.Table->Ops;
	Struct->StructFlags = Registration.Table->Flags | STRUCT_Native;
	if (Registration.Table->Super)
	{
		Struct->SetSuperStruct((UStruct*)Registration.Table->Super());
	}
	PropertyBuilder::AddMetaData(*Struct, Registration.Table->MetaData);
	AddProperties(Struct, Registration.Table->Properties);
}

void FReflectionBuilder::DescribeEnum(const FEnumRegistration& Registration)
{
	const FEnumTable& Table = *Registration.Table;
	UEnum* Enum = Registration.Object;
	Enum->CppType = FString(Table.CppName);
	Enum->CppForm = Table.Form;
	Enum->UnderlyingSize = (int32)Table.UnderlyingSize;
	TArray<TPair<FName, int64>> Names;
	for (const FEnumeratorTable& Row : Table.Values)
	{
		Names.Emplace(FName(Enum->GenerateFullEnumName(*FString(Row.Name))), Row.Value);
	}
	const bool bSet = Enum->SetEnums(Names, Table.Form, Table.Flags);
	check(bSet);
	PropertyBuilder::AddMetaData(*Enum, Table.MetaData);
	for (int32 Index = 0; Index < Table.Values.Num; ++Index)
	{
		for (const FMetaDataTable& Row : Table.Values.First[Index].MetaData)
		{
			Enum->SetMetaData(*FString(Row.Key), *FString(Row.Value), Index);
		}
	}
}

/** The structs that a struct holds by value have to be linked before it. */
void FReflectionBuilder::LinkValueTypes(UStruct* Struct, TSet<UStruct*>& Pending)
{
	TArray<FField*> Fields;
	for (FField* Field = Struct->ChildProperties; Field; Field = Field->Next)
	{
		Fields.Add(Field);
	}
	while (!Fields.IsEmpty())
	{
		const FField* Field = Fields.Pop();
		((const FProperty*)Field)->GetInnerFields(Fields);
		if (const FStructProperty* Value = CastField<FStructProperty>(Field))
		{
			Link(Value->Struct, Pending);
		}
	}
}

void FReflectionBuilder::Link(UStruct* Struct, TSet<UStruct*>& Pending)
{
	if (Pending.Remove(Struct) == 0)
	{
		return;
	}
	if (Struct->GetSuperStruct())
	{
		Link(Struct->GetSuperStruct(), Pending);
	}
	LinkValueTypes(Struct, Pending);
	if (UClass* Class = Cast<UClass>(Struct))
	{
		Class->Bind();
	}
	Struct->StaticLink();
}

void FReflectionBuilder::Run()
{
	const TArray<FClassRegistration*> Classes = TakeNew(LastClass);
	const TArray<FStructRegistration*> Structs = TakeNew(LastStruct);
	const TArray<FEnumRegistration*> Enums = TakeNew(LastEnum);
	const TArray<FDelegateRegistration*> Delegates = TakeNew(LastDelegate);
	MakeClasses(Classes);
	MakeOthers(Structs, Enums, Delegates);
	TSet<UStruct*> Pending;
	TArray<UStruct*> InOrder;
	for (const FEnumRegistration* Each : Enums)
	{
		DescribeEnum(*Each);
	}
	for (const FStructRegistration* Each : Structs)
	{
		DescribeStruct(*Each);
		InOrder.Add(Each->Object);
	}
	for (const FDelegateRegistration* Each : Delegates)
	{
		DescribeFunction(Each->Object, *Each->Table);
		InOrder.Add(Each->Object);
	}
	for (const FClassRegistration* Each : Classes)
	{
		DescribeClass(*Each);
		InOrder.Add(Each->Object);
		for (UField* Child = Each->Object->Children; Child; Child = Child->Next)
		{
			InOrder.Add((UFunction*)Child);
		}
	}
	Pending.Append(InOrder);
	for (UStruct* Struct : InOrder)
	{
		Link(Struct, Pending);
	}
}

void FReflectionBuilder::Forget()
{
	const auto Clear = [](auto*& LastSeen)
	{
		LastSeen = nullptr;
		for (auto* Each = std::remove_reference_t<decltype(*LastSeen)>::First; Each; Each = Each->Next)
		{
			Each->Object = nullptr;
		}
	};
	Clear(LastClass);
	Clear(LastStruct);
	Clear(LastEnum);
	Clear(LastDelegate);
}

void Reflection::BuildNewTypes()
{
	static int32 Built = 0;
	const int32 Known = FClassRegistration::Count + FStructRegistration::Count + FEnumRegistration::Count +
		FDelegateRegistration::Count;
	const bool bBuilt = Built == Known && UClass::IsBuilt();
	if (!bBuilt)
	{
		Built = Known;
		FReflectionBuilder::Run();
	}
}

void Reflection::ForgetTypes()
{
	FReflectionBuilder::Forget();
}
