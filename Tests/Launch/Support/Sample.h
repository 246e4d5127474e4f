#pragma once

#include "Containers/StringConv.h"
#include "Launch/Support/ProgramRun.h"
#include "Support/TempProject.h"

#include <filesystem>
#include <gtest/gtest.h>

/** What the demo model mends. */
inline const std::string Fault = "if (AmmoInMagazine < 0)";
inline const std::string Fixed = "if (AmmoInMagazine <= 0)";

inline testing::AssertionResult Holds(const std::string& Text, const std::string& Part)
{
	return Text.find(Part) != std::string::npos ? testing::AssertionSuccess()
												: testing::AssertionFailure() << "no \"" << Part << "\" in:\n"
																			  << Text;
}

/** A copy of the sample project. */
class FSample
{
public:
	FSample()
	{
		std::filesystem::copy(CORVEXA_SAMPLES_DIR "/Skirmish", Root(),
			std::filesystem::copy_options::recursive | std::filesystem::copy_options::overwrite_existing);
	}

	std::string Root() const { return TCHAR_TO_UTF8(*Project.Dir()); }
	std::string Weapon() const { return Project.Read("Source/Skirmish/Weapons/SkirmishWeapon.cpp"); }
	std::string Log() const { return Project.Read("Saved/Logs/Skirmish.log"); }

	FProgramRun Run(const std::string& Command, std::vector<std::string> More) const
	{
		More.insert(More.begin(), {Command, "--project", Root()});
		return FProgramRun(std::move(More));
	}

	FTempProject Project;
};
