#pragma once

#include "Containers/Array.h"
#include "Containers/UnrealString.h"
#include "Templates/SharedPointer.h"

/** A plug-in that was found on disk. */
class IPlugin
{
public:
	virtual ~IPlugin() = default;

	virtual const FString& GetName() const = 0;
	/** The path of its descriptor, NAME.uplugin. */
	virtual const FString& GetDescriptorFileName() const = 0;
	/** The directory that the descriptor lies in. */
	virtual FString GetBaseDir() const = 0;
	virtual FString GetContentDir() const = 0;
};

/** The plug-ins under the project's, then the engine's plug-in directory, then the search paths added. Game thread. */
class IPluginManager
{
public:
	/** Made at the first call and kept to the end of the process. */
	static IPluginManager& Get();
	virtual ~IPluginManager() = default;

	/** @param Name compares without regard to case. @return null when no place has such a plug-in. */
	virtual TSharedPtr<IPlugin> FindPlugin(const FString& Name) = 0;
	/** A further directory to look in, at any depth. */
	virtual bool AddPluginSearchPath(const FString& ExtraDiscoveryPath, bool bRefresh = true) = 0;
};
