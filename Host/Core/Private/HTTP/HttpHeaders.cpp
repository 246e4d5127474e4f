#include "HttpTransfer.h"

void FHttpHeaders::Set(const FString& Name, const FString& Value)
{
	FItem* Item = Items.FindByPredicate([&Name](const FItem& Each) { return Each.Name == Name; });
	FItem& Target = Item ? *Item : Items.AddDefaulted_GetRef();
	Target.Name = Name;
	Target.Value = Value;
}

void FHttpHeaders::Append(const FString& Name, const FString& Value)
{
	const FString Old = Find(Name);
	Set(Name, Old.IsEmpty() ? Value : Old + TEXT(", ") + Value);
}

FString FHttpHeaders::Find(const FString& Name) const
{
	const FItem* Item = Items.FindByPredicate([&Name](const FItem& Each) { return Each.Name == Name; });
	return Item ? Item->Value : FString();
}

TArray<FString> FHttpHeaders::ToLines() const
{
	TArray<FString> Lines;
	for (const FItem& Item : Items)
	{
		Lines.Add(Item.Name + TEXT(": ") + Item.Value);
	}
	return Lines;
}
