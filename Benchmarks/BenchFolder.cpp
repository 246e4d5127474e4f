#include "BenchFolder.h"

#include <cstdlib>
#include <string>
#include <system_error>

FBenchFolder::FBenchFolder()
{
	std::string Name = (std::filesystem::temp_directory_path() / "corvexa-bench-XXXXXX").string();
	if (const char* Made = ::mkdtemp(Name.data()))
	{
		Root = Made;
	}
}

FBenchFolder::~FBenchFolder()
{
	if (!Root.empty())
	{
		std::error_code Ignored;
		std::filesystem::remove_all(Root, Ignored);
	}
}
