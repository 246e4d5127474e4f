#pragma once

#include "CoreMinimal.h"

/** One term of the dictionary and the English keyword that it stands for, both in lower case. */
struct FCVXKeywordMapping
{
	FString Term;
	FString Key;
	/** Whether the term is a stem, which matches any word that begins with it. */
	bool bPrefix = false;
};

/**
 * A small dictionary from the words of other languages and the short forms of the trade to the English keywords that
 * knowledge is chosen by. Any thread.
 */
class FCVXMultiLangKeywords
{
public:
	/**
	 * Reads the files of the folder "translations" in a knowledge directory; when they give nothing, a built-in
	 * dictionary takes their place. Only the first call does anything. A bad file costs itself alone, and is logged.
	 */
	static void LoadTranslations(const FString& KnowledgeDir);

	/** The English keywords that the given words stand for, in lower case, without those given. */
	static TArray<FString> TranslateKeywords(const TArray<FString>& Keywords);

	/** Whether the text has a character of a script whose words may be that short: kana, ideographs, Hangul. */
	static bool ContainsCJK(const FString& Text);

	/** Forgets the dictionary, so that it can be loaded again. */
	static void Reset();
};
