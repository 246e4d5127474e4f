#include "Misc/ConfigCacheIni.h"
#include "Support/FaultPlan.h"
#include "Support/HostTypePrinting.h"
#include "Support/LogCapture.h"
#include "Support/TempProject.h"

#include <gtest/gtest.h>

#include <thread>

namespace
{
constexpr const TCHAR* Section = TEXT("/Script/Game.Settings");

const std::string Sample = "; settings of the game\n"
						   "stray line\n"
						   "\n"
						   "[/Script/Game.Settings]\n"
						   "  Speed = 12.5\n"
						   "+Names=one\n"
						   "+Names=two\n"
						   "+Names=one\n"
						   ".Names=one\n"
						   "-Names=two\n"
						   "# a comment\n"
						   "Title=\"two\\nlines \\\"q\\\" \\\\ \"\n"
						   "Path=C:\\Games\\new; not a comment\n"
						   "\n"
						   "[Other]\n"
						   "bOn=yes\n"
						   "half";
} // namespace

TEST(Config, ReadsValuesArraysAndQuotes)
{
	const FTempProject Project;
	Project.Write("Config/DefaultGame.ini", Sample);
	const FString File = Project.Path("Config/DefaultGame.ini");
	FConfigCacheIni Config;
	float Speed = 0;
	FString Text;
	TArray<FString> Names;
	bool bOn = false;
	EXPECT_TRUE(Config.GetFloat(TEXT("/script/game.SETTINGS"), TEXT("speed"), Speed, File));
	EXPECT_FLOAT_EQ(Speed, 12.5f);
	EXPECT_EQ(Config.GetArray(Section, TEXT("Names"), Names, File), 2);
	EXPECT_EQ(Names, (TArray<FString>{TEXT("one"), TEXT("one")}));
	EXPECT_TRUE(Config.GetString(Section, TEXT("Title"), Text, File));
	EXPECT_TRUE(Text.Equals(TEXT("two\nlines \"q\" \\ ")));
	EXPECT_TRUE(Config.GetString(Section, TEXT("Path"), Text, File));
	EXPECT_EQ(Text, TEXT("C:\\Games\\new; not a comment"));
	EXPECT_TRUE(Config.GetBool(TEXT("Other"), TEXT("bOn"), bOn, File));
	EXPECT_TRUE(bOn);
	int32 Number = 7;
	EXPECT_FALSE(Config.GetInt(Section, TEXT("Title"), Number, File));
	EXPECT_FALSE(Config.GetInt(Section, TEXT("Missing"), Number, Project.Path("Config/None.ini")));
	EXPECT_EQ(Number, 7);
}

TEST(Config, ASaveKeepsEveryLineThatItDoesNotChange)
{
	const FTempProject Project;
	Project.Write("Config/DefaultGame.ini", Sample);
	const FString File = Project.Path("Config/DefaultGame.ini");
	FConfigCacheIni Config;
	Config.SetString(Section, TEXT("Speed"), TEXT("13"), File);
	Config.SetArray(Section, TEXT("Names"), {TEXT("x"), TEXT(" y "), TEXT("x")}, File);
	Config.SetBool(Section, TEXT("bNew"), true, File);
	Config.SetString(TEXT("Added"), TEXT("Key"), TEXT("line\nbreak"), File);
	EXPECT_TRUE(Config.RemoveKey(Section, TEXT("Path"), File));
	EXPECT_TRUE(Config.Flush(false, File));
	EXPECT_EQ(Project.Read("Config/DefaultGame.ini"),
		"; settings of the game\n"
		"stray line\n"
		"\n"
		"[/Script/Game.Settings]\n"
		"Speed=13\n"
		"+Names=x\n"
		"+Names=\" y \"\n"
		".Names=x\n"
		"# a comment\n"
		"Title=\"two\\nlines \\\"q\\\" \\\\ \"\n"
		"bNew=True\n"
		"\n"
		"[Other]\n"
		"bOn=yes\n"
		"half\n"
		"\n"
		"[Added]\n"
		"Key=\"line\\nbreak\"\n");
	FConfigCacheIni Again;
	TArray<FString> Names;
	Again.GetArray(Section, TEXT("Names"), Names, File);
	EXPECT_EQ(Names, (TArray<FString>{TEXT("x"), TEXT(" y "), TEXT("x")}));
}

TEST(Config, DamagedLinesWarnWithTheirPlaceAndAreKept)
{
	const FTempProject Project;
	Project.Write("Config/Bad.ini", "[A]\nKey=\"never closed\nno equals sign\n=value\n[half section\nGood=1\n");
	const FString File = Project.Path("Config/Bad.ini");
	const FLogCapture Log;
	FConfigCacheIni Config;
	FString Value;
	EXPECT_TRUE(Config.GetString(TEXT("A"), TEXT("Key"), Value, File));
	EXPECT_EQ(Value, TEXT("\"never closed"));
	EXPECT_TRUE(Config.GetString(TEXT("A"), TEXT("Good"), Value, File));
	for (const TCHAR* Place : {TEXT("Bad.ini(2)"), TEXT("Bad.ini(3)"), TEXT("Bad.ini(4)"), TEXT("Bad.ini(5)")})
	{
		EXPECT_TRUE(Log.Contains(Place)) << TCHAR_TO_UTF8(Place);
	}
	Config.SetString(TEXT("A"), TEXT("Good"), TEXT("2"), File);
	Config.Flush(false);
	EXPECT_EQ(
		Project.Read("Config/Bad.ini"), "[A]\nKey=\"never closed\nno equals sign\n=value\n[half section\nGood=2\n");
}

