#include "MCP/CVXMCPLineBuffer.h"

#include "Containers/Array.h"
#include "Support/HostTypePrinting.h"

#include <gtest/gtest.h>

namespace
{
TArray<FString> TakeAll(FCVXMCPLineBuffer& Buffer)
{
	TArray<FString> Lines;
	for (FString Line; Buffer.TakeLine(Line);)
	{
		Lines.Add(Line);
	}
	return Lines;
}

TEST(CVXMCPLineBuffer, GivesTheSameLinesWhereverTheTextIsCut)
{
	const FString Text = TEXT("\n{\"a\":1}\r\n \t\n\n  two  \nthree");
	const TArray<FString> Expected = {TEXT("{\"a\":1}"), TEXT("two")};
	for (int32 Cut = 0; Cut <= Text.Len(); ++Cut)
	{
		FCVXMCPLineBuffer Buffer;
		Buffer.Append(Text.Left(Cut));
		TArray<FString> Lines = TakeAll(Buffer);
		Buffer.Append(Text.RightChop(Cut));
		Lines.Append(TakeAll(Buffer));
		EXPECT_EQ(Lines, Expected) << Cut;
		EXPECT_EQ(Buffer.Num(), 5);
		Buffer.Empty();
		Buffer.Append(TEXT("!\n"));
		EXPECT_EQ(TakeAll(Buffer), TArray<FString>{TEXT("!")}) << "what was dropped isn't joined to what follows";
	}
}

TEST(CVXMCPLineBuffer, TakesTooMuchWithoutALineEndForALine)
{
	FCVXMCPLineBuffer Buffer;
	FString Line;
	Buffer.Append(FString::ChrN(FCVXMCPLineBuffer::MaxLineLength, TEXT('x')));
	EXPECT_FALSE(Buffer.TakeLine(Line));
	Buffer.Append(TEXT("x"));
	EXPECT_TRUE(Buffer.TakeLine(Line));
	EXPECT_EQ(Line.Len(), FCVXMCPLineBuffer::MaxLineLength + 1);
	Buffer.Append(TEXT("rest\nnext\n"));
	EXPECT_EQ(TakeAll(Buffer), (TArray<FString>{TEXT("rest"), TEXT("next")}));
}
} // namespace
