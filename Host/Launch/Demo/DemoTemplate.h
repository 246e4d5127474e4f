#pragma once

#include "Launch/Demo/DemoRequest.h"
#include "Templates/SharedPointer.h"

class FJsonObject;

/** Pieces of a conversation by name. */
using FDemoNames = TMap<FString, FString>;

/** Finds what a rule's "let" names. @return false when the conversation doesn't hold one of them. */
bool FindDemoNames(const FJsonObject& Rule, const FDemoRequest& Request, FDemoNames& OutNames);

/** Puts the pieces in the place of their {{names}}. */
FString FillDemoTemplate(const FString& Text, const FDemoNames& Names);
/** The same in all texts of an object. */
TSharedRef<FJsonObject> FillDemoTemplate(const TSharedPtr<FJsonObject>& Object, const FDemoNames& Names);
