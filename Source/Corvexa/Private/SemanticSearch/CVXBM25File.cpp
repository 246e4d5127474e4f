#include "SemanticSearch/CVXBM25File.h"

#include "Core/CVXJsonCursor.h"
#include "Policies/CondensedJsonPrintPolicy.h"
#include "Serialization/JsonWriter.h"

#include <limits>

namespace
{
/** The most that one character takes, escaped. */
constexpr int64 MaxCharsEscaped = 6;
/** The most that the fields of a document take beside its texts. */
constexpr int64 MaxFieldChars = 128;

bool FitsOneText(const TArray<FCVXBM25Doc>& Docs)
{
	int64 Chars = MaxFieldChars;
	for (const FCVXBM25Doc& Doc : Docs)
	{
		Chars += (int64)(Doc.FilePath.Len() + Doc.Text.Len()) * MaxCharsEscaped + MaxFieldChars;
	}
	return Chars < MAX_int32;
}

/** The text of a number as it is written; empty for a value of another kind, which is passed over too. */
bool ReadNumber(FCVXJsonCursor& Cursor, FString& Out)
{
	const bool bNumber = Cursor.IsAtNumber();
	const FStringView Before = Cursor.GetRest();
	const bool bRead = Cursor.SkipValue();
	Out = bNumber ? FString(Before.LeftChop(Cursor.GetRest().Len())) : FString();
	return bRead;
}

/** Exact where no fraction or exponent stands; else with the fraction cut. */
template <typename T>
T ToInteger(const FString& Number)
{
	constexpr double Below = (double)std::numeric_limits<T>::min();
	// One above the greatest, which a double holds where the greatest itself isn't one.
	constexpr double Above = -Below;
	const double Value = FCString::Atod(*Number);
	if (Value < Below || Value >= Above)
	{
		return Value < 0 ? std::numeric_limits<T>::min() : std::numeric_limits<T>::max();
	}
	const bool bWhole = Number.GetCharArray().FindByPredicate(
							[](TCHAR Char) { return Char == TEXT('.') || (Char | 0x20) == TEXT('e'); }) == nullptr;
	return bWhole ? (T)FCString::Atoi64(*Number) : (T)Value;
}

/** @param Out stays as it is when the value isn't a number. */
template <typename T>
bool ReadInteger(FCVXJsonCursor& Cursor, T& Out)
{
	FString Number;
	const bool bRead = ReadNumber(Cursor, Number);
	Out = Number.IsEmpty() ? Out : ToInteger<T>(Number);
	return bRead;
}

bool ReadAverage(FCVXJsonCursor& Cursor, float& Out)
{
	FString Number;
	const bool bRead = ReadNumber(Cursor, Number);
	constexpr double Limit = (double)MAX_int32;
	Out = (float)FMath::Clamp(FCString::Atod(*Number), 0.0, Limit);
	return bRead;
}

bool ReadText(FCVXJsonCursor& Cursor, FString& Out)
{
	return Cursor.IsAtString() ? Cursor.ReadString(Out) : Cursor.SkipValue();
}

bool ReadDocument(FCVXJsonCursor& Cursor, FCVXBM25Doc& Out)
{
	return Cursor.ReadObject(
		[&](FStringView Name)
		{
			if (Name.Equals(TEXT("fp")))
			{
				return ReadText(Cursor, Out.FilePath);
			}
			if (Name.Equals(TEXT("sl")))
			{
				return ReadInteger(Cursor, Out.StartLine);
			}
			if (Name.Equals(TEXT("el")))
			{
				return ReadInteger(Cursor, Out.EndLine);
			}
			if (Name.Equals(TEXT("tx")))
			{
				return ReadText(Cursor, Out.Text);
			}
			if (Name.Equals(TEXT("tc")))
			{
				return ReadInteger(Cursor, Out.TokenCount);
			}
			return Name.Equals(TEXT("mt")) ? ReadInteger(Cursor, Out.FileTimestamp) : Cursor.SkipValue();
		});
}

bool ReadDocuments(FCVXJsonCursor& Cursor, TArray<FCVXBM25Doc>& Out)
{
	return Cursor.ReadArray(
		[&]
		{
			if (!Cursor.IsAtObject())
			{
				return Cursor.SkipValue();
			}
			FCVXBM25Doc Doc;
			const bool bRead = ReadDocument(Cursor, Doc);
			// A length is never negative; scores count on that.
			Doc.TokenCount = FMath::Max(Doc.TokenCount, 0);
			if (!Doc.FilePath.IsEmpty())
			{
				Doc.Text.Shrink();
				Out.Add(MoveTemp(Doc));
			}
			return bRead;
		});
}
} // namespace

bool CVXBM25File::Write(const TArray<FCVXBM25Doc>& Docs, float AverageDocLength, FString& OutJson)
{
	if (!FitsOneText(Docs))
	{
		return false;
	}
	TJsonWriter<TCHAR, TCondensedJsonPrintPolicy<TCHAR>> Writer(OutJson);
	Writer.WriteObjectStart();
	Writer.WriteArrayStart(TEXT("docs"));
	for (const FCVXBM25Doc& Doc : Docs)
	{
		if (!Doc.FilePath.IsEmpty())
		{
			Writer.WriteObjectStart();
			Writer.WriteValue(TEXT("fp"), Doc.FilePath);
			Writer.WriteValue(TEXT("sl"), Doc.StartLine);
			Writer.WriteValue(TEXT("el"), Doc.EndLine);
			Writer.WriteValue(TEXT("tx"), Doc.Text);
			Writer.WriteValue(TEXT("tc"), Doc.TokenCount);
			Writer.WriteValue(TEXT("mt"), Doc.FileTimestamp);
			Writer.WriteObjectEnd();
		}
	}
	Writer.WriteArrayEnd();
	Writer.WriteValue(TEXT("avg"), (double)AverageDocLength);
	Writer.WriteObjectEnd();
	return Writer.Close();
}

bool CVXBM25File::Read(FStringView Json, FCVXBM25Contents& OutContents)
{
	FCVXJsonCursor Cursor(Json);
	bool bHasDocs = false;
	const bool bRead = Cursor.ReadObject(
		[&](FStringView Name)
		{
			if (Name.Equals(TEXT("avg")))
			{
				return ReadAverage(Cursor, OutContents.AverageDocLength);
			}
			if (!Name.Equals(TEXT("docs")))
			{
				return Cursor.SkipValue();
			}
			OutContents.Docs.Reset();
			bHasDocs = Cursor.IsAtArray();
			return bHasDocs ? ReadDocuments(Cursor, OutContents.Docs) : Cursor.SkipValue();
		});
	return bRead && bHasDocs && Cursor.IsAtEnd();
}
