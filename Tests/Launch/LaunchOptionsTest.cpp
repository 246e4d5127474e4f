#include "Launch/Options/LaunchOptions.h"
#include "Launch/Options/NearestName.h"
#include "Support/HostTypePrinting.h"

#include <gtest/gtest.h>

namespace
{
TArray<FString> Split(const TCHAR* Line)
{
	TArray<FString> Words;
	FString(Line).ParseIntoArray(Words, TEXT(" "));
	return Words;
}
} // namespace

TEST(LaunchOptions, StandAnywhereAmongTheWordsInBothForms)
{
	FLaunchOptions Options;
	FString Error;
	ASSERT_TRUE(LaunchOptions::Parse(
		Split(TEXT("--json run --project dir --model=a=b fix --approve ALL it -- --agent -h")), Options, Error));
	EXPECT_EQ(Options.Command, TEXT("run"));
	EXPECT_EQ(Options.Words, Split(TEXT("fix it --agent -h"))) << "behind -- all are words";
	EXPECT_EQ(Options.Project, TEXT("dir"));
	EXPECT_EQ(Options.Model, TEXT("a=b"));
	EXPECT_TRUE(Options.ApprovalMode == ECVXApprovalMode::FullyAutonomous);
	EXPECT_TRUE(Options.bJson);
	EXPECT_FALSE(Options.bHelp);

	ASSERT_TRUE(LaunchOptions::Parse(Split(TEXT("run - -h")), Options, Error));
	EXPECT_EQ(Options.Words, Split(TEXT("-"))) << "a single dash is a word";
	EXPECT_TRUE(Options.bHelp);
	EXPECT_FALSE(Options.bJson) << "nothing stays from before";
}

TEST(LaunchOptions, TellWrongUsageInOneLine)
{
	struct FCase
	{
		const TCHAR* Line;
		const TCHAR* Error;
	};
	const FCase Cases[] = {
		{TEXT("run --prject x"), TEXT("unknown option '--prject'; did you mean '--project'?")},
		{TEXT("run --zzzzzzzzz"), TEXT("unknown option '--zzzzzzzzz'")},
		{TEXT("run --agent"), TEXT("option '--agent' needs a value: NAME")},
		{TEXT("run --json=yes"), TEXT("option '--json' takes no value")},
		{TEXT("run --approve some"), TEXT("option '--approve' takes ask|reads|all, not 'some'")},
		{TEXT("run --model="), TEXT("option '--model' takes ID, not ''")},
		{TEXT("-x"), TEXT("unknown option '-x'")},
	};
	for (const FCase& Case : Cases)
	{
		FLaunchOptions Options;
		FString Error;
		EXPECT_FALSE(LaunchOptions::Parse(Split(Case.Line), Options, Error));
		EXPECT_EQ(Error, Case.Error);
	}
}

TEST(LaunchOptions, TheNearestNameIsAGuessOnlyWhenItIsNear)
{
	const TArray<FString> Names = {TEXT("chat"), TEXT("run"), TEXT("Orchestrator")};
	EXPECT_EQ(FindNearestName(TEXT("rnu"), Names), TEXT("run"));
	EXPECT_EQ(FindNearestName(TEXT("chta"), Names), TEXT("chat"));
	EXPECT_EQ(FindNearestName(TEXT("orch"), Names), TEXT("Orchestrator")) << "a beginning";
	EXPECT_EQ(FindNearestName(TEXT("tools"), Names), TEXT(""));
	EXPECT_EQ(FindNearestName(FString::ChrN(100000, TEXT('x')), Names), TEXT(""));
}
