#include "Support/TempProject.h"

#include "Misc/Paths.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <system_error>

namespace
{
std::filesystem::path MakeFolder()
{
	std::string Pattern = (std::filesystem::temp_directory_path() / "CorvexaTest-XXXXXX").string();
	if (::mkdtemp(Pattern.data()) == nullptr)
	{
		throw std::system_error(errno, std::generic_category(), Pattern);
	}
	// Links on the way, as some systems have them for temporary folders, would make the host's full paths differ.
	return std::filesystem::canonical(Pattern);
}
}

FTempProject::FTempProject(const std::string& Name)
	: Root(MakeFolder())
	, ProjectBefore(FPaths::GetProjectFilePath())
{
	std::filesystem::create_directories(Root / "Saved");
	std::filesystem::create_directories(Root / "Config");
	Write(Name + ".uproject", "{\n\t\"FileVersion\": 3,\n\t\"EngineAssociation\": \"5.7\"\n}\n");
	FPaths::SetProjectFilePath(Path(Name + ".uproject"));
}

FTempProject::~FTempProject()
{
	FPaths::SetProjectFilePath(ProjectBefore);
	std::error_code Error;
	std::filesystem::remove_all(Root, Error);
	EXPECT_FALSE(Error) << Root << ": " << Error.message();
}

FString FTempProject::Dir() const
{
	return FString(Root.c_str()) + TEXT("/");
}

FString FTempProject::Path(const std::string& Relative) const
{
	return FString((Root / Relative).c_str());
}

void FTempProject::Write(const std::string& Relative, const std::string& Bytes) const
{
	const std::filesystem::path File = Root / Relative;
	std::filesystem::create_directories(File.parent_path());
	std::ofstream Stream(File, std::ios::binary);
	Stream << Bytes;
	Stream.close();
	EXPECT_TRUE(Stream.good()) << File;
}

std::string FTempProject::Read(const std::string& Relative) const
{
	std::ifstream Stream(Root / Relative, std::ios::binary);
	EXPECT_TRUE(Stream.good()) << Root / Relative;
	return std::string(std::istreambuf_iterator<char>(Stream), std::istreambuf_iterator<char>());
}

bool FTempProject::Exists(const std::string& Relative) const
{
	return std::filesystem::exists(Root / Relative);
}
