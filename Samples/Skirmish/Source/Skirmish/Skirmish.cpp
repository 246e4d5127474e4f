#include "Skirmish.h"

#include "Modules/ModuleManager.h"

DEFINE_LOG_CATEGORY(LogSkirmish);

IMPLEMENT_PRIMARY_GAME_MODULE(FDefaultGameModuleImpl, Skirmish, "Skirmish");
