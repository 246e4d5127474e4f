#pragma once

#include "CoreMinimal.h"

#include <array>

/**
 * Cuts source text into the tokens that the index knows: words of letters, digits and underscores, cut again where an
 * identifier has its seams, in lower case. Any thread.
 */
namespace CVXBM25Tokenizer
{
/** A token has no fewer characters than this, and no more than the other. */
constexpr int32 MinTokenLen = 2;
constexpr int32 MaxTokenLen = 64;

/** Whether a token, in lower case, says nothing: too short or too long, a number, or a word that stands everywhere. */
bool IsStopToken(FStringView Token);

/** The tokens of a text in their order, repeats included, without stop tokens. */
TArray<FString> Tokenize(FStringView Text);

/** Whether a character extends a word. */
bool IsWordChar(TCHAR Char);

/** Calls Visit with each word of a text, as it stands there. */
template <typename VisitorType>
void ForEachWord(FStringView Text, VisitorType&& Visit);

/** Calls Visit with each part of a word that isn't empty, as it stands there. */
template <typename VisitorType>
void SplitIdentifier(FStringView Word, VisitorType&& Visit);

/** Calls Visit with each token of a word, good for the time of the call. Stop tokens are left out. */
template <typename VisitorType>
void ForEachToken(FStringView Word, VisitorType&& Visit);

/** Whether a part of an identifier ends in front of Word[Index], an upper-case letter but not the first character. */
bool IsSeamAtUpper(FStringView Word, int32 Index);

/** Whether a part of an identifier ends in front of Word[Index], which isn't the first character. */
inline bool IsSeam(FStringView Word, int32 Index)
{
	const TCHAR Char = Word.GetData()[Index];
	const bool bUpper = Char < 128 ? Char >= TEXT('A') && Char <= TEXT('Z') : FChar::IsUpper(Char);
	return bUpper && IsSeamAtUpper(Word, Index);
}
} // namespace CVXBM25Tokenizer

inline bool CVXBM25Tokenizer::IsWordChar(TCHAR Char)
{
	static constexpr auto AsciiWordChars = []
	{
		std::array<bool, 128> Table = {};
		for (TCHAR Each = 0; Each < 128; ++Each)
		{
			const TCHAR Lower = (TCHAR)(Each | 0x20);
			Table[Each] = FChar::IsDigit(Each) || (Lower >= TEXT('a') && Lower <= TEXT('z')) || Each == TEXT('_');
		}
		return Table;
	}();
	return Char < 128 ? AsciiWordChars[Char] : FChar::IsAlnum(Char);
}

template <typename VisitorType>
void CVXBM25Tokenizer::ForEachWord(FStringView Text, VisitorType&& Visit)
{
	const TCHAR* At = Text.GetData();
	const TCHAR* const End = At + Text.Len();
	while (At != End)
	{
		if (!IsWordChar(*At))
		{
			++At;
			continue;
		}
		const TCHAR* const Start = At;
		while (At != End && IsWordChar(*At))
		{
			++At;
		}
		Visit(FStringView(Start, (int32)(At - Start)));
	}
}

template <typename VisitorType>
void CVXBM25Tokenizer::SplitIdentifier(FStringView Word, VisitorType&& Visit)
{
	int32 Start = 0;
	const auto EndPart = [&](int32 End, int32 Next)
	{
		if (End > Start)
		{
			Visit(Word.Mid(Start, End - Start));
		}
		Start = Next;
	};
	for (int32 Index = 0; Index < Word.Len(); ++Index)
	{
		if (Word.GetData()[Index] == TEXT('_'))
		{
			EndPart(Index, Index + 1);
		}
		else if (Index > Start && IsSeam(Word, Index))
		{
			EndPart(Index, Index);
		}
	}
	EndPart(Word.Len(), Word.Len());
}

template <typename VisitorType>
void CVXBM25Tokenizer::ForEachToken(FStringView Word, VisitorType&& Visit)
{
	SplitIdentifier(Word,
		[&](FStringView Part)
		{
			if (Part.Len() > MaxTokenLen)
			{
				return;
			}
			TCHAR Lower[MaxTokenLen];
			int32 Len = 0;
			for (const TCHAR Char : Part)
			{
				Lower[Len++] = FChar::ToLower(Char);
			}
			const FStringView Token(Lower, Len);
			if (!IsStopToken(Token))
			{
				Visit(Token);
			}
		});
}
