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

TEST(LaunchOptions, AConversationIsToldFromTheRequestBehindIt)
{
	struct FCase
	{
		const TCHAR* Line;
		const TCHAR* Resume;
		const TCHAR* Fork;
		int32 ForkMessages;
		const TCHAR* Words;
	};
	const FCase Cases[] = {
		{TEXT("run --resume continue"), TEXT("last"), TEXT(""), MAX_int32, TEXT("continue")},
		{TEXT("run --resume LAST continue"), TEXT("LAST"), TEXT(""), MAX_int32, TEXT("continue")},
		{TEXT("run --resume 4fe0 it"), TEXT("4fe0"), TEXT(""), MAX_int32, TEXT("it")},
		{TEXT("run --resume decade it"), TEXT("last"), TEXT(""), MAX_int32, TEXT("decade it")},
		{TEXT("run --resume=decade it"), TEXT("decade"), TEXT(""), MAX_int32, TEXT("it")},
		{TEXT("run it --resume"), TEXT("last"), TEXT(""), MAX_int32, TEXT("it")},
		{TEXT("run --fork 4fe0 12 it"), TEXT(""), TEXT("4fe0"), 12, TEXT("it")},
		{TEXT("run --fork=word -- 12 it"), TEXT(""), TEXT("word"), MAX_int32, TEXT("12 it")},
		{TEXT("run --fork last it"), TEXT(""), TEXT("last"), MAX_int32, TEXT("it")},
	};
	for (const FCase& Case : Cases)
	{
		FLaunchOptions Options;
		FString Error;
		ASSERT_TRUE(LaunchOptions::Parse(Split(Case.Line), Options, Error)) << TCHAR_TO_UTF8(*Error);
		EXPECT_EQ(Options.Resume, Case.Resume) << TCHAR_TO_UTF8(Case.Line);
		EXPECT_EQ(Options.Fork, Case.Fork);
		EXPECT_EQ(Options.ForkMessages, Case.ForkMessages);
		EXPECT_EQ(Options.Words, Split(Case.Words));
	}
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
		{TEXT("run --fork"), TEXT("option '--fork' needs a value: ID|last [N]")},
		{TEXT("run --fork last 0"), TEXT("the number behind option '--fork' must be from 1 to 999999999, not '0'")},
		{TEXT("run --fork=last -3"), TEXT("the number behind option '--fork' must be from 1 to 999999999, not '-3'")},
		{TEXT("run --fork last 99999999999"),
			TEXT("the number behind option '--fork' must be from 1 to 999999999, not '99999999999'")},
		{TEXT("run --fork last --resume"), TEXT("options '--resume' and '--fork' don't go together")},
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