TEST(Config, TwoProgramsKeepEachOthersKeys)
{
	const FTempProject Project;
	const FString File = Project.Path("Config/Shared.ini");
	FConfigCacheIni First;
	FConfigCacheIni Second;
	First.SetString(TEXT("S"), TEXT("A"), TEXT("first"), File);
	Second.SetString(TEXT("S"), TEXT("B"), TEXT("second"), File);
	EXPECT_TRUE(First.Flush(false));
	EXPECT_TRUE(Second.Flush(false));
	EXPECT_EQ(Project.Read("Config/Shared.ini"), "[S]\nA=first\nB=second\n");
	FString Value;
	EXPECT_TRUE(Second.GetString(TEXT("S"), TEXT("A"), Value, File)) << "the second has seen the first's key";
}

TEST(Config, AFailedSaveLeavesTheOldFileAndKeepsTheChanges)
{
	const FTempProject Project;
	const FString File = Project.Path("Config/Game.ini");
	const int32 Calls = FFaultPlan::ForEach(EHostFault::File, FFaultPlan::EHow::Once,
		[&](int32 Nth)
		{
			Project.Write("Config/Game.ini", "[S]\nKey=old\n");
			FConfigCacheIni Config;
			FString Value;
			Config.GetString(TEXT("S"), TEXT("Key"), Value, File);
			Config.SetString(TEXT("S"), TEXT("Key"), TEXT("new"), File);
			const bool bFlushed = Config.Flush(false, File);
			const std::string OnDisk = Project.Read("Config/Game.ini");
			EXPECT_TRUE(OnDisk == "[S]\nKey=new\n" || (!bFlushed && OnDisk == "[S]\nKey=old\n"))
				<< Nth << ": " << OnDisk;
			EXPECT_TRUE(bFlushed || Config.Flush(false, File)) << "the next save succeeds";
			EXPECT_EQ(Project.Read("Config/Game.ini"), "[S]\nKey=new\n");
		});
	EXPECT_GT(Calls, 5);
}

TEST(Config, ASectionThatStandsTwiceIsReadAndWrittenAsOne)
{
	const FTempProject Project;
	Project.Write("Config/Twice.ini", "[S]\nA=1\n+List=x\n  [Other]\nB=1\n[s]\nA=2\nB=2\n+List=y\n-List=x\n");
	const FString File = Project.Path("Config/Twice.ini");
	FConfigCacheIni Config;
	FString Value;
	TArray<FString> List;
	EXPECT_TRUE(Config.GetString(TEXT("S"), TEXT("A"), Value, File));
	EXPECT_EQ(Value, TEXT("2"));
	EXPECT_TRUE(Config.GetString(TEXT("S"), TEXT("B"), Value, File));
	EXPECT_EQ(Config.GetArray(TEXT("S"), TEXT("List"), List, File), 1);
	EXPECT_EQ(List, (TArray<FString>{TEXT("y")}));
	Config.SetString(TEXT("S"), TEXT("A"), TEXT("3"), File);
	Config.SetArray(TEXT("S"), TEXT("List"), {TEXT("y"), TEXT("z")}, File);
	EXPECT_TRUE(Config.Flush(false));
	EXPECT_EQ(Project.Read("Config/Twice.ini"), "[S]\nA=1\n+List=y\n+List=z\n  [Other]\nB=1\n[s]\nA=3\nB=2\n");
}

TEST(Config, LineEndsStayAsTheyAreAndNewLinesEndAsTheFileBegins)
{
	const FTempProject Project;
	Project.Write("Config/Windows.ini", "; c\r\n[S]\r\nA=1\r\nB=2\n\r\n[T]\r\nC=\"q\"");
	const FString File = Project.Path("Config/Windows.ini");
	FConfigCacheIni Config;
	FString Value;
	EXPECT_TRUE(Config.GetString(TEXT("S"), TEXT("A"), Value, File));
	EXPECT_EQ(Value, TEXT("1"));
	Config.SetString(TEXT("S"), TEXT("A"), TEXT("one"), File);
	Config.SetString(TEXT("S"), TEXT("D"), TEXT("4"), File);
	Config.SetString(TEXT("U"), TEXT("E"), TEXT("5"), File);
	EXPECT_TRUE(Config.Flush(false));
	EXPECT_EQ(Project.Read("Config/Windows.ini"),
		"; c\r\n[S]\r\nA=one\r\nB=2\nD=4\r\n\r\n[T]\r\nC=\"q\"\r\n\r\n[U]\r\nE=5\r\n");
}

TEST(Config, WritersAtTheSameTimeLoseNothing)
{
	const FTempProject Project;
	const FString File = Project.Path("Config/Shared.ini");
	constexpr int32 Rounds = 25;
	const auto WriteAll = [&File](const TCHAR* Prefix)
	{
		FConfigCacheIni Config;
		for (int32 Round = 0; Round < Rounds; ++Round)
		{
			Config.SetInt(TEXT("S"), *FString::Printf(TEXT("%s%d"), Prefix, Round), Round, File);
			EXPECT_TRUE(Config.Flush(false));
		}
	};
	std::thread Other(WriteAll, TEXT("Other"));
	WriteAll(TEXT("Mine"));
	Other.join();
	FConfigCacheIni Config;
	for (int32 Round = 0; Round < Rounds; ++Round)
	{
		for (const TCHAR* Prefix : {TEXT("Mine"), TEXT("Other")})
		{
			int32 Value = INDEX_NONE;
			EXPECT_TRUE(Config.GetInt(TEXT("S"), *FString::Printf(TEXT("%s%d"), Prefix, Round), Value, File));
			EXPECT_EQ(Value, Round);
		}
	}
}
