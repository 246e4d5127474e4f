#include "UObject/Class.h"

void UObject::OverridePerObjectConfigSection(FString&) {}

void UObject::LoadConfig(UClass*, const TCHAR*, uint32, FProperty*) {}
