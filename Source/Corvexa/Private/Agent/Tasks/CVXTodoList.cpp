#include "Agent/Tasks/CVXTodoList.h"

#include "Algo/AnyOf.h"
#include "Dom/JsonObject.h"
#include "Serialization/JsonReader.h"
#include "Serialization/JsonSerializer.h"
#include "Serialization/JsonWriter.h"

namespace
{
/** Indexed by ECVXTodoStatus. */
constexpr const TCHAR* StatusNames[] = {TEXT("pending"), TEXT("in_progress"), TEXT("completed"), TEXT("cancelled")};

FCVXTodoItem ReadItem(const FJsonObject& Object)
{
	FCVXTodoItem Item;
	FString Status;
	Object.TryGetStringField(TEXT("id"), Item.Id);
	Object.TryGetStringField(TEXT("content"), Item.Content);
	Object.TryGetStringField(TEXT("status"), Status);
	Item.Status = FCVXTodoList::ParseStatus(Status);
	return Item;
}
} // namespace

void FCVXTodoList::UpdateFromJson(const FString& Json)
{
	TArray<TSharedPtr<FJsonValue>> Values;
	if (!FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(Json), Values))
	{
		return;
	}
	Items.Reset();
	for (const TSharedPtr<FJsonValue>& Value : Values)
	{
		const TSharedPtr<FJsonObject>* Object = nullptr;
		if (Value.IsValid() && Value->TryGetObject(Object))
		{
			Items.Add(ReadItem(**Object));
		}
	}
	OnChanged.Broadcast();
}

FString FCVXTodoList::ToJson() const
{
	FString Json;
	const TSharedRef<TJsonWriter<>> Writer = TJsonWriterFactory<>::Create(&Json);
	Writer->WriteArrayStart();
	for (const FCVXTodoItem& Item : Items)
	{
		Writer->WriteObjectStart();
		Writer->WriteValue(TEXT("id"), Item.Id);
		Writer->WriteValue(TEXT("content"), Item.Content);
		Writer->WriteValue(TEXT("status"), StatusToString(Item.Status));
		Writer->WriteObjectEnd();
	}
	Writer->WriteArrayEnd();
	Writer->Close();
	return Json;
}

bool FCVXTodoList::HasActiveItems() const
{
	return Algo::AnyOf(Items, [](const FCVXTodoItem& Item) { return IsOpen(Item.Status); });
}

int32 FCVXTodoList::CountItems(ECVXTodoStatus Status) const
{
	int32 Count = 0;
	for (const FCVXTodoItem& Item : Items)
	{
		Count += Item.Status == Status ? 1 : 0;
	}
	return Count;
}

void FCVXTodoList::MarkInProgressAsCompleted()
{
	bool bChanged = false;
	for (FCVXTodoItem& Item : Items)
	{
		if (IsOpen(Item.Status))
		{
			Item.Status = ECVXTodoStatus::Completed;
			bChanged = true;
		}
	}
	if (bChanged)
	{
		OnChanged.Broadcast();
	}
}

FString FCVXTodoList::StatusToString(ECVXTodoStatus Status)
{
	const int32 Index = static_cast<int32>(Status);
	return Index < UE_ARRAY_COUNT(StatusNames) ? StatusNames[Index] : StatusNames[0];
}

ECVXTodoStatus FCVXTodoList::ParseStatus(const FString& Text)
{
	for (int32 Index = 0; Index < UE_ARRAY_COUNT(StatusNames); ++Index)
	{
		if (Text.Equals(StatusNames[Index], ESearchCase::IgnoreCase))
		{
			return static_cast<ECVXTodoStatus>(Index);
		}
	}
	return ECVXTodoStatus::Pending;
}
