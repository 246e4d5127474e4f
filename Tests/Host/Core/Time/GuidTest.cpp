#include "Misc/Guid.h"
#include "Containers/Set.h"
#include "Support/HostTypePrinting.h"

#include <gtest/gtest.h>

TEST(Guid, IsFreshAndOfTheRandomKind)
{
	TSet<FGuid> Seen;
	for (int32 Round = 0; Round < 1000; ++Round)
	{
		const FGuid Guid = FGuid::NewGuid();
		EXPECT_TRUE(Guid.IsValid());
		const FString Text = Guid.ToString(EGuidFormats::DigitsWithHyphens);
		EXPECT_EQ(Text[14], u'4') << "version 4";
		EXPECT_TRUE(FString(TEXT("89AB")).Contains(Text.Mid(19, 1))) << "the standard's variant";
		Seen.Add(Guid);
	}
	EXPECT_EQ(Seen.Num(), 1000);
	EXPECT_FALSE(FGuid().IsValid());
}

TEST(Guid, ReadsEachFormThatItWrites)
{
	const FGuid Guid(0x01234567, 0x89ABCDEF, 0x00FF00FF, 0xDEADBEEF);
	const struct
	{
		EGuidFormats Format;
		const TCHAR* Text;
	} Cases[] = {
		{EGuidFormats::Digits, TEXT("0123456789ABCDEF00FF00FFDEADBEEF")},
		{EGuidFormats::DigitsLower, TEXT("0123456789abcdef00ff00ffdeadbeef")},
		{EGuidFormats::DigitsWithHyphens, TEXT("01234567-89AB-CDEF-00FF-00FFDEADBEEF")},
		{EGuidFormats::DigitsWithHyphensLower, TEXT("01234567-89ab-cdef-00ff-00ffdeadbeef")},
		{EGuidFormats::DigitsWithHyphensInBraces, TEXT("{01234567-89AB-CDEF-00FF-00FFDEADBEEF}")},
		{EGuidFormats::DigitsWithHyphensInParentheses, TEXT("(01234567-89AB-CDEF-00FF-00FFDEADBEEF)")},
		{EGuidFormats::UniqueObjectGuid, TEXT("01234567-89ABCDEF-00FF00FF-DEADBEEF")},
	};
	for (const auto& Case : Cases)
	{
		EXPECT_TRUE(Guid.ToString(Case.Format).Equals(Case.Text));
		FGuid Read;
		EXPECT_TRUE(FGuid::Parse(FString(Case.Text).ToLower(), Read));
		EXPECT_TRUE(Read == Guid);
	}
	for (const TCHAR* Bad :
		{TEXT(""), TEXT("0123456789ABCDEF00FF00FFDEADBEE"), TEXT("0123456789ABCDEF00FF00FFDEADBEEFF"),
			TEXT("0123-456789ABCDEF00FF00FFDEADBEEF"), TEXT("{01234567-89AB-CDEF-00FF-00FFDEADBEEF)"),
			TEXT("0123456789ABCDEF00FF00FFDEADBEEG"), TEXT(" 0123456789ABCDEF00FF00FFDEADBEEF")})
	{
		FGuid Read(1, 2, 3, 4);
		EXPECT_FALSE(FGuid::Parse(Bad, Read)) << TCHAR_TO_UTF8(Bad);
		EXPECT_TRUE(Read == FGuid(1, 2, 3, 4));
	}
}
