#include "Launch/View/TerminalView.h"

#include "Launch/Terminal/KeyMask.h"
#include "Launch/Terminal/SafeText.h"
#include "Launch/View/JsonView.h"
#include "Support/HostTypePrinting.h"

#include <gtest/gtest.h>

namespace
{
/** A terminal whose output is kept, escape characters written as \e. */
struct FShown
{
	explicit FShown(const FTerminalStyle& Style)
		: Out(Style, [this](const FString& Piece) { Text += Piece.Replace(TEXT("\x1b"), TEXT("\\e")); })
		, Errors(Style, [this](const FString& Piece) { ErrorText += Piece; })
		, View(Out, Errors)
	{
	}

	FString Text;
	FString ErrorText;
	FTerminalOut Out;
	FTerminalOut Errors;
	FTerminalView View;
};

FTerminalStyle Plain()
{
	return FTerminalStyle();
}

FTerminalStyle Colour()
{
	FTerminalStyle Style;
	Style.bCursor = true;
	Style.bColour = true;
	Style.Rows = 12;
	return Style;
}

const FShownCall Call = {TEXT("1"), TEXT("edit_file"), TEXT("Edit File: A.cpp"), TEXT("{}")};

void PlayTurn(IConversationView& View)
{
	View.ShowState(ECVXTaskState::Streaming);
	View.ShowActivity(TEXT("the model answers"), 0.5);
	View.ShowReasoning(TEXT("Hm"));
	View.ShowReasoning(TEXT("m."));
	View.ShowText(TEXT("Look: "));
	View.ShowText(TEXT("here."));
	View.ShowCall(Call);
	View.ShowOutcome({Call, TEXT("One\nTwo\n"), false, 1.25});
	View.ShowOutcome({Call, TEXT("No such file"), true, -1.0});
	View.ShowTodoList(
		{{TEXT("a"), TEXT("Read"), ECVXTodoStatus::Completed}, {TEXT("b"), TEXT("Write"), ECVXTodoStatus::InProgress}});
	View.ShowResult(TEXT("Done.\n"));
	View.ShowUsage({{1200, 34, 0, 0, false}, 75.0});
}
} // namespace

TEST(TerminalView, AFileGetsPlainLinesAndATerminalColoursAndAStatusLine)
{
	FShown InFile(Plain());
	PlayTurn(InFile.View);
	EXPECT_EQ(InFile.Text,
		TEXT("-- the model answers\n"
			 "Hmm.\n"
			 "Look: here.\n"
			 "* Edit File: A.cpp\n"
			 "  done edit_file, 1.2 s: One (2 lines)\n"
			 "  failed edit_file: No such file\n"
			 "Plan:\n"
			 "  [x] Read\n"
			 "  [>] Write\n"
			 "\n== Result ==\n"
			 "Done.\n"
			 "-- 1.2k tokens in, 34 out, 1 min 15 s\n"));

	FShown AtTerminal(Colour());
	PlayTurn(AtTerminal.View);
	EXPECT_EQ(AtTerminal.Text,
		TEXT("\\e[2m... the model answers, 0.5 s\\e[0m\r\\e[2K"
			 "\\e[2mHm\\e[0m\\e[2mm.\\e[0m\n"
			 "Look: here.\n"
			 "\\e[36m* Edit File: A.cpp\\e[0m\n"
			 "\\e[2m  done edit_file, 1.2 s: One (2 lines)\\e[0m\n"
			 "\\e[31m  failed edit_file: No such file\\e[0m\n"
			 "\\e[1mPlan:\\e[0m\n"
			 "\\e[2m  [x] Read\\e[0m\n"
			 "\\e[33m  [>] Write\\e[0m\n"
			 "\\e[32m\n== Result ==\\e[0m\n"
			 "Done.\n"
			 "\\e[2m-- 1.2k tokens in, 34 out, 1 min 15 s\\e[0m\n"));
}

TEST(TerminalView, AnApprovalShowsItsChangeInColourAPageAtATime)
{
	FCVXApprovalRequest Request;
	Request.Description = TEXT("Edit 'A.cpp'");
	Request.DiffPreview = TEXT("--- a/A.cpp\n+++ b/A.cpp\n@@ -1 +1 @@\n-old\n+new\n 1\n 2\n 3\n");
	FShown Shown(Colour());
	Shown.View.ShowApproval(Call, Request, true);
	const FString FirstPage = TEXT("\\e[33mApproval needed: Edit File: A.cpp\\e[0m\n"
								   "  Edit 'A.cpp'\n"
								   "\\e[1m--- a/A.cpp\\e[0m\n"
								   "\\e[1m+++ b/A.cpp\\e[0m\n"
								   "\\e[36m@@ -1 +1 @@\\e[0m\n"
								   "\\e[31m-old\\e[0m\n"
								   "\\e[32m+new\\e[0m\n"
								   " 1\n"
								   "\\e[33mAllow it? (y)es, (n)o, (a)lways, ne(v)er, (m)ore: 2 lines: \\e[0m");
	EXPECT_EQ(Shown.Text, FirstPage);
	Shown.Out.NoteTypedLineEnd();
	Shown.View.ShowMoreOfApproval();
	EXPECT_EQ(Shown.Text, FirstPage + TEXT(" 2\n 3\n\\e[33mAllow it? (y)es, (n)o, (a)lways, ne(v)er: \\e[0m"));

	FShown ForScript(Plain());
	ForScript.View.ShowApproval(Call, Request, false);
	EXPECT_TRUE(ForScript.Text.EndsWith(TEXT(" 2\n 3\n"))) << "nobody turns pages, and nothing is asked";
}

