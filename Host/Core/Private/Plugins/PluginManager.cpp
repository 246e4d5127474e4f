#include "HAL/FileManager.h"
#include "Interfaces/IPluginManager.h"
#include "Misc/Paths.h"

namespace
{
class FPlugin final : public IPlugin
{
public:
	explicit FPlugin(const FString& InDescriptor)
		: Name(FPaths::GetBaseFilename(InDescriptor))
		, Descriptor(InDescriptor)
	{
	}

	const FString& GetName() const override { return Name; }
	const FString& GetDescriptorFileName() const override { return Descriptor; }
	FString GetBaseDir() const override { return FPaths::GetPath(Descriptor); }
	FString GetContentDir() const override { return FPaths::Combine(GetBaseDir(), TEXT("Content")); }

private:
	FString Name;
	FString Descriptor;
};

class FPluginManager final : public IPluginManager
{
public:
	TSharedPtr<IPlugin> FindPlugin(const FString& Name) override
	{
		TArray<FString> Places = {FPaths::ProjectPluginsDir(), FPaths::EnginePluginsDir()};
		Places.Append(SearchPaths);
		for (const FString& Place : Places)
		{
			TArray<FString> Descriptors;
			IFileManager::Get().FindFilesRecursive(
				Descriptors, *FPaths::ConvertRelativePathToFull(Place), TEXT("*.uplugin"), true, false, false);
			const FString* Found = Descriptors.FindByPredicate(
				[&](const FString& Descriptor) { return FPaths::GetBaseFilename(Descriptor) == Name; });
			if (Found)
			{
				return MakeShared<FPlugin>(*Found);
			}
		}
		return nullptr;
	}

	bool AddPluginSearchPath(const FString& ExtraDiscoveryPath, bool /*bRefresh*/) override
	{
		SearchPaths.AddUnique(ExtraDiscoveryPath);
		return true;
	}

private:
	TArray<FString> SearchPaths;
};
} // namespace

IPluginManager& IPluginManager::Get()
{
	static FPluginManager Manager;
	return Manager;
}
