#include "Tools/Files/CVXProjectPaths.h"

#include "../ToolFixture.h"
#include "Misc/Paths.h"

#include <filesystem>

namespace
{
namespace fs = std::filesystem;

/** Beside the project lies a folder, to which links in the project lead. */
class CVXProjectPaths : public FToolFixture
{
protected:
	CVXProjectPaths()
	{
		Project.Write("Source/A.cpp", "a");
		Project.Write("Config/x.ini", "x");
		fs::create_directories(Outside + "/Sub");
		fs::create_symlink(Outside, Real("Source/Out"));
		fs::create_symlink(Outside + "/new.txt", Real("Source/Dangling"));
		fs::create_symlink(Real("Config"), Real("Source/Inner"));
		fs::create_directory_symlink(Real("."), Outside + "/Back");
	}
	~CVXProjectPaths() override { fs::remove_all(Outside); }

	std::string Real(const std::string& Relative) const { return TCHAR_TO_UTF8(*Project.Path(Relative)); }

	/** The path in the project, or the message. */
	FString Resolve(const FString& Path)
	{
		FString Error;
		return ResolveProjectPath(Path, Absolute, Dir, Error) ? MakeProjectRelative(Absolute, Dir) : Error;
	}

	FString Absolute;
	FString Dir;
	const std::string Outside = TCHAR_TO_UTF8(*(Project.Dir().LeftChop(1) + TEXT("-outside")));
};

TEST_F(CVXProjectPaths, TakesPathsInTheProjectHoweverTheyAreWritten)
{
	const FString Root = Project.Dir();
	EXPECT_EQ(Resolve(TEXT("")), TEXT(""));
	EXPECT_EQ(Dir, Root);
	EXPECT_EQ(Resolve(TEXT(".")), TEXT(""));
	EXPECT_EQ(Resolve(Root.LeftChop(1)), TEXT(""));
	EXPECT_EQ(Resolve(TEXT("Source/A.cpp")), TEXT("Source/A.cpp"));
	EXPECT_EQ(Resolve(TEXT("Source\\.\\..\\Source//A.cpp")), TEXT("Source/A.cpp"));
	EXPECT_EQ(Resolve(Root + TEXT("Source/A.cpp")), TEXT("Source/A.cpp"));
	EXPECT_EQ(Resolve(TEXT("New/Deep/er.txt")), TEXT("New/Deep/er.txt"));
	EXPECT_EQ(Resolve(TEXT("Source/Inner/x.ini")), TEXT("Source/Inner/x.ini")) << "a link that stays inside";
}

TEST_F(CVXProjectPaths, RefusesWhatLiesOutsideHoweverItIsWritten)
{
	const FString Root = Project.Dir();
	const FString Beside(Outside.c_str());
	for (const FString& Path : {FString(TEXT("../Other/file.txt")), FString(TEXT("Source/../../x")),
			 FString(TEXT("..")), FString(TEXT("..\\..\\etc\\passwd")), FString(TEXT("/etc/passwd")),
			 FString(TEXT("C:\\Windows\\x.txt")), FString(TEXT("c:/x")), FString(TEXT("\\\\server\\share\\x")),
			 FString(TEXT("~")), FString(TEXT("~/x")), FString(TEXT("/Game/x")), Beside + TEXT("/x"),
			 FString(TEXT("Source/Out")), FString(TEXT("Source/Out/x.txt")), FString(TEXT("Source/Out/Sub/New/x.txt")),
			 Root.LeftChop(1) + TEXT("x/y"), Root.ToUpper() + TEXT("Source/A.cpp"), FString(TEXT("a..b"))})
	{
		EXPECT_EQ(Resolve(Path), FString::Printf(TEXT("Access denied: '%s' is outside the project directory."), *Path));
	}
	const FString Nul(4, TEXT("a\0/b"));
	EXPECT_EQ(Resolve(Nul), TEXT("The path contains a NUL character behind 'a'."));
	EXPECT_TRUE(Resolve(FString::ChrN(5'000'000, u'/')).StartsWith(TEXT("The path is too long: 5000000 characters")));
}

TEST_F(CVXProjectPaths, TakesAProjectThatIsItselfReachedThroughALink)
{
	const FString Before = FPaths::GetProjectFilePath();
	FPaths::SetProjectFilePath(FString((Outside + "/Back/Skirmish.uproject").c_str()));
	EXPECT_EQ(Resolve(TEXT("Source/A.cpp")), TEXT("Source/A.cpp"));
	EXPECT_TRUE(Resolve(TEXT("Source/Out/x")).StartsWith(TEXT("Access denied")));
	FPaths::SetProjectFilePath(Before);
}

TEST_F(CVXProjectPaths, ProtectsPathsAsWrittenAndWhereLinksLead)
{
	Settings.ProtectedPaths = {TEXT("*.uasset"), TEXT("config/*")};
	const auto Check = [&](const TCHAR* Path)
	{
		FString Error = Resolve(Path);
		return CheckProtectedPath(Absolute, Dir, Path, Error) ? Error : FString();
	};
	EXPECT_EQ(Check(TEXT("Config/New.ini")), TEXT("'Config/New.ini' is protected by pattern 'config/*'."));
	EXPECT_EQ(Check(TEXT("Source/Inner/x.ini")), TEXT("'Source/Inner/x.ini' is protected by pattern 'config/*'."));
	EXPECT_EQ(Check(TEXT("Source/Inner/New/x")), TEXT("'Source/Inner/New/x' is protected by pattern 'config/*'."));
	EXPECT_EQ(Check(TEXT("Source/a.UASSET")), TEXT("'Source/a.UASSET' is protected by pattern '*.uasset'."));
	EXPECT_EQ(Check(TEXT("Source/A.cpp")), TEXT(""));
}

TEST_F(CVXProjectPaths, KnowsNamesThatSomeSystemCannotHave)
{
	const auto Check = [&](const TCHAR* Path)
	{
		FString Error = Resolve(Path);
		return CheckReservedPath(Absolute, Dir, Path, Error);
	};
	for (const TCHAR* Path : {TEXT("Source/NUL"), TEXT("Source/con.txt"), TEXT("aux/x"), TEXT("Source/LPT9.log"),
			 TEXT("Source/a:b"), TEXT("Source/a?"), TEXT("Source/a\nb"), TEXT("Source/com1 .x")})
	{
		EXPECT_TRUE(Check(Path)) << TCHAR_TO_UTF8(Path);
	}
	for (const TCHAR* Path :
		{TEXT("Source/Console.cpp"), TEXT("Source/COM.h"), TEXT("Source/com0"), TEXT("Source/é.h")})
	{
		EXPECT_FALSE(Check(Path)) << TCHAR_TO_UTF8(Path);
	}
}

TEST_F(CVXProjectPaths, TurnsContentPathsIntoPathsOnDisk)
{
	const auto Translate = [](FString Path)
	{
		const bool bDone = TranslateContentPath(Path);
		return (bDone ? TEXT("+") : TEXT("-")) + Path;
	};
	EXPECT_EQ(Translate(TEXT("/Game/Characters")), TEXT("+Content/Characters"));
	EXPECT_EQ(Translate(TEXT("game/A")), TEXT("+Content/A"));
	EXPECT_EQ(Translate(TEXT("/Gamer/A")), TEXT("-/Gamer/A"));
	EXPECT_EQ(Translate(TEXT("/Game")), TEXT("-/Game"));
}
} // namespace
