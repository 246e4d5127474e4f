#include "Knowledge/CVXKeywordExtractor.h"

#include "Algo/AnyOf.h"

namespace
{
constexpr int32 MinWordChars = 3;
constexpr int32 MinHexChars = 8;

/** What only parts words. */
constexpr FStringView Separators = TEXTVIEW(",.!?;:()[]{}\"'`\n\r\t");

/** Words of ordinary talk, and those that every request of a game project holds. */
constexpr const TCHAR* StopWords[] = {TEXT("a"), TEXT("an"), TEXT("the"), TEXT("is"), TEXT("are"), TEXT("was"),
	TEXT("were"), TEXT("be"), TEXT("been"), TEXT("being"), TEXT("have"), TEXT("has"), TEXT("had"), TEXT("do"),
	TEXT("does"), TEXT("did"), TEXT("will"), TEXT("would"), TEXT("could"), TEXT("should"), TEXT("may"), TEXT("might"),
	TEXT("shall"), TEXT("can"), TEXT("need"), TEXT("to"), TEXT("of"), TEXT("in"), TEXT("for"), TEXT("on"), TEXT("with"),
	TEXT("at"), TEXT("by"), TEXT("from"), TEXT("as"), TEXT("into"), TEXT("through"), TEXT("during"), TEXT("before"),
	TEXT("after"), TEXT("above"), TEXT("below"), TEXT("between"), TEXT("under"), TEXT("again"), TEXT("further"),
	TEXT("then"), TEXT("once"), TEXT("here"), TEXT("there"), TEXT("when"), TEXT("where"), TEXT("why"), TEXT("how"),
	TEXT("all"), TEXT("each"), TEXT("every"), TEXT("both"), TEXT("few"), TEXT("more"), TEXT("most"), TEXT("other"),
	TEXT("some"), TEXT("such"), TEXT("no"), TEXT("not"), TEXT("only"), TEXT("own"), TEXT("same"), TEXT("so"),
	TEXT("than"), TEXT("too"), TEXT("very"), TEXT("just"), TEXT("because"), TEXT("but"), TEXT("and"), TEXT("or"),
	TEXT("if"), TEXT("while"), TEXT("about"), TEXT("up"), TEXT("out"), TEXT("off"), TEXT("over"), TEXT("this"),
	TEXT("that"), TEXT("these"), TEXT("those"), TEXT("it"), TEXT("its"), TEXT("i"), TEXT("me"), TEXT("my"), TEXT("we"),
	TEXT("our"), TEXT("you"), TEXT("your"), TEXT("he"), TEXT("him"), TEXT("his"), TEXT("she"), TEXT("her"),
	TEXT("they"), TEXT("them"), TEXT("their"), TEXT("what"), TEXT("which"), TEXT("who"), TEXT("whom"), TEXT("create"),
	TEXT("make"), TEXT("add"), TEXT("implement"), TEXT("write"), TEXT("fix"), TEXT("update"), TEXT("change"),
	TEXT("modify"), TEXT("remove"), TEXT("delete"), TEXT("get"), TEXT("set"), TEXT("use"), TEXT("please"), TEXT("want"),
	TEXT("help"), TEXT("show"), TEXT("tell"), TEXT("unreal"), TEXT("engine"), TEXT("ue5"), TEXT("ue4"), TEXT("project"),
	TEXT("file"), TEXT("code"), TEXT("existing"), TEXT("default"), TEXT("context"), TEXT("new"), TEXT("current"),
	TEXT("first"), TEXT("last"), TEXT("next"), TEXT("also"), TEXT("using"), TEXT("called"), TEXT("based"), TEXT("like"),
	TEXT("now"), TEXT("still"), TEXT("hence"), TEXT("therefore"), TEXT("thus"), TEXT("however"), TEXT("although"),
	TEXT("whereas"), TEXT("moreover"), TEXT("furthermore"), TEXT("additionally"), TEXT("specifically"),
	TEXT("essentially"), TEXT("basically"), TEXT("particularly"), TEXT("alternatively"), TEXT("consequently"),
	TEXT("accordingly"), TEXT("nevertheless"), TEXT("subsequently"), TEXT("respectively"), TEXT("typically"),
	TEXT("generally"), TEXT("actually"), TEXT("already"), TEXT("simply"), TEXT("directly"), TEXT("instead"),
	TEXT("requires"), TEXT("provides"), TEXT("allows"), TEXT("means"), TEXT("since"), TEXT("ensure")};

/** Names out of the plug-in's own logs, which would draw a search to them. */
constexpr const TCHAR* NoiseWords[] = {TEXT("corvexa"), TEXT("cvxagentloop"), TEXT("cvxtoolexecutor"),
	TEXT("cvxcheckpoint"), TEXT("cvxpromptinjector"), TEXT("cvxautorag"), TEXT("cvxknowledgemanager"),
	TEXT("cvxprojectscanner"), TEXT("cvxssestream"), TEXT("python_script"), TEXT("logcvxagentloop"),
	TEXT("logcvxbphelpers"), TEXT("logblueprint"), TEXT("loguobjecthash"), TEXT("logsavepackage"), TEXT("cmd"),
	TEXT("obj"), TEXT("savepackage")};

constexpr const TCHAR* PathStarts[] = {TEXT("/Game/"), TEXT("/Script/"), TEXT("/Engine/"), TEXT("/Temp/"), TEXT("..")};
constexpr const TCHAR* FileEnds[] = {TEXT(".uasset"), TEXT(".umap"), TEXT(".cpp"), TEXT(".h"), TEXT(".py"),
	TEXT(".json"), TEXT(".md"), TEXT(".ini"), TEXT(".tmp")};

/** Both lists. */
const TSet<FString>& GetIgnoredWords()
{
	static const TSet<FString> Words = []
	{
		TSet<FString> Set;
		for (const TCHAR* Word : StopWords)
		{
			Set.Add(Word);
		}
		for (const TCHAR* Word : NoiseWords)
		{
			Set.Add(Word);
		}
		return Set;
	}();
	return Words;
}

template <typename TestType>
int32 CountChars(const FString& Word, TestType Test)
{
	int32 Count = 0;
	for (const TCHAR Char : Word)
	{
		Count += Test(Char) ? 1 : 0;
	}
	return Count;
}

bool HasUpper(const FString& Word)
{
	return CountChars(Word, FChar::IsUpper) > 0;
}

bool HasLower(const FString& Word)
{
	return CountChars(Word, FChar::IsLower) > 0;
}

bool IsMostlyCyrillic(const FString& Word)
{
	return 2 * CountChars(Word, [](TCHAR Char) { return Char >= 0x0400 && Char <= 0x04FF; }) > Word.Len();
}

bool LooksLikePath(const FString& Word)
{
	const int32 Slashes = CountChars(Word, [](TCHAR Char) { return Char == TEXT('/') || Char == TEXT('\\'); });
	return Slashes >= 2 || Word.Contains(TEXT(":/")) ||
		Algo::AnyOf(PathStarts, [&](const TCHAR* Start) { return Word.StartsWith(Start); }) ||
		Algo::AnyOf(FileEnds, [&](const TCHAR* End) { return Word.EndsWith(End); });
}

/** A hash or an id. */
bool IsMostlyHex(const FString& Word)
{
	return Word.Len() >= MinHexChars && CountChars(Word, FChar::IsHexDigit) > Word.Len() * 7 / 10;
}

bool IsNumber(const FString& Word)
{
	return CountChars(Word,
			   [](TCHAR Char) { return FChar::IsDigit(Char) || Char == TEXT('-') || Char == TEXT('.'); }) == Word.Len();
}

bool IsWorthless(const FString& Word)
{
	const bool bShort = Word.Len() < MinWordChars && (HasLower(Word) || !HasUpper(Word));
	return bShort || GetIgnoredWords().Contains(Word) || IsMostlyCyrillic(Word) || LooksLikePath(Word) ||
		IsMostlyHex(Word) || IsNumber(Word);
}

/** A name as programs have them. */
bool IsIdentifier(const FString& Word)
{
	return Word.Len() >= MinWordChars && HasLower(Word) && (HasUpper(Word) || Word.Contains(TEXT("_")));
}

TArray<FString> SplitWords(const FString& Text)
{
	FString Plain = Text;
	for (TCHAR& Char : Plain.GetCharArray())
	{
		int32 Index;
		if (Separators.FindChar(Char, Index))
		{
			Char = TEXT(' ');
		}
	}
	TArray<FString> Words;
	Plain.ParseIntoArray(Words, TEXT(" "), true);
	return Words;
}
} // namespace

FString CVXKeywordExtractor::ExtractKeywords(const FString& Text)
{
	TSet<FString> Seen;
	TArray<FString> Identifiers;
	TArray<FString> Others;
	for (const FString& Word : SplitWords(Text))
	{
		bool bSeen = false;
		if (!IsWorthless(Word))
		{
			Seen.Add(Word, &bSeen);
			if (!bSeen)
			{
				(IsIdentifier(Word) ? Identifiers : Others).Add(Word);
			}
		}
	}
	TArray<FString> Keywords;
	for (int32 Index = Identifiers.Num() - 1; Index >= 0; --Index)
	{
		Keywords.Add(Identifiers[Index]);
	}
	Keywords.Append(Others);
	Keywords.SetNum(FMath::Min(MaxKeywords, Keywords.Num()));
	return FString::Join(Keywords, TEXT(" "));
}
