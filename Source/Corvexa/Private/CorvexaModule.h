#pragma once

#include "Modules/ModuleInterface.h"

/** The plug-in as a module: starts all of it in order, each step short and none able to stop the others. Game thread.
 */
class FCorvexaModule : public IModuleInterface
{
public:
	void StartupModule() override;
	void ShutdownModule() override;
};