TEST(TerminalView, AQuestionIsNumberedAndAWaitCountsDown)
{
	FCVXClarificationRequest Request;
	Request.Questions.Add({TEXT("Which one?"), {{TEXT("Red"), TEXT("like fire")}, {TEXT("Blue"), FString()}}});
	Request.Questions.Add({TEXT("Why?"), {}});
	FShown Shown(Colour());
	Shown.View.ShowQuestion(Request, 0, true);
	EXPECT_EQ(Shown.Text,
		TEXT("\\e[33mQuestion 1 of 2: Which one?\\e[0m\n  1. Red - like fire\n  2. Blue\n"
			 "\\e[33mA number, or your own words: \\e[0m"));
	Shown.Text.Empty();
	Shown.Out.NoteTypedLineEnd();
	Shown.View.ShowRetry(2.4);
	Shown.View.ShowRetry(2.2);
	Shown.View.ShowRetry(1.6);
	EXPECT_EQ(Shown.Text,
		TEXT("\\e[2mThe request failed; trying again in 3 s\\e[0m"
			 "\r\\e[2K\\e[2mThe request failed; trying again in 2 s\\e[0m"))
		<< "drawn anew only when the number changes";

	FShown InFile(Plain());
	InFile.View.ShowRetry(2.4);
	InFile.View.ShowRetry(1.6);
	EXPECT_EQ(InFile.Text, TEXT("-- the request failed; trying again in 3 s\n"));
}

TEST(TerminalView, NoTextFromOutsideReachesTheTerminalAsItIs)
{
	EXPECT_EQ(MakeSafeText(TEXT("a\x1b[2Jb\tc\r\nd\x07\x7f")), TEXT("a^[[2Jb\tc\nd^G^?"));
	EXPECT_EQ(MakeSafeText(FStringView(TEXT("\0x"), 2)), TEXT("^@x"));
	EXPECT_EQ(MakeSafeText(TEXT("\u009b31m \u202Egnp.exe")), TEXT("<U+009B>31m <U+202E>gnp.exe"));
	EXPECT_EQ(MakeSafeText(TEXT("Grüße \U0001F600")), TEXT("Grüße \U0001F600"));

	FShown Shown(Colour());
	const FString Evil = TEXT("\x1b]0;title\x07");
	const FShownCall EvilCall = {Evil, Evil, Evil, Evil};
	FCVXApprovalRequest Request;
	Request.Description = Evil;
	Request.DiffPreview = Evil;
	FCVXClarificationRequest Questions;
	Questions.Questions.Add({Evil, {{Evil, Evil}}});
	Shown.View.ShowNotice(Evil);
	Shown.View.ShowText(Evil);
	Shown.View.ShowReasoning(Evil);
	Shown.View.ShowCall(EvilCall);
	Shown.View.ShowOutcome({EvilCall, Evil, true, 1.0});
	Shown.View.ShowTodoList({{Evil, Evil, ECVXTodoStatus::Pending}});
	Shown.View.ShowApproval(EvilCall, Request, false);
	Shown.View.ShowQuestion(Questions, 0, false);
	Shown.View.ShowActivity(Evil, 1.0);
	Shown.View.ShowResult(Evil);
	Shown.View.ShowError(Evil);
	Shown.View.ShowNeedsPerson(Evil);
	EXPECT_FALSE(Shown.Text.Contains(TEXT("\\e]")));
	EXPECT_FALSE(Shown.Text.Contains(TEXT("\x07")));
	EXPECT_FALSE(Shown.ErrorText.Contains(TEXT("\x1b]")));

	FString Line;
	FJsonView Json([&](const FString& Text) { Line += Text; });
	Json.ShowText(TEXT("\x1b\u009b\x7f"));
	EXPECT_EQ(Line, TEXT("{\"event\":\"text\",\"text\":\"\\u001b\\u009b\\u007f\"}\n"));
}

TEST(TerminalView, AKeyIsHiddenWhereverItStands)
{
	FKeyMask Mask;
	Mask.Hide(TEXT("sk-secret-1234"));
	Mask.Hide(TEXT("a"));
	EXPECT_EQ(Mask.Apply(TEXT("bad key sk-secret-1234, sk-secret-1234!")), TEXT("bad key [API key], [API key]!"));
	Mask.Hide(TEXT("sk-secret-1234-longer"));
	EXPECT_EQ(Mask.Apply(TEXT("sk-secret-1234-longer")), TEXT("[API key]")) << "and not an end of it";
}

TEST(KeyMask, FindsAKeyHoweverAStreamIsCutAndHoldsNothingElseBack)
{
	FKeyMask Mask;
	Mask.Hide(TEXT("sk-sk-secret"));
	const FString Whole = TEXT("is sk-sk-sk-secret, ask-sk-secre");
	for (int32 First = 0; First <= Whole.Len(); ++First)
	{
		for (int32 Second = First; Second <= Whole.Len(); ++Second)
		{
			FString Held;
			FString Shown;
			for (const FString& Piece : {Whole.Left(First), Whole.Mid(First, Second - First), Whole.Mid(Second)})
			{
				Shown += Mask.ApplyToPiece(Piece, Held);
			}
			ASSERT_EQ(Shown, TEXT("is sk-[API key], a")) << First << " " << Second;
			ASSERT_EQ(Held, TEXT("sk-sk-secre"));
		}
	}
	FString Held;
	EXPECT_EQ(Mask.ApplyToPiece(TEXT("no beginning of one, "), Held), TEXT("no beginning of one, "));
	EXPECT_EQ(Held, TEXT(""));
}
