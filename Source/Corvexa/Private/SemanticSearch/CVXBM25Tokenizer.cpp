#include "SemanticSearch/CVXBM25Tokenizer.h"

#include "Algo/AnyOf.h"

namespace
{
constexpr FStringView StopWords[] = {TEXT("if"), TEXT("in"), TEXT("is"), TEXT("it"), TEXT("of"), TEXT("or"), TEXT("to"),
	TEXT("do"), TEXT("be"), TEXT("at"), TEXT("an"), TEXT("as"), TEXT("by"), TEXT("on"), TEXT("so"), TEXT("the"),
	TEXT("and"), TEXT("for"), TEXT("not"), TEXT("but"), TEXT("are"), TEXT("was"), TEXT("has"), TEXT("had"),
	TEXT("have"), TEXT("this"), TEXT("that"), TEXT("with"), TEXT("from"), TEXT("void"), TEXT("true"), TEXT("false"),
	TEXT("null"), TEXT("none"), TEXT("new"), TEXT("int"), TEXT("bool"), TEXT("auto"), TEXT("const"), TEXT("static"),
	TEXT("return"), TEXT("include"), TEXT("pragma"), TEXT("once")};

/** A word of few ASCII characters as a number; 0 for any other. */
constexpr uint64 Pack(FStringView Word)
{
	constexpr int32 MaxPackedLen = 8;
	uint64 Packed = 0;
	if (Word.Len() > MaxPackedLen)
	{
		return 0;
	}
	for (const TCHAR Char : Word)
	{
		if (Char >= 128)
		{
			return 0;
		}
		Packed = Packed << 8 | Char;
	}
	return Packed;
}

/** The packed stop words, each at the first free slot from the one that its hash names. */
class FStopWordTable
{
public:
	constexpr FStopWordTable()
	{
		for (const FStringView& Word : StopWords)
		{
			uint32 Slot = SlotOf(Pack(Word));
			while (Slots[Slot] != 0)
			{
				Slot = (Slot + 1) % SlotCount;
			}
			Slots[Slot] = Pack(Word);
		}
	}

	constexpr bool Contains(uint64 Packed) const
	{
		uint32 Slot = SlotOf(Packed);
		while (Slots[Slot] != 0 && Slots[Slot] != Packed)
		{
			Slot = (Slot + 1) % SlotCount;
		}
		return Packed != 0 && Slots[Slot] == Packed;
	}

private:
	static constexpr uint32 SlotCount = 256;

	static constexpr uint32 SlotOf(uint64 Packed) { return (uint32)(Packed * 0x9E3779B97F4A7C15ull >> 56); }

	uint64 Slots[SlotCount] = {};
};

constexpr FStopWordTable StopWordTable;
} // namespace

bool CVXBM25Tokenizer::IsSeamAtUpper(FStringView Word, int32 Index)
{
	const TCHAR* const Char = Word.GetData() + Index;
	return FChar::IsLower(Char[-1]) || (FChar::IsUpper(Char[-1]) && Index + 1 < Word.Len() && FChar::IsLower(Char[1]));
}

bool CVXBM25Tokenizer::IsStopToken(FStringView Token)
{
	return Token.Len() < MinTokenLen || Token.Len() > MaxTokenLen || StopWordTable.Contains(Pack(Token)) ||
		!Algo::AnyOf(Token, [](TCHAR Char) { return !FChar::IsDigit(Char); });
}

TArray<FString> CVXBM25Tokenizer::Tokenize(FStringView Text)
{
	constexpr int32 CharsPerToken = 6;
	TArray<FString> Tokens;
	Tokens.Reserve(Text.Len() / CharsPerToken);
	ForEachWord(Text, [&](FStringView Word) { ForEachToken(Word, [&](FStringView Token) { Tokens.Emplace(Token); }); });
	return Tokens;
}
