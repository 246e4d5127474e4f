#pragma once

#include "Containers/UnrealString.h"

#include <filesystem>
#include <string>

/**
 * A project in a folder of its own, which is the host's project while this lives: a project file, Saved and Config. It
 * is made and removed without the host, so that a fault plan leaves it alone. One at a time; the folder and all in it
 * go.
 */
class FTempProject
{
public:
	explicit FTempProject(const std::string& Name = "Skirmish");
	~FTempProject();
	FTempProject(const FTempProject&) = delete;
	FTempProject& operator=(const FTempProject&) = delete;

	/** Absolute, with a slash at the end. */
	FString Dir() const;
	/** The absolute path of something in the project. */
	FString Path(const std::string& Relative) const;
	/** Writes the bytes as they are, making folders as needed. */
	void Write(const std::string& Relative, const std::string& Bytes) const;
	/** The bytes of a file; a test failure, and nothing, when it can't be read. */
	std::string Read(const std::string& Relative) const;
	bool Exists(const std::string& Relative) const;

private:
	std::filesystem::path Root;
	FString ProjectBefore;
};
