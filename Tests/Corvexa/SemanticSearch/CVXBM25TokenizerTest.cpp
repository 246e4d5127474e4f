#include "SemanticSearch/CVXBM25Tokenizer.h"

#include "SemanticSearch/CVXBM25Chunker.h"
#include "SemanticSearch/CVXBM25TermReader.h"
#include "Support/HostTypePrinting.h"

#include <gtest/gtest.h>

TEST(CVXBM25Tokenizer, CutsWordsAtTheSeamsOfIdentifiersAndDropsWhatSaysNothing)
{
	const FString Longest = FString::ChrN(64, TEXT('x'));
	const FString TooLong = FString::ChrN(65, TEXT('x'));
	const struct
	{
		FString Text;
		FString Tokens;
	} Cases[] = {
		{TEXT(""), TEXT("")},
		{TEXT("getHTTPResponse"), TEXT("get http response")},
		{TEXT("UActorComponent AActor"), TEXT("actor component actor")},
		{TEXT("FVector3Dot vec2Bar HTTP2Server"), TEXT("vector3dot vec2bar http2server")},
		{TEXT("_spawn__actor_ __ MAX_SPEED_a"), TEXT("spawn actor max speed")},
		{TEXT("XMLParser parseXML ABc"), TEXT("xml parser parse xml bc")},
		{TEXT("spawn spawn Spawn"), TEXT("spawn spawn spawn")},
		{TEXT("return the newValue; const int32 x = 12345;"), TEXT("value int32")},
		{TEXT("Include PRAGMA onceMore noneOfIt"), TEXT("more")},
		{TEXT("0x1F 3f 42 007"), TEXT("0x1f 3f")},
		{TEXT("ÄrmelKanal straßeÜber Привет"), TEXT("ärmel kanal straße über привет")},
		{TEXT("a-b.cd->ef\"gh\"\nij"), TEXT("cd ef gh ij")},
		{Longest + TEXT(" ") + TooLong + TEXT(" ok"), Longest + TEXT(" ok")},
		{FString::ChrN(65, TEXT('x')) + TEXT("Tail"), TEXT("tail")},
		{TEXT("includes onces ifs consts trues"), TEXT("includes onces ifs consts trues")},
		{TEXT("end"), TEXT("end")},
	};
	FCVXTextTable Terms;
	FCVXBM25TermReader Reader(Terms);
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(FString::Join(CVXBM25Tokenizer::Tokenize(Case.Text), TEXT(" ")), Case.Tokens)
			<< testing::PrintToString(Case.Text);
		// What indexing reads is the same, when a word comes first and when it comes again.
		for (int32 Round = 0; Round < 2; ++Round)
		{
			TArray<int32> Ids;
			Reader.Read(Case.Text, Ids);
			const FString Read = FString::JoinBy(Ids, TEXT(" "), [&](int32 Id) { return FString(Terms.GetText(Id)); });
			EXPECT_EQ(Read, Case.Tokens) << testing::PrintToString(Case.Text);
		}
	}
}

TEST(CVXBM25Chunker, CutsFilesIntoWindowsThatShareTwentyLines)
{
	const struct
	{
		int32 Lines;
		const TCHAR* Chunks;
	} Cases[] = {
		{0, TEXT("")},
		{1, TEXT("1-1")},
		{60, TEXT("1-60")},
		{61, TEXT("1-61 61-61")},
		{80, TEXT("1-80 61-80")},
		{130, TEXT("1-80 61-130 121-130")},
		{240, TEXT("1-80 61-140 121-200 181-240")},
	};
	for (const auto& Case : Cases)
	{
		FString Text;
		for (int32 Line = 1; Line <= Case.Lines; ++Line)
		{
			Text.Appendf(TEXT("%d\n"), Line);
		}
		const TArray<FCVXBM25Doc> Docs = CVXBM25Chunker::ChunkFile(TEXT("/a.h"), CVXBM25Chunker::SplitLines(Text), 7);
		const FString Chunks = FString::JoinBy(Docs, TEXT(" "),
			[](const FCVXBM25Doc& Doc) { return FString::Printf(TEXT("%d-%d"), Doc.StartLine, Doc.EndLine); });
		EXPECT_EQ(Chunks, Case.Chunks);
		for (const FCVXBM25Doc& Doc : Docs)
		{
			EXPECT_TRUE(Doc.Text.StartsWith(FString::Printf(TEXT("%d\n"), Doc.StartLine)));
			EXPECT_TRUE(Doc.Text.EndsWith(FString::Printf(TEXT("%d\n"), Doc.EndLine)));
			EXPECT_EQ(Doc.FileTimestamp, 7);
		}
	}
}

TEST(CVXBM25Chunker, KeepsEmptyLinesAndKnowsAllLineEnds)
{
	const struct
	{
		FStringView Text;
		const TCHAR* Lines;
	} Cases[] = {
		{TEXT("a\n\nb"), TEXT("a||b")},
		{TEXT("a\r\nb\rc\n"), TEXT("a|b|c")},
		{TEXT("\r\n\n\r"), TEXT("||")},
		{TEXT("a\n\n"), TEXT("a|")},
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(FString::Join(CVXBM25Chunker::SplitLines(Case.Text), TEXT("|")), Case.Lines)
			<< testing::PrintToString(FString(Case.Text));
	}
}
