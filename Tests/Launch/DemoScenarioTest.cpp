#include "Launch/Demo/DemoScenario.h"
#include "Launch/Conversation/ApprovalAnswer.h"
#include "Launch/Demo/DemoDialect.h"
#include "Launch/Demo/DemoJson.h"
#include "Launch/Demo/DemoScenarioTexts.h"
#include "Launch/Demo/DemoText.h"
#include "Support/HostTypePrinting.h"

#include <gtest/gtest.h>

namespace
{
TSharedPtr<FDemoScenario> Parse(const TCHAR* Json)
{
	FString Error;
	TSharedPtr<FDemoScenario> Scenario = FDemoScenario::Parse(Json, Error);
	EXPECT_TRUE(Scenario.IsValid()) << TCHAR_TO_UTF8(*Error);
	return Scenario;
}

FDemoRequest Ask(const TCHAR* Question)
{
	FDemoRequest Request;
	Request.AddUserText(Question);
	return Request;
}
} // namespace

TEST(DemoScenario, EachThatShipsCanBeReadAndOneAnswersWhereThereAreNoTools)
{
	int32 Answers = 0;
	for (const FDemoScenarioText& Each : GetDemoScenarioTexts())
	{
		const TSharedPtr<FDemoScenario> Scenario = Parse(Each.Json);
		const FDemoRequest Request = Ask(TEXT("why is it dark?"));
		if (Scenario->IsFor(Request))
		{
			const TOptional<FDemoAnswer> Answer = Scenario->Play(Request);
			ASSERT_TRUE(Answer.IsSet());
			EXPECT_TRUE(Answer->Text.Contains(TEXT("\"why is it dark?\"")));
			EXPECT_TRUE(Answer->Calls.IsEmpty());
			++Answers;
		}
	}
	EXPECT_EQ(Answers, 1);
	FString Error;
	EXPECT_FALSE(FDemoScenario::Parse(TEXT("{\"rules\":[1]}"), Error).IsValid());
	EXPECT_EQ(Error, TEXT("a rule that is no object"));
}

TEST(DemoScenario, ARuleFitsOnlyWhatTheConversationReallyHolds)
{
	const TSharedPtr<FDemoScenario> Scenario = Parse(TEXT(R"json({"rules":[
		{"when":{"note":"^\\[No"},"say":"noted"},
		{"when":{"last":"read","failed":true},"say":"failed"},
		{"when":{"results":{"read":"b+"}},"let":{"B":{"result_of":"read","pattern":"(b+)","replace":["b","B"]}},
			"call":{"tool":"write","arguments":{"text":"<{{B}}>","count":2}}},
		{"when":{"called":["read"],"times":{"read":1}},"say":"nothing"},
		{"when":{"offered":["read"],"not_called":["read"]},"call":{"tool":"read","arguments":{}}},
		{"when":{"not_offered":["read"]},"say":"no tool"}]})json"));
	FDemoRequest Request = Ask(TEXT("go"));
	EXPECT_EQ(Scenario->Play(Request)->Text, TEXT("no tool"));
	Request.Tools.Add(TEXT("read"));
	EXPECT_EQ(Scenario->Play(Request)->Calls[0].Tool, TEXT("read"));
	Request.AddCall(TEXT("1"), TEXT("read"));
	Request.AddResult(TEXT("1"), TEXT("aaa"), false);
	EXPECT_EQ(Scenario->Play(Request)->Text, TEXT("nothing"));
	Request.AddCall(TEXT("2"), TEXT("read"));
	EXPECT_FALSE(Scenario->Play(Request).IsSet()) << "read too often for the rule";
	Request.AddResult(TEXT("2"), TEXT("abbba"), false);
	EXPECT_EQ(Scenario->Play(Request)->Calls[0].ArgumentsJson, TEXT("{\"text\":\"<Bbb>\",\"count\":2}"));
	Request.AddUserText(TEXT("[Note]"));
	EXPECT_EQ(Scenario->Play(Request)->Text, TEXT("noted"));
	Request.AddCall(TEXT("3"), TEXT("read"));
	Request.AddResult(TEXT("3"), TEXT("no such file"), true);
	EXPECT_EQ(Scenario->Play(Request)->Text, TEXT("failed"));
	Request.AddUserText(TEXT("again"));
	EXPECT_EQ(Scenario->Play(Request)->Calls[0].Tool, TEXT("read")) << "a new question begins anew";
}

