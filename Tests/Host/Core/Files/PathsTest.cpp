#include "Misc/Paths.h"
#include "CoreGlobals.h"
#include "Internationalization/Text.h"
#include "Support/HostTypePrinting.h"
#include "Support/TempProject.h"

#include <gtest/gtest.h>

TEST(Paths, AreTakenApartByTheirLastSlashAndDot)
{
	const struct
	{
		const TCHAR* Path;
		const TCHAR* Directory;
		const TCHAR* Clean;
		const TCHAR* Base;
		const TCHAR* Extension;
		const TCHAR* Leaf;
	} Cases[] = {
		{TEXT("/a/b.txt"), TEXT("/a"), TEXT("b.txt"), TEXT("b"), TEXT("txt"), TEXT("b.txt")},
		{TEXT("b.tar.gz"), TEXT(""), TEXT("b.tar.gz"), TEXT("b.tar"), TEXT("gz"), TEXT("b.tar.gz")},
		{TEXT("/a.d/b"), TEXT("/a.d"), TEXT("b"), TEXT("b"), TEXT(""), TEXT("b")},
		{TEXT("a\\b.c"), TEXT("a"), TEXT("b.c"), TEXT("b"), TEXT("c"), TEXT("b.c")},
		{TEXT("/a/b/"), TEXT("/a/b"), TEXT(""), TEXT(""), TEXT(""), TEXT("b")},
		{TEXT("/a"), TEXT(""), TEXT("a"), TEXT("a"), TEXT(""), TEXT("a")},
		{TEXT(".hidden"), TEXT(""), TEXT(".hidden"), TEXT(""), TEXT("hidden"), TEXT(".hidden")},
		{TEXT("a."), TEXT(""), TEXT("a."), TEXT("a"), TEXT(""), TEXT("a.")},
		{TEXT("/Game/A.A"), TEXT("/Game"), TEXT("A.A"), TEXT("A"), TEXT("A"), TEXT("A.A")},
		{TEXT(""), TEXT(""), TEXT(""), TEXT(""), TEXT(""), TEXT("")},
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(FPaths::GetPath(Case.Path), FString(Case.Directory)) << TCHAR_TO_UTF8(Case.Path);
		EXPECT_EQ(FPaths::GetCleanFilename(Case.Path), FString(Case.Clean)) << TCHAR_TO_UTF8(Case.Path);
		EXPECT_EQ(FPaths::GetBaseFilename(Case.Path), FString(Case.Base)) << TCHAR_TO_UTF8(Case.Path);
		EXPECT_EQ(FPaths::GetExtension(Case.Path), FString(Case.Extension)) << TCHAR_TO_UTF8(Case.Path);
		EXPECT_EQ(FPaths::GetPathLeaf(Case.Path), FString(Case.Leaf)) << TCHAR_TO_UTF8(Case.Path);
	}
	EXPECT_EQ(FPaths::GetExtension(TEXT("a.b"), true), FString(TEXT(".b")));
	EXPECT_EQ(FPaths::GetBaseFilename(TEXT("/x/a.b"), false), FString(TEXT("/x/a")));
}

TEST(Paths, AreJoinedWithOneSlash)
{
	EXPECT_EQ(FPaths::Combine(TEXT("/a"), TEXT("b"), FString(TEXT("c.txt"))), FString(TEXT("/a/b/c.txt")));
	EXPECT_EQ(FPaths::Combine(TEXT("/a/"), TEXT("/b")), FString(TEXT("/a/b")));
	EXPECT_EQ(FPaths::Combine(TEXT("a/"), TEXT("")), FString(TEXT("a/")));
	EXPECT_EQ(FPaths::Combine(TEXT(""), TEXT("b")), FString(TEXT("b")));
	EXPECT_EQ(FPaths::Combine(TEXT("/"), TEXT("b")), FString(TEXT("/b")));
}

TEST(Paths, AreMadeFullAndCollapsed)
{
	const struct
	{
		const TCHAR* Path;
		const TCHAR* Full;
	} Cases[] = {
		{TEXT("a.txt"), TEXT("/base/dir/a.txt")},
		{TEXT("../a/./b//c"), TEXT("/base/a/b/c")},
		{TEXT("../../../../a"), TEXT("/a")},
		{TEXT("/x/../y/"), TEXT("/y/")},
		{TEXT("x\\..\\y"), TEXT("/base/dir/y")},
		{TEXT("/.."), TEXT("/")},
		{TEXT("/..a/b..c/..."), TEXT("/..a/b..c/...")},
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(FPaths::ConvertRelativePathToFull(TEXT("/base/dir"), Case.Path), FString(Case.Full))
			<< TCHAR_TO_UTF8(Case.Path);
	}
	const struct
	{
		const TCHAR* Path;
		const TCHAR* Collapsed;
		bool bOk;
	} Collapses[] = {
		{TEXT("/a/../b"), TEXT("/b"), true},
		{TEXT("a/b/../.."), TEXT(""), true},
		{TEXT("a/./b/"), TEXT("a/b/"), true},
		{TEXT("../a"), TEXT("../a"), false},
		{TEXT("/a/../../b"), TEXT("/a/../../b"), false},
	};
	for (const auto& Case : Collapses)
	{
		FString Path(Case.Path);
		EXPECT_EQ(FPaths::CollapseRelativeDirectories(Path), Case.bOk) << TCHAR_TO_UTF8(Case.Path);
		EXPECT_TRUE(Path.Equals(Case.Collapsed)) << TCHAR_TO_UTF8(*Path);
	}
	EXPECT_TRUE(FPaths::ConvertRelativePathToFull(TEXT("x")).StartsWith(TEXT("/")));
}

