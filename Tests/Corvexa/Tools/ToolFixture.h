#pragma once

#include "Core/CVXSettings.h"
#include "Support/HostTypePrinting.h"
#include "Support/LoopPump.h"
#include "Support/TempProject.h"
#include "Tools/CVXToolRegistry.h"

/** A tool whose flags and work a test sets. */
class FFakeTool final : public ICVXTool
{
public:
	using FWork = TFunction<FCVXToolExecutionResult(const FString&)>;

	FFakeTool(const FString& InName, FWork InWork)
		: Name(InName)
		, Work(MoveTemp(InWork))
	{
	}

	FFakeTool& ReadOnly()
	{
		bReadOnly = true;
		return *this;
	}
	FFakeTool& ThreadSafe()
	{
		bThreadSafe = true;
		return *this;
	}

	FString GetName() const override { return Name; }
	FString GetDescription() const override { return TEXT("about ") + Name; }
	FString GetInputSchemaJson() const override { return TEXT("{}"); }
	FCVXToolExecutionResult Execute(const FString& Arguments, const FCVXAgentProfile&) override
	{
		return Work(Arguments);
	}
	bool IsReadOnly() const override { return bReadOnly; }
	bool IsThreadSafe() const override { return bThreadSafe; }

	/** Registers a tool like this one. */
	void Register() const { FCVXToolRegistry::Get().RegisterTool(MakeUnique<FFakeTool>(*this)); }

private:
	FString Name;
	FWork Work;
	bool bReadOnly = false;
	bool bThreadSafe = false;
};

/** A project, a loop, no tools, and settings that are put back. */
class FToolFixture : public testing::Test
{
protected:
	~FToolFixture() override
	{
		FCVXToolRegistry::Get().Clear();
		Settings.AutoApprovalRules = Rules;
		Settings.ProtectedPaths = Protected;
		Settings.IgnorePatterns = Ignored;
		Settings.AgentProfiles = Agents;
	}

	FTempProject Project;
	FLoopPump Pump;
	UCVXSettings& Settings = *UCVXSettings::Get();

private:
	const TArray<FCVXAutoApprovalRule> Rules = Settings.AutoApprovalRules;
	const TArray<FString> Protected = Settings.ProtectedPaths;
	const TArray<FString> Ignored = Settings.IgnorePatterns;
	const TArray<FCVXAgentProfile> Agents = Settings.AgentProfiles;
};
