#pragma once

#include "Dom/JsonObject.h"

#include <string>
#include <string_view>

/** What the demo model's dialects share in reading requests and writing events. Any thread. */
namespace DemoJson
{
/** @param Text UTF-8. @return null when it holds no object. */
TSharedPtr<FJsonObject> Parse(std::string_view Text);

/** Empty when there is no such text. */
FString GetText(const FJsonObject& Object, const TCHAR* Member);
/** Null when there is no such object. */
const FJsonObject* FindObject(const FJsonObject& Object, const TCHAR* Member);

/** One line. */
FString Write(const FJsonObject& Object);
/** An event of a stream, with its empty line. @param Name may be null. */
std::string WriteEvent(const FJsonObject& Data, const TCHAR* Name = nullptr);

/** Calls the function with each object of an array that the holder may have. */
template <typename CallType>
void ForEachObject(const FJsonObject& Holder, const TCHAR* Member, const CallType& Call)
{
	const TArray<TSharedPtr<FJsonValue>>* Values = nullptr;
	Holder.TryGetArrayField(Member, Values);
	for (int32 Index = 0; Values && Index < Values->Num(); ++Index)
	{
		const TSharedPtr<FJsonObject>* Object = nullptr;
		if ((*Values)[Index]->TryGetObject(Object))
		{
			Call(**Object);
		}
	}
}

/** An array of one object. */
void SetOnlyElement(FJsonObject& Holder, const TCHAR* Member, const TSharedRef<FJsonObject>& Element);
} // namespace DemoJson
