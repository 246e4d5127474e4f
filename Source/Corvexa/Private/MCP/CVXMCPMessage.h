#pragma once

#include "Dom/JsonObject.h"

/** The messages that go to a server and come from it, each one line of JSON. Any thread. */
namespace CVXMCPMessage
{
/** Without line end. @param Params may be null, which sends an empty object. */
FString MakeRequest(int32 Id, const FString& Method, const TSharedPtr<FJsonObject>& Params);
/** As `MakeRequest`; nobody answers it. */
FString MakeNotification(const FString& Method, const TSharedPtr<FJsonObject>& Params);

/** Whether a message answers the request of that id, be it well or with an error. */
bool IsResponseTo(const FJsonObject& Message, int32 Id);

/**
 * What a response holds: a string as it is, all else as condensed JSON.
 * @param OutError why there is none; left alone when there is. @return empty when there is none.
 */
FString TakeResult(const FJsonObject& Response, FString& OutError);

/** An object as condensed JSON. */
FString ToText(const FJsonObject& Object);
} // namespace CVXMCPMessage
