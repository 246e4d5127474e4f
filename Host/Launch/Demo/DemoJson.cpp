#include "Launch/Demo/DemoJson.h"

#include "Policies/CondensedJsonPrintPolicy.h"
#include "Serialization/JsonSerializer.h"

TSharedPtr<FJsonObject> DemoJson::Parse(std::string_view Text)
{
	TSharedPtr<FJsonObject> Root;
	const FString Decoded = FString::FromUtf8(Text.data(), static_cast<int64>(Text.size()));
	return FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(Decoded), Root) ? Root : nullptr;
}

FString DemoJson::GetText(const FJsonObject& Object, const TCHAR* Member)
{
	FString Text;
	Object.TryGetStringField(Member, Text);
	return Text;
}

const FJsonObject* DemoJson::FindObject(const FJsonObject& Object, const TCHAR* Member)
{
	const TSharedPtr<FJsonObject>* Found = nullptr;
	return Object.TryGetObjectField(Member, Found) ? Found->Get() : nullptr;
}

FString DemoJson::Write(const FJsonObject& Object)
{
	FString Json;
	TJsonWriter<TCHAR, TCondensedJsonPrintPolicy<TCHAR>> Writer(Json);
	verify(FJsonSerializer::Serialize(Object, Writer));
	return Json;
}

std::string DemoJson::WriteEvent(const FJsonObject& Data, const TCHAR* Name)
{
	const FString Head = Name ? FString::Printf(TEXT("event: %s\n"), Name) : FString();
	return std::string(TCHAR_TO_UTF8(*(Head + TEXT("data: ") + Write(Data)))) + "\n\n";
}

void DemoJson::SetOnlyElement(FJsonObject& Holder, const TCHAR* Member, const TSharedRef<FJsonObject>& Element)
{
	Holder.SetArrayField(Member, {MakeShared<FJsonValueObject>(Element)});
}
