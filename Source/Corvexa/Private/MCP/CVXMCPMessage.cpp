#include "MCP/CVXMCPMessage.h"

#include "Policies/CondensedJsonPrintPolicy.h"
#include "Serialization/JsonSerializer.h"

namespace
{
using FWriter = TJsonWriter<TCHAR, TCondensedJsonPrintPolicy<TCHAR>>;

FString MakeMessage(FJsonObject& Message, const FString& Method, const TSharedPtr<FJsonObject>& Params)
{
	Message.SetStringField(TEXT("method"), Method);
	Message.SetObjectField(TEXT("params"), Params ? Params : MakeShared<FJsonObject>());
	return CVXMCPMessage::ToText(Message);
}

FJsonObject StartMessage()
{
	FJsonObject Message;
	Message.SetStringField(TEXT("jsonrpc"), TEXT("2.0"));
	return Message;
}

FString ValueToText(const TSharedPtr<FJsonValue>& Value)
{
	if (Value->Type != EJson::Object && Value->Type != EJson::Array)
	{
		return Value->AsString();
	}
	FString Text;
	FWriter Writer(Text);
	verify(FJsonSerializer::Serialize(Value, FString(), Writer));
	return Text;
}
} // namespace

FString CVXMCPMessage::MakeRequest(int32 Id, const FString& Method, const TSharedPtr<FJsonObject>& Params)
{
	FJsonObject Message = StartMessage();
	Message.SetNumberField(TEXT("id"), Id);
	return MakeMessage(Message, Method, Params);
}

FString CVXMCPMessage::MakeNotification(const FString& Method, const TSharedPtr<FJsonObject>& Params)
{
	FJsonObject Message = StartMessage();
	return MakeMessage(Message, Method, Params);
}

bool CVXMCPMessage::IsResponseTo(const FJsonObject& Message, int32 Id)
{
	const TSharedPtr<FJsonValue> Found = Message.TryGetField(TEXT("id"));
	// A server counts its own requests from wherever it likes, so one of them may bear our number.
	return Found && Found->Type == EJson::Number && Found->AsNumber() == Id && !Message.HasField(TEXT("method"));
}

FString CVXMCPMessage::TakeResult(const FJsonObject& Response, FString& OutError)
{
	if (Response.HasTypedField<EJson::Object>(TEXT("error")))
	{
		(void)Response.GetObjectField(TEXT("error"))->TryGetStringField(TEXT("message"), OutError);
		OutError = OutError.IsEmpty() ? FString(TEXT("Server returned error")) : OutError;
		return FString();
	}
	const TSharedPtr<FJsonValue> Result = Response.TryGetField(TEXT("result"));
	if (!Result)
	{
		OutError = TEXT("Response missing 'result' field");
		return FString();
	}
	return ValueToText(Result);
}

FString CVXMCPMessage::ToText(const FJsonObject& Object)
{
	FString Text;
	FWriter Writer(Text);
	verify(FJsonSerializer::Serialize(Object, Writer));
	return Text;
}
