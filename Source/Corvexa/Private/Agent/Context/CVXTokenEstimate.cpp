#include "Agent/Context/CVXContextManager.h"

namespace
{
/** From this many characters on, a quarter of the length is good enough. */
constexpr int32 QuarterRuleLength = 100001;
/** About 3.5 letters and 2.5 digits go to a token. */
constexpr float TokensPerLetter = 0.2857143f;
constexpr float TokensPerDigit = 0.4f;
/** An image costs its Base64 length divided by the second, at least the first. */
constexpr int32 MinImageTokens = 85;
constexpr int32 Base64CharsPerImageToken = 100;

/** What counts alike. */
enum class ECharClass : uint8
{
	Space,
	Letter,
	Digit,
	/** An ASCII sign, or an ideograph: a token of its own. */
	Whole,
	/** Any other unit: half a token. */
	Half,
};

ECharClass Classify(TCHAR Char)
{
	if (FChar::IsWhitespace(Char))
	{
		return ECharClass::Space;
	}
	if (Char >= 0x4E00 && Char <= 0x9FFF)
	{
		return ECharClass::Whole;
	}
	if (FChar::IsAlpha(Char))
	{
		return ECharClass::Letter;
	}
	if (FChar::IsDigit(Char))
	{
		return ECharClass::Digit;
	}
	return Char <= 127 ? ECharClass::Whole : ECharClass::Half;
}

/** The classes of ASCII, which most text consists of, at hand. */
struct FAsciiClasses
{
	FAsciiClasses()
	{
		for (int32 Char = 0; Char < UE_ARRAY_COUNT(Classes); ++Char)
		{
			Classes[Char] = Classify(static_cast<TCHAR>(Char));
		}
	}

	ECharClass Of(TCHAR Char) const { return Char < UE_ARRAY_COUNT(Classes) ? Classes[Char] : Classify(Char); }

private:
	ECharClass Classes[128];
};

float CostOfRun(ECharClass Class, int32 Length)
{
	switch (Class)
	{
	case ECharClass::Letter:
		return FMath::Max(1.0f, static_cast<float>(Length) * TokensPerLetter);
	case ECharClass::Digit:
		return FMath::Max(1.0f, static_cast<float>(Length) * TokensPerDigit);
	case ECharClass::Whole:
		return static_cast<float>(Length);
	case ECharClass::Half:
		return static_cast<float>(Length) * 0.5f;
	case ECharClass::Space:
		break;
	}
	return 0.0f;
}
} // namespace

int32 FCVXContextManager::EstimateTokensForString(const FString& Text)
{
	if (Text.IsEmpty())
	{
		return 0;
	}
	if (Text.Len() >= QuarterRuleLength)
	{
		return FMath::Max(1, Text.Len() / 4);
	}
	static const FAsciiClasses Classes;
	const TCHAR* At = *Text;
	const TCHAR* const End = At + Text.Len();
	float Sum = 0.0f;
	while (At != End)
	{
		const TCHAR* const Start = At;
		const ECharClass Class = Classes.Of(*At);
		while (++At != End && Classes.Of(*At) == Class)
		{
		}
		Sum += CostOfRun(Class, static_cast<int32>(At - Start));
	}
	return FMath::Max(1, FMath::RoundToInt(Sum));
}

int32 FCVXContextManager::EstimateTokensForMessage(const FCVXMessage& Message)
{
	int32 Sum = 0;
	for (const FCVXContentBlock& Block : Message.Content)
	{
		Sum += EstimateTokensForString(Block.Text) + EstimateTokensForString(Block.InputJson) +
			EstimateTokensForString(Block.ToolResultContent);
		if (!Block.ImageBase64.IsEmpty())
		{
			Sum += FMath::Max(MinImageTokens, Block.ImageBase64.Len() / Base64CharsPerImageToken);
		}
	}
	return Sum;
}
