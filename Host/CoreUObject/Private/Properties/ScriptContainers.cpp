#include "UObject/ScriptContainers.h"

void FScriptArrayHelper::Grow(int32 Count)
{
	check(Count >= 0 && Count <= MAX_int32 - Array->ArrayNum);
	const int32 NewNum = Array->ArrayNum + Count;
	if (NewNum > Array->ArrayMax)
	{
		Array->ArrayMax = CalculateSlackGrow(NewNum, Array->ArrayMax);
		const SIZE_T Bytes = (SIZE_T)Array->ArrayMax * (SIZE_T)Inner->GetElementSize();
		Array->Data = FMemory::Realloc(Array->Data, Bytes, (uint32)Inner->GetMinAlignment());
	}
	Array->ArrayNum = NewNum;
}

int32 FScriptArrayHelper::AddValues(int32 Count)
{
	const int32 First = Num();
	InsertValues(First, Count);
	return First;
}

void FScriptArrayHelper::InsertValues(int32 Index, int32 Count)
{
	check(Index >= 0 && Index <= Num());
	const SIZE_T Size = (SIZE_T)Inner->GetElementSize();
	const SIZE_T Tail = (SIZE_T)(Num() - Index) * Size;
	Grow(Count);
	if (Count == 0)
	{
		return;
	}
	FMemory::Memmove(ElementAt(Index + Count), ElementAt(Index), Tail);
	FMemory::Memzero(ElementAt(Index), (SIZE_T)Count * Size);
	for (int32 Each = Index; Each < Index + Count; ++Each)
	{
		Inner->InitializeOne(ElementAt(Each));
	}
}

void FScriptArrayHelper::RemoveValues(int32 Index, int32 Count)
{
	check(Index >= 0 && Count >= 0 && Count <= Num() - Index);
	if (Count == 0)
	{
		return;
	}
	for (int32 Each = Index; Each < Index + Count; ++Each)
	{
		Inner->DestroyOne(ElementAt(Each));
	}
	const SIZE_T Tail = (SIZE_T)(Num() - Index - Count) * (SIZE_T)Inner->GetElementSize();
	FMemory::Memmove(ElementAt(Index), ElementAt(Index + Count), Tail);
	Array->ArrayNum -= Count;
}

void FScriptArrayHelper::EmptyValues(int32 Slack)
{
	RemoveValues(0, Num());
	if (Slack == 0)
	{
		FMemory::Free(Array->Data);
		*Array = FScriptArray();
	}
	else if (Slack > Array->ArrayMax)
	{
		Grow(Slack);
		Array->ArrayNum = 0;
	}
}

void FScriptArrayHelper::EmptyAndAddValues(int32 Count)
{
	EmptyValues(Count);
	AddValues(Count);
}

void FScriptArrayHelper::Resize(int32 Count)
{
	check(Count >= 0);
	if (Count > Num())
	{
		AddValues(Count - Num());
	}
	else
	{
		RemoveValues(Count, Num() - Count);
	}
}

void FScriptArrayHelper::SwapValues(int32 A, int32 B)
{
	uint8* Left = GetRawPtr(A);
	uint8* Right = GetRawPtr(B);
	for (int32 Byte = 0; Byte < Inner->GetElementSize(); ++Byte)
	{
		Swap(Left[Byte], Right[Byte]);
	}
}

int32 FScriptSetHelper::FindElementIndex(const void* Element) const
{
	const FProperty* Elements = Property->ElementProp;
	return Set->Find(Elements->GetValueTypeHash(Element), Property->SetLayout,
		[&](int32 Index) { return Elements->Identical(GetElementPtr(Index), Element); });
}

int32 FScriptSetHelper::AddElement(const void* Element)
{
	int32 Index = FindElementIndex(Element);
	if (Index == INDEX_NONE)
	{
		const FProperty* Elements = Property->ElementProp;
		Index = Set->Add(Elements->GetValueTypeHash(Element), Property->SetLayout, nullptr);
		void* Place = Set->GetData(Index, Property->SetLayout);
		FMemory::Memzero(Place, (SIZE_T)Elements->GetElementSize());
		Elements->InitializeOne(Place);
		Elements->CopyValue(Place, Element);
	}
	return Index;
}

bool FScriptSetHelper::RemoveElement(const void* Element)
{
	const int32 Index = FindElementIndex(Element);
	if (Index == INDEX_NONE)
	{
		return false;
	}
	RemoveAt(Index);
	return true;
}

void FScriptSetHelper::RemoveAt(int32 Index)
{
	Property->ElementProp->DestroyOne(GetElementPtr(Index));
	Set->RemoveAt(Index, Property->SetLayout);
}

void FScriptSetHelper::EmptyElements()
{
	for (int32 Index = 0; Index < GetMaxIndex(); ++Index)
	{
		if (IsValidIndex(Index))
		{
			Property->ElementProp->DestroyOne(GetElementPtr(Index));
		}
	}
	Set->Empty();
}

int32 FScriptMapHelper::FindMapIndexWithKey(const void* Key) const
{
	const FProperty* Keys = Property->KeyProp;
	return Set->Find(Keys->GetValueTypeHash(Key), Property->MapLayout.SetLayout,
		[&](int32 Index) { return Keys->Identical(GetKeyPtr(Index), Key); });
}

uint8* FScriptMapHelper::FindValueFromHash(const void* Key) const
{
	const int32 Index = FindMapIndexWithKey(Key);
	return Index == INDEX_NONE ? nullptr : GetValuePtr(Index);
}

void* FScriptMapHelper::FindOrAdd(const void* Key)
{
	int32 Index = FindMapIndexWithKey(Key);
	if (Index == INDEX_NONE)
	{
		const FScriptSetLayout& Layout = Property->MapLayout.SetLayout;
		Index = Set->Add(Property->KeyProp->GetValueTypeHash(Key), Layout, nullptr);
		uint8* Place = (uint8*)Set->GetData(Index, Layout);
		FMemory::Memzero(Place, (SIZE_T)Layout.LinkOffset);
		Property->KeyProp->InitializeOne(Place);
		Property->ValueProp->InitializeOne(Place + Property->MapLayout.ValueOffset);
		Property->KeyProp->CopyValue(Place, Key);
	}
	return GetValuePtr(Index);
}

int32 FScriptMapHelper::AddPair(const void* Key, const void* Value)
{
	Property->ValueProp->CopyValue(FindOrAdd(Key), Value);
	return FindMapIndexWithKey(Key);
}

bool FScriptMapHelper::RemovePair(const void* Key)
{
	const int32 Index = FindMapIndexWithKey(Key);
	if (Index == INDEX_NONE)
	{
		return false;
	}
	RemoveAt(Index);
	return true;
}

void FScriptMapHelper::RemoveAt(int32 Index)
{
	Property->ValueProp->DestroyOne(GetValuePtr(Index));
	Property->KeyProp->DestroyOne(GetKeyPtr(Index));
	Set->RemoveAt(Index, Property->MapLayout.SetLayout);
}

void FScriptMapHelper::EmptyValues()
{
	for (int32 Index = 0; Index < GetMaxIndex(); ++Index)
	{
		if (IsValidIndex(Index))
		{
			Property->ValueProp->DestroyOne(GetValuePtr(Index));
			Property->KeyProp->DestroyOne(GetKeyPtr(Index));
		}
	}
	Set->Empty();
}
