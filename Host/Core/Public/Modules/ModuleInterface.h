#pragma once

/** A module: a part of the program that is started and ended as a whole. Game thread. */
class IModuleInterface
{
public:
	virtual ~IModuleInterface() = default;

	/** Runs once, right behind the module's making. */
	virtual void StartupModule() {}
	/** Runs once, right ahead of the module's end. */
	virtual void ShutdownModule() {}
	/** Whether this is game code rather than a part of the editor. */
	virtual bool IsGameModule() const { return false; }
};
