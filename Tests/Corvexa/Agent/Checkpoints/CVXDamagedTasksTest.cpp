#include "Agent/Checkpoints/CVXCheckpointFile.h"
#include "Agent/Checkpoints/CVXCheckpointManager.h"
#include "Agent/Tasks/CVXTaskManager.h"
#include "Corvexa/Agent/Checkpoints/StoredTask.h"
#include "Misc/Compression.h"
#include "Support/HostTypePrinting.h"
#include "Support/LoopPump.h"
#include "Support/TempProject.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace
{
namespace fs = std::filesystem;

const TCHAR* GoodIds[] = {TEXT("0000000000000000000000000000000a"), TEXT("ffffffffffffffffffffffffffffffff")};
const TCHAR* VictimId = TEXT("55555555555555555555555555555555");

/** A project with two whole tasks, and between them one with an older whole checkpoint of one message. */
class CVXDamagedTasksTest : public testing::Test
{
protected:
	CVXDamagedTasksTest()
	{
		for (const TCHAR* Id : {GoodIds[0], GoodIds[1], VictimId})
		{
			FCVXCheckpointManager::Get().SaveCheckpointDirect(*MakeTask(Id, 1), 20, true);
		}
		Tasks = fs::path(TCHAR_TO_UTF8(*FCVXCheckpointManager::GetTasksDir()));
		Victim = Tasks / TCHAR_TO_UTF8(VictimId);
	}
	~CVXDamagedTasksTest() override { FCVXTaskManager::Get().ReleaseTasks(); }

	static TSharedRef<FCVXTask> MakeTask(const FString& Id, int32 Messages)
	{
		std::mt19937 Random(7);
		const TSharedRef<FCVXTask> Task = StoredTask::Make(Id);
		for (int32 Message = 0; Message < Messages; ++Message)
		{
			StoredTask::Speak(*Task, Random);
		}
		return Task;
	}

	/** The bytes of a whole checkpoint of two messages. */
	std::string MakeNewer(bool bCompress) const
	{
		FCVXCheckpointManager::Get().SaveCheckpointDirect(*MakeTask(VictimId, 2), 20, bCompress);
		const fs::path File = Victim / (bCompress ? "checkpoint_0001.json.gz" : "checkpoint_0001.json");
		const std::string Bytes = Project.Read(fs::relative(File, Root()).string());
		fs::remove(File);
		return Bytes;
	}

	fs::path Root() const { return fs::path(TCHAR_TO_UTF8(*Project.Dir())); }
	void Write(const fs::path& File, const std::string& Bytes) const
	{
		Project.Write(fs::relative(File, Root()).string(), Bytes);
	}

	/** Starts anew. Whatever was done to it, the victim must come back with one of its states, and the others whole. */
	void ExpectAllBack(const std::string& After)
	{
		SCOPED_TRACE(After);
		FCVXTaskManager& Manager = FCVXTaskManager::Get();
		Manager.ReleaseTasks();
		Manager.RestoreSessions();
		for (const TCHAR* Id : {GoodIds[0], GoodIds[1], VictimId})
		{
			const TSharedPtr<FCVXTask> Task = Manager.FindTask(Id);
			ASSERT_TRUE(Task) << TCHAR_TO_UTF8(Id);
			StoredTask::ExpectWhole(*Task);
			EXPECT_LE(StoredTask::Count(*Task), FCString::Strcmp(Id, VictimId) == 0 ? 2 : 1);
		}
	}

	FTempProject Project;
	FLoopPump Pump;
	fs::path Tasks;
	fs::path Victim;
};

std::string Deflate(const std::string& Plain, uint32 Claim)
{
	int32 Size = FCompression::CompressMemoryBound(NAME_Zlib, static_cast<int32>(Plain.size()));
	std::string Bytes(4 + Size, '\0');
	std::memcpy(Bytes.data(), &Claim, 4);
	EXPECT_TRUE(FCompression::CompressMemory(
		NAME_Zlib, Bytes.data() + 4, Size, Plain.data(), static_cast<int32>(Plain.size())));
	Bytes.resize(4 + Size);
	return Bytes;
}

TEST_F(CVXDamagedTasksTest, DamagedBytesGiveTheOlderStateAndStopNothing)
{
	const std::string Packed = MakeNewer(true);
	const std::string Plain = MakeNewer(false);
	const std::string Png("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
	struct FCase
	{
		const char* Name;
		std::string Bytes;
	};
	TArray<FCase> Cases = {
		{"empty", ""},
		{"a picture", Png},
		{"text that claims to be long", std::string("\xff\xc1\xeb\x0b", 4) + std::string(64, 'x')},
		{"a stream that claims 200 MB", Deflate(Plain.substr(0, 100), 209715199)},
		{"a claim beyond all bounds", Deflate("{}", 0xffffffffu)},
		{"much out of little", Deflate(std::string(32 << 20, '\0'), 32 << 20)},
		{"deep arrays", std::string(200000, '[')},
		{"deep objects",
			[]
			{
				std::string Text;
				for (int Depth = 0; Depth < 50000; ++Depth)
				{
					Text += "{\"a\":";
				}
				return Text;
			}()},
		{"nothing but zeros", std::string(4096, '\0')},
		{"an array", "[1,2]"},
		{"null", "null"},
		{"no messages", "{\"title\":\"x\"}"},
		{"half a mark", "\xff\xfe{"},
	};
	for (const std::size_t Length : {1, 2, 3, 4, 5, 8, 9, 10, 64})
	{
		Cases.Add({"cut short", Packed.substr(0, Length)});
		Cases.Add({"cut short, plain", Plain.substr(0, Length)});
	}
	Cases.Add({"its end cut off", Packed.substr(0, Packed.size() - 1)});
	Cases.Add({"its half cut off", Packed.substr(0, Packed.size() / 2)});
	for (std::size_t Byte = 0; Byte < Packed.size(); Byte += 37)
	{
		Cases.Add({"a bit flipped", Packed});
		Cases.Last().Bytes[Byte] ^= static_cast<char>(1 << (Byte % 8));
	}
	for (const FCase& Case : Cases)
	{
		for (const char* Name : {"checkpoint_0001.json.gz", "checkpoint_0001.json"})
		{
			Write(Victim / Name, Case.Bytes);
			ExpectAllBack(std::string(Case.Name) + " of " + std::to_string(Case.Bytes.size()) + " bytes as " + Name);
			fs::remove(Victim / Name);
		}
		Write(Victim / "delegations.json", Case.Bytes);
	}
}

TEST_F(CVXDamagedTasksTest, ValuesOfTheWrongKindAreLeftOut)
{
	const char* Values[] = {"null", "true", "-7.5e300", "\"\\ud800\"", "[]", "{}", "[[{\"type\":7}]]"};
	const char* Keys[] = {"task_id", "title", "created_at", "agent_profile", "parent_task_id", "nesting_depth",
		"is_sub_task", "todo_list"};
	const auto Restore = [&](const std::string& Json)
	{
		Write(Victim / "checkpoint_0001.json", Json);
		ExpectAllBack(Json);
		const TSharedPtr<FCVXTask> Task = FCVXTaskManager::Get().FindTask(VictimId);
		ASSERT_TRUE(Task);
		EXPECT_GE(Task->NestingDepth, 0);
	};
	const std::string Good = "{\"role\":\"user\",\"content\":[{\"type\":\"text\",\"text\":\"1 me: hi\"}]}";
	for (const char* Value : Values)
	{
		for (const char* Key : Keys)
		{
			Restore("{\"" + std::string(Key) + "\":" + Value + ",\"messages\":[" + Good + "]}");
		}
		Restore("{\"messages\":[" + std::string(Value) + "," + Good + "]}");
		if (Value[0] != '[')
		{
			Restore("{\"messages\":" + std::string(Value) + "}");
		}
		for (const char* Key : {"id", "agent_name", "reasoning_content"})
		{
			Restore("{\"messages\":[" + Good.substr(0, Good.size() - 1) + ",\"" + Key + "\":" + Value + "}]}");
		}
		Restore("{\"messages\":[{\"role\":" + std::string(Value) + ",\"content\":[]}," + Good + "]}");
		Restore("{\"messages\":[{\"role\":\"user\",\"content\":" + std::string(Value) + "}," + Good + "]}");
	}
}

TEST_F(CVXDamagedTasksTest, WhatIsNoFileIsPassedBy)
{
	const fs::path Newer = Victim / "checkpoint_0001.json.gz";
	const fs::path Elsewhere = Root() / "elsewhere";
	struct FCase
	{
		const char* Name;
		std::function<void(const fs::path&)> Make;
	};
	const FCase Cases[] = {
		{"a directory", [](const fs::path& Path) { fs::create_directory(Path); }},
		{"a link to nowhere", [](const fs::path& Path) { fs::create_symlink("nowhere", Path); }},
		{"a link to itself", [](const fs::path& Path) { fs::create_symlink(Path.filename(), Path); }},
		{"a link to a directory", [](const fs::path& Path) { fs::create_directory_symlink("..", Path); }},
		{"a link to a device that never ends", [](const fs::path& Path) { fs::create_symlink("/dev/zero", Path); }},
		{"a pipe that nobody writes", [](const fs::path& Path) { EXPECT_EQ(::mkfifo(Path.c_str(), 0600), 0); }},
		{"a file that may not be read",
			[&](const fs::path& Path)
			{
				Write(Path, "secret");
				fs::permissions(Path, fs::perms::none);
			}},
		{"a file of a terabyte",
			[&](const fs::path& Path)
			{
				Write(Path, "x");
				EXPECT_EQ(::truncate(Path.c_str(), 1ll << 40), 0);
			}},
	};
	for (const FCase& Case : Cases)
	{
		for (const char* Name : {"checkpoint_0001.json.gz", "checkpoint_0001.json", "delegations.json"})
		{
			Case.Make(Victim / Name);
			ExpectAllBack(std::string(Case.Name) + " as " + Name);
			// The task goes on behind it.
			FCVXCheckpointManager::Get().SaveCheckpointDirect(*MakeTask(VictimId, 2), 20, true);
			ExpectAllBack(std::string(Case.Name) + " as " + Name + " and a save");
			EXPECT_EQ(StoredTask::Count(*FCVXTaskManager::Get().FindTask(VictimId)), 2) << Case.Name;
			for (const fs::directory_entry& Entry : fs::directory_iterator(Victim))
			{
				if (Entry.path().filename() != "checkpoint_0000.json.gz")
				{
					fs::remove_all(Entry.path());
				}
			}
		}
	}
}

TEST_F(CVXDamagedTasksTest, OddlyNamedAndTangledDirectoriesAreSurvived)
{
	const std::string Bytes = MakeNewer(true);
	for (const std::string& Name : {std::string("with blanks"), std::string("..."), std::string(255, 'x'),
			 std::string("\xff\xfe\x80"), std::string("..\\..\\Source"), std::string("a;b$(c)*?"), std::string("-rf")})
	{
		fs::create_directory(Tasks / Name);
		std::ofstream(Tasks / Name / "checkpoint_0000.json.gz", std::ios::binary) << Bytes;
	}
	fs::create_directory(Tasks / "empty");
	fs::create_directory_symlink("nowhere", Tasks / "dangling");
	fs::create_directory_symlink("turning", Tasks / "turning");
	fs::create_directory_symlink(".", Tasks / "self");
	Write(Tasks / "a file", "x");
	ExpectAllBack("odd names");
	for (const TCHAR* Id : {TEXT("with blanks"), TEXT("..."), TEXT("a;b$(c)*?"), TEXT("-rf")})
	{
		EXPECT_TRUE(FCVXTaskManager::Get().FindTask(Id)) << TCHAR_TO_UTF8(Id);
	}
	EXPECT_FALSE(FCVXTaskManager::Get().FindTask(TEXT("..\\..\\Source")));

	// Each of them names the other as the one that has it as its part.
	const std::string Ids[] = {TCHAR_TO_UTF8(GoodIds[0]), TCHAR_TO_UTF8(GoodIds[1])};
	const std::string Message =
		"\"messages\":[{\"role\":\"user\",\"content\":[{\"type\":\"text\",\"text\":\"1 me: x\"}]}]";
	Write(Tasks / Ids[0] / "checkpoint_0001.json", "{\"parent_task_id\":\"" + Ids[1] + "\"," + Message + "}");
	Write(Tasks / Ids[1] / "checkpoint_0001.json", "{\"parent_task_id\":\"" + Ids[0] + "\"," + Message + "}");
	ExpectAllBack("parents in a circle");
	const FCVXTaskManager& Manager = FCVXTaskManager::Get();
	EXPECT_TRUE(
		Manager.FindTask(GoodIds[0])->ParentTaskId.IsEmpty() || Manager.FindTask(GoodIds[1])->ParentTaskId.IsEmpty());
}
} // namespace
