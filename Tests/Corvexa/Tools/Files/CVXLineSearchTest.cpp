#include "Tools/Files/CVXLineSearch.h"

#include "Misc/FileHelper.h"
#include "Support/HostTypePrinting.h"

#include <random>
#include <string>

namespace
{
/** The rule itself: the whole file as text, cut into lines, each asked for the pattern. */
TArray<FString> SearchByRule(const TArray<uint8>& Bytes, const FString& Pattern, ESearchCase::Type Case, int32 Max)
{
	FString Text;
	FFileHelper::BufferToString(Text, Bytes.GetData(), Bytes.Num());
	TArray<FString> Lines;
	Text.ParseIntoArrayLines(Lines, false);
	TArray<FString> Found;
	for (int32 Index = 0; Index < Lines.Num() && Found.Num() < Max; ++Index)
	{
		if (Pattern.IsEmpty() || Lines[Index].Find(Pattern, Case) != INDEX_NONE)
		{
			Found.Add(FString::FromInt(Index + 1) + TEXT(":") + Lines[Index].TrimStartAndEnd());
		}
	}
	return Found;
}

TArray<FString> Search(const TArray<uint8>& Bytes, const FString& Pattern, ESearchCase::Type Case, int32 Max)
{
	TArray<FCVXLineMatch> Matches;
	FCVXLineSearch(Pattern, Case).Search(Bytes, Max, Matches);
	TArray<FString> Found;
	for (const FCVXLineMatch& Match : Matches)
	{
		Found.Add(FString::FromInt(Match.Line) + TEXT(":") + Match.Text);
	}
	return Found;
}

TArray<uint8> ToBytes(const std::string& Text)
{
	TArray<uint8> Bytes;
	Bytes.Append((const uint8*)Text.data(), (int32)Text.size());
	return Bytes;
}

/** Text made of few pieces, so that matches, near misses, all line ends and broken characters are frequent. */
std::string RandomText(std::minstd_rand& Random, int32 Pieces)
{
	static const std::string Parts[] = {"a", "A", "b", "ab", "Foo", "fOO", "foo_bar", " ", "\t", "\n", "\r\n", "\r",
		"é", "É", "ß", "\xC3", "\x80", "\xF0\x9F", "\xF0\x9F\x98\x80", std::string(1, '\0'), "@", "`", "[", "{",
		"\xEF\xBF\xBD", "K", "ſ", std::string(70, 'x')};
	std::string Text;
	for (int32 Index = 0; Index < Pieces; ++Index)
	{
		Text += Parts[Random() % std::size(Parts)];
	}
	return Text;
}

TEST(CVXLineSearch, FindsWhatTheWholeTextCutIntoLinesWouldGive)
{
	std::minstd_rand Random(7);
	const std::string Marks[] = {"", "", "", "\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF"};
	for (int32 Round = 0; Round < 4000; ++Round)
	{
		const TArray<uint8> Bytes = ToBytes(Marks[Random() % std::size(Marks)] + RandomText(Random, Random() % 120));
		const std::string Raw = RandomText(Random, Random() % 4);
		FString Pattern;
		Pattern.AppendUtf8(Raw.data(), (int64)Raw.size());
		const ESearchCase::Type Case = Random() % 2 == 0 ? ESearchCase::IgnoreCase : ESearchCase::CaseSensitive;
		const int32 Max = Random() % 4 == 0 ? 2 : 1000;
		ASSERT_EQ(Search(Bytes, Pattern, Case, Max), SearchByRule(Bytes, Pattern, Case, Max))
			<< "round " << Round << ", pattern '" << Raw << "'";
	}
}
} // namespace