TEST(DemoScenario, StreamedPiecesAreTheTextAndCutNoCharacter)
{
	const FString Words = TEXT("One  two \n three");
	EXPECT_EQ(FString::Join(SplitDemoText(Words), TEXT("")), Words);
	EXPECT_EQ(SplitDemoText(Words).Num(), 4);
	FString Faces;
	for (int32 Index = 0; Index < 100; ++Index)
	{
		Faces += TEXT("\U0001F600");
	}
	Faces = TEXT("x") + Faces;
	for (const FString& Piece : SplitDemoText(Faces))
	{
		EXPECT_FALSE(Piece[0] >= 0xDC00 && Piece[0] <= 0xDFFF);
	}
	EXPECT_TRUE(FString::Join(SplitDemoText(Faces), TEXT("")).Equals(Faces));
}

TEST(DemoRequest, GoingOnKeepsTheQuestionAndLooksAtEverythingAnew)
{
	FDemoRequest Request = Ask(TEXT("fix it"));
	Request.AddCall({}, TEXT("read"));
	Request.AddCall({}, TEXT("list"));
	Request.AddCall({}, TEXT("read"));
	Request.AddResultOfOldest(TEXT("read"), TEXT("one"), false);
	Request.AddResultOfOldest(TEXT("read"), TEXT("two"), true);
	EXPECT_EQ(Request.Calls[0].Result, TEXT("one"));
	EXPECT_FALSE(Request.Calls[1].bHasResult);
	EXPECT_TRUE(Request.Calls[2].bIsError);
	Request.AddUserText(TEXT(" Continue\n"));
	EXPECT_EQ(Request.Question, TEXT("fix it"));
	EXPECT_TRUE(Request.bGoesOn && Request.Calls.IsEmpty());
	Request.AddUserText(TEXT("stop it"));
	EXPECT_FALSE(Request.bGoesOn);
	EXPECT_FALSE(Ask(TEXT("continue")).bGoesOn) << "with nothing";
}

TEST(DemoDialect, IsFoundByItsNameAndRefusesWhatIsNoRequestOfIts)
{
	for (const IDemoDialect* Dialect : GetDemoDialects())
	{
		EXPECT_EQ(FindDemoDialect(Dialect->GetName()), Dialect);
		FDemoRequest Request;
		EXPECT_FALSE(Dialect->ReadRequest(*DemoJson::Parse("{\"model\":1}"), Request));
	}
	EXPECT_EQ(FindDemoDialect(TEXT("demo-other")), nullptr);
	EXPECT_FALSE(DemoJson::Parse("{\"model\":").IsValid());
}

TEST(ApprovalAnswer, TakesWordsAndLettersAndNothingElse)
{
	struct FCase
	{
		const TCHAR* Typed;
		ECVXApprovalState Decision;
		bool bRemember;
	};
	const FCase Cases[] = {{TEXT("y"), ECVXApprovalState::Approved, false},
		{TEXT(" YES "), ECVXApprovalState::Approved, false}, {TEXT("no"), ECVXApprovalState::Denied, false},
		{TEXT("always"), ECVXApprovalState::AlwaysAllow, true}, {TEXT("v"), ECVXApprovalState::AlwaysDeny, true},
		{TEXT(""), ECVXApprovalState::Pending, false}, {TEXT("yep, always"), ECVXApprovalState::Pending, false}};
	for (const FCase& Case : Cases)
	{
		const FApprovalAnswer Answer = FApprovalAnswer::Parse(Case.Typed);
		EXPECT_EQ(Answer.Decision, Case.Decision);
		EXPECT_EQ(Answer.bRemember, Case.bRemember);
	}
	EXPECT_EQ(FApprovalAnswer::Parse(TEXT("m")).Kind, FApprovalAnswer::EKind::More);
	EXPECT_EQ(FApprovalAnswer::Parse(TEXT("")).Kind, FApprovalAnswer::EKind::Unclear);
}
