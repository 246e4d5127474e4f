#pragma once

#include <filesystem>

/** A folder of its own for what a benchmark writes, removed at the end. */
class FBenchFolder
{
public:
	FBenchFolder();
	~FBenchFolder();
	FBenchFolder(const FBenchFolder&) = delete;
	FBenchFolder& operator=(const FBenchFolder&) = delete;

	const std::filesystem::path& GetRoot() const { return Root; }
	std::filesystem::path operator/(const std::filesystem::path& Relative) const { return Root / Relative; }

private:
	std::filesystem::path Root;
};
