// Runs a fuzz target over the files, and the files of the folders, that the command line names.

#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size);

namespace
{
using FPath = std::filesystem::path;

void Replay(const FPath& File)
{
	std::ifstream Stream(File, std::ios::binary);
	if (!Stream)
	{
		throw std::filesystem::filesystem_error(
			"can't be read", File, std::make_error_code(std::errc::no_such_file_or_directory));
	}
	const std::vector<char> Bytes((std::istreambuf_iterator<char>(Stream)), std::istreambuf_iterator<char>());
	LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(Bytes.data()), Bytes.size());
}

/** @return how many files were replayed. */
int ReplayAll(const FPath& Path)
{
	if (!std::filesystem::is_directory(Path))
	{
		Replay(Path);
		return 1;
	}
	int Count = 0;
	for (const std::filesystem::directory_entry& Entry : std::filesystem::recursive_directory_iterator(Path))
	{
		Count += Entry.is_regular_file() ? ReplayAll(Entry.path()) : 0;
	}
	return Count;
}
}

int main(int Count, char** Arguments)
{
	int Replayed = 0;
	try
	{
		for (int Index = 1; Index < Count; ++Index)
		{
			Replayed += ReplayAll(Arguments[Index]);
		}
	}
	catch (const std::exception& Error)
	{
		std::fprintf(stderr, "%s\n", Error.what());
		return 1;
	}
	std::printf("%d inputs replayed\n", Replayed);
	return Replayed > 0 ? 0 : 2;
}
