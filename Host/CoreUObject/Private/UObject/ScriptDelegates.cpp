#include "UObject/ScriptDelegates.h"

#include "UObject/UObjectGlobals.h"

void FScriptDelegate::BindUFunction(UObject* InObject, FName InFunctionName)
{
	Object = InObject;
	FunctionName = InFunctionName;
}

bool FScriptDelegate::IsBound() const
{
	const UObject* Target = Object.Get();
	return Target && Target->FindFunction(FunctionName);
}

bool FScriptDelegate::ProcessDelegate(void* Parms) const
{
	UObject* Target = Object.Get();
	UFunction* Function = Target ? Target->FindFunction(FunctionName) : nullptr;
	if (Function)
	{
		Target->ProcessEvent(Function, Parms);
	}
	return Function != nullptr;
}

FString FScriptDelegate::ToString() const
{
	const UObject* Target = Object.Get();
	return Target ? Target->GetPathName() + TEXT(".") + FunctionName.ToString() : FString(TEXT("None"));
}

void FMulticastScriptDelegate::Remove(const UObject* Object, FName FunctionName)
{
	Bindings.RemoveAll([=](const FScriptDelegate& Each)
		{ return Each.IsBoundToObject(Object) && Each.GetFunctionName() == FunctionName; });
}

void FMulticastScriptDelegate::RemoveAll(const UObject* Object)
{
	Bindings.RemoveAll([=](const FScriptDelegate& Each) { return Each.IsBoundToObject(Object); });
}

bool FMulticastScriptDelegate::IsBound() const
{
	return Bindings.ContainsByPredicate([](const FScriptDelegate& Each) { return Each.IsBound(); });
}

bool FMulticastScriptDelegate::Contains(const UObject* Object, FName FunctionName) const
{
	return Bindings.ContainsByPredicate([=](const FScriptDelegate& Each)
		{ return Each.IsBoundToObject(Object) && Each.GetFunctionName() == FunctionName; });
}

void FMulticastScriptDelegate::ProcessMulticastDelegate(void* Parms) const
{
	const TArray<FScriptDelegate> Snapshot = Bindings;
	for (const FScriptDelegate& Each : Snapshot)
	{
		Each.ProcessDelegate(Parms);
	}
}

FString FMulticastScriptDelegate::ToString() const
{
	const FString List =
		FString::JoinBy(Bindings, TEXT(","), [](const FScriptDelegate& Each) { return Each.ToString(); });
	return TEXT("(") + List + TEXT(")");
}

FName Reflection::FunctionNameOf(const TCHAR* MemberPointerText)
{
	const FStringView Text = FStringView(MemberPointerText).TrimStartAndEnd();
	int32 Colon = INDEX_NONE;
	Text.FindLastChar(TEXT(':'), Colon);
	return FName(Text.RightChop(Colon + 1).TrimStart());
}
