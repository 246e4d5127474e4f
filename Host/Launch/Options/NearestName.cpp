#include "Launch/Options/NearestName.h"

namespace
{
/** Longer words aren't compared: nobody mistypes so much. */
constexpr int32 MaxChars = 64;

/** Edits from one word to the other, an exchange of neighbours counting as one. */
int32 CountEdits(const FString& A, const FString& B)
{
	TArray<TArray<int32>> Rows;
	Rows.SetNum(A.Len() + 1);
	for (int32 I = 0; I <= A.Len(); ++I)
	{
		Rows[I].SetNum(B.Len() + 1);
		for (int32 J = 0; J <= B.Len(); ++J)
		{
			if (I == 0 || J == 0)
			{
				Rows[I][J] = I + J;
				continue;
			}
			const int32 Change = A[I - 1] == B[J - 1] ? 0 : 1;
			Rows[I][J] = FMath::Min(FMath::Min(Rows[I - 1][J], Rows[I][J - 1]) + 1, Rows[I - 1][J - 1] + Change);
			if (I > 1 && J > 1 && A[I - 1] == B[J - 2] && A[I - 2] == B[J - 1])
			{
				Rows[I][J] = FMath::Min(Rows[I][J], Rows[I - 2][J - 2] + 1);
			}
		}
	}
	return Rows[A.Len()][B.Len()];
}
} // namespace

FString FindNearestName(const FString& Word, const TArray<FString>& Candidates)
{
	if (Word.Len() > MaxChars)
	{
		return FString();
	}
	FString Best;
	int32 BestEdits = FMath::Max(1, Word.Len() / 3) + 1;
	for (const FString& Candidate : Candidates)
	{
		const int32 Edits = Candidate.StartsWith(Word) ? 1 : CountEdits(Word.ToLower(), Candidate.ToLower());
		if (Edits < BestEdits)
		{
			Best = Candidate;
			BestEdits = Edits;
		}
	}
	return Best;
}
