#include "Agent/Checkpoints/CVXCheckpointFile.h"
#include "Agent/Checkpoints/CVXCheckpointJson.h"
#include "Agent/Tasks/CVXTask.h"
#include "LaunchEngineLoop.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace
{
namespace fs = std::filesystem;

/** A host, and a directory for the one file that is read again and again. */
struct FRun
{
	FRun()
	{
		std::string Name = (fs::temp_directory_path() / "CorvexaFuzz-XXXXXX").string();
		Directory = ::mkdtemp(Name.data());
		FEngineLoopParams Params;
		Params.ProjectFile = FString((Directory / "Fuzz.uproject").c_str());
		Params.bLogFile = false;
		Params.bLogToTerminal = false;
		Loop.Init(Params);
	}
	~FRun()
	{
		Loop.Exit();
		std::error_code Ignored;
		fs::remove_all(Directory, Ignored);
	}

	fs::path Directory;
	FEngineLoop Loop;
};

/** What has been read is written and read again without a difference. */
void CheckRoundTrip(const FString& Json)
{
	const FCVXAgentProfile Profile;
	FCVXTask First(TEXT("a"), TEXT("Task"), nullptr, Profile);
	FCVXTask Second(TEXT("a"), TEXT("Task"), nullptr, Profile);
	int32 Count = 0;
	int32 Again = 0;
	if (CVXCheckpointJson::Read(Json, TEXT("fuzz"), First, Count) == CVXCheckpointJson::EReadResult::Done)
	{
		check(CVXCheckpointJson::Read(CVXCheckpointJson::Write(First), TEXT("fuzz"), Second, Again) ==
			CVXCheckpointJson::EReadResult::Done);
		check(Count == Again && First.GetTodoList().ToJson().Equals(Second.GetTodoList().ToJson()));
	}
}
} // namespace

/** Takes the input for a text, and for a file in either form. */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size)
{
	static const FRun Run;
	CheckRoundTrip(FString::FromUtf8(reinterpret_cast<const ANSICHAR*>(Data), static_cast<int64>(Size)));
	const fs::path File = Run.Directory / "checkpoint.json.gz";
	std::ofstream(File, std::ios::binary)
		.write(reinterpret_cast<const char*>(Data), static_cast<std::streamsize>(Size));
	FString Json;
	if (CVXCheckpointFile::Read(FString((Run.Directory / "checkpoint.json").c_str()), Json))
	{
		CheckRoundTrip(Json);
	}
	return 0;
}