TEST(Paths, AreRelatedToEachOther)
{
	const struct
	{
		const TCHAR* Path;
		const TCHAR* Base;
		const TCHAR* Relative;
	} Cases[] = {
		{TEXT("/p/Source/A.cpp"), TEXT("/p/"), TEXT("Source/A.cpp")},
		{TEXT("/p/A.cpp"), TEXT("/p/Source/B.cpp"), TEXT("../A.cpp")},
		{TEXT("/q/A.cpp"), TEXT("/p/Source/"), TEXT("../../q/A.cpp")},
		{TEXT("/p/Sub/"), TEXT("/p/"), TEXT("Sub/")},
	};
	for (const auto& Case : Cases)
	{
		FString Path(Case.Path);
		EXPECT_TRUE(FPaths::MakePathRelativeTo(Path, Case.Base));
		EXPECT_TRUE(Path.Equals(Case.Relative)) << TCHAR_TO_UTF8(*Path);
	}
	EXPECT_TRUE(FPaths::IsUnderDirectory(TEXT("/p/a/b"), TEXT("/p/a")));
	EXPECT_TRUE(FPaths::IsUnderDirectory(TEXT("/p/a"), TEXT("/p/a/")));
	EXPECT_FALSE(FPaths::IsUnderDirectory(TEXT("/p/ab"), TEXT("/p/a")));
	EXPECT_FALSE(FPaths::IsUnderDirectory(TEXT("/p/a/../b"), TEXT("/p/a")));
	EXPECT_FALSE(FPaths::IsUnderDirectory(TEXT("/P/a/b"), TEXT("/p/a")));
	EXPECT_TRUE(FPaths::IsSamePath(TEXT("/p/x/../a/"), TEXT("/p/a")));
	EXPECT_FALSE(FPaths::IsSamePath(TEXT("/p/A"), TEXT("/p/a")));
	for (const TCHAR* Absolute : {TEXT("/"), TEXT("/a"), TEXT("\\a"), TEXT("C:/a"), TEXT("C:")})
	{
		EXPECT_FALSE(FPaths::IsRelative(Absolute)) << TCHAR_TO_UTF8(Absolute);
	}
	for (const TCHAR* Relative : {TEXT(""), TEXT("a"), TEXT("./a"), TEXT("../a"), TEXT("1:/a")})
	{
		EXPECT_TRUE(FPaths::IsRelative(Relative)) << TCHAR_TO_UTF8(Relative);
	}
}

TEST(Paths, ChangeTheirExtensions)
{
	EXPECT_EQ(FPaths::ChangeExtension(TEXT("/a/b.txt"), TEXT("md")), FString(TEXT("/a/b.md")));
	EXPECT_EQ(FPaths::ChangeExtension(TEXT("/a.d/b"), TEXT("md")), FString(TEXT("/a.d/b")));
	EXPECT_EQ(FPaths::ChangeExtension(TEXT("b.txt"), TEXT("")), FString(TEXT("b")));
	EXPECT_EQ(FPaths::SetExtension(TEXT("/a.d/b"), TEXT(".md")), FString(TEXT("/a.d/b.md")));
}

TEST(Paths, AreCleanedForTheFileSystem)
{
	FString Name(TEXT("a\\\\b//c/"));
	FPaths::NormalizeDirectoryName(Name);
	EXPECT_TRUE(Name.Equals(TEXT("a//b//c")));
	FPaths::RemoveDuplicateSlashes(Name);
	EXPECT_TRUE(Name.Equals(TEXT("a/b/c")));
	FString Root(TEXT("/"));
	FPaths::NormalizeDirectoryName(Root);
	EXPECT_TRUE(Root.Equals(TEXT("/")));
	EXPECT_EQ(FPaths::MakeValidFileName(TEXT("a/b:c*\u0001d"), u'_'), FString(TEXT("a_b_c__d")));
	EXPECT_EQ(FPaths::MakeValidFileName(TEXT("a/b:c*d")), FString(TEXT("abcd")));
	FText Reason;
	EXPECT_TRUE(FPaths::ValidatePath(TEXT("C:/a b/ü.txt")));
	EXPECT_FALSE(FPaths::ValidatePath(TEXT("/a?b"), &Reason));
	EXPECT_FALSE(Reason.IsEmpty());
}

TEST(Paths, OfTheProjectFollowItsFile)
{
	FTempProject Project("Skirmish");
	EXPECT_EQ(FPaths::ProjectDir(), Project.Dir());
	EXPECT_EQ(FPaths::ProjectLogDir(), Project.Dir() + TEXT("Saved/Logs/"));
	EXPECT_EQ(FString(GInternalProjectName), FString(TEXT("Skirmish")));
	EXPECT_TRUE(FPaths::EngineDir().EndsWith(TEXT("/")));
	const FString Temporary = FPaths::CreateTempFilename(*FPaths::ProjectSavedDir(), TEXT("cvx"), TEXT(".json"));
	EXPECT_TRUE(Temporary.StartsWith(FPaths::ProjectSavedDir() + TEXT("cvx")) && Temporary.EndsWith(TEXT(".json")));
	EXPECT_FALSE(Temporary == FPaths::CreateTempFilename(*FPaths::ProjectSavedDir(), TEXT("cvx"), TEXT(".json")));
}
