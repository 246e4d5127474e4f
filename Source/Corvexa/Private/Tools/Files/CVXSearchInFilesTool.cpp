#include "Tools/Files/CVXSearchInFilesTool.h"

#include "Async/ParallelFor.h"
#include "HAL/FileManager.h"
#include "Misc/FileHelper.h"
#include "Tools/CVXToolArguments.h"
#include "Tools/Files/CVXFileListing.h"
#include "Tools/Files/CVXLineSearch.h"
#include "Tools/Files/CVXProjectPaths.h"

namespace
{
constexpr int32 DefaultResults = 50;
constexpr int32 MostResults = 2000;

/** Files that one thread takes at a time, so that they share a buffer. */
constexpr int32 FilesPerStep = 16;
/** Steps of the first round. Each round has twice as many, so that little is read in vain when the results fill up. */
constexpr int32 FirstRoundSteps = 4;
constexpr int32 MostRoundSteps = 512;

/** One search over a list of files, on all cores, whose results come in the order of the list. */
class FTreeSearch
{
public:
	FTreeSearch(const FCVXLineSearch& InSearch, const FString& InProjectDir, int32 InMaxResults)
		: Search(InSearch)
		, ProjectDir(InProjectDir)
		, MaxResults(InMaxResults)
	{
	}

	/** @return the result lines, at most the number wanted. */
	TArray<FString> Run(const TArray<FString>& Files) const
	{
		TArray<FString> Results;
		int32 Steps = FirstRoundSteps;
		for (int32 First = 0; First < Files.Num() && Results.Num() < MaxResults;)
		{
			const int32 Count = FMath::Min(Files.Num() - First, Steps * FilesPerStep);
			RunRound(TArrayView<const FString>(Files.GetData() + First, Count), Results);
			First += Count;
			Steps = FMath::Min(Steps * 2, MostRoundSteps);
		}
		return Results;
	}

private:
	void RunRound(TArrayView<const FString> Files, TArray<FString>& Results) const
	{
		TArray<TArray<FString>> Found;
		Found.SetNum((Files.Num() + FilesPerStep - 1) / FilesPerStep);
		ParallelFor(Found.Num(),
			[&](int32 Step)
			{
				const int32 First = Step * FilesPerStep;
				RunStep(Files.Slice(First, FMath::Min(FilesPerStep, Files.Num() - First)), Found[Step]);
			});
		for (TArray<FString>& Lines : Found)
		{
			for (int32 Index = 0; Index < Lines.Num() && Results.Num() < MaxResults; ++Index)
			{
				Results.Add(MoveTemp(Lines[Index]));
			}
		}
	}

	void RunStep(TArrayView<const FString> Files, TArray<FString>& OutLines) const
	{
		TArray<uint8> Bytes;
		TArray<FCVXLineMatch> Matches;
		for (const FString& File : Files)
		{
			if (OutLines.Num() >= MaxResults)
			{
				return;
			}
			// What can't be read has nothing to be found.
			if (FFileHelper::LoadFileToArray(Bytes, *File, FILEREAD_Silent))
			{
				Matches.Reset();
				Search.Search(Bytes, MaxResults - OutLines.Num(), Matches);
				AddLines(File, Matches, OutLines);
			}
		}
	}

	void AddLines(const FString& File, const TArray<FCVXLineMatch>& Matches, TArray<FString>& OutLines) const
	{
		if (Matches.IsEmpty())
		{
			return;
		}
		const FString Relative = MakeProjectRelative(File, ProjectDir);
		for (const FCVXLineMatch& Match : Matches)
		{
			OutLines.Add(FString::Printf(TEXT("%s:%d: "), *Relative, Match.Line) + Match.Text);
		}
	}

	const FCVXLineSearch& Search;
	const FString& ProjectDir;
	const int32 MaxResults;
};

FString Describe(const TArray<FString>& Results, int32 MaxResults, const FString& Pattern, const FString& Path)
{
	if (Results.IsEmpty())
	{
		return FString::Printf(TEXT("No matches found for '%s' in '%s'."), *Pattern, *Path);
	}
	FString Output = FString::Join(Results, TEXT("\n"));
	if (Results.Num() >= MaxResults)
	{
		Output.Appendf(TEXT("\n[Results truncated at %d. Refine your search.]"), MaxResults);
	}
	return Output;
}
} // namespace

FString FCVXSearchInFilesTool::GetName() const
{
	return TEXT("search_in_files");
}

FString FCVXSearchInFilesTool::GetDescription() const
{
	return TEXT(
		"Search for a pattern string within files in a directory. Returns matching file paths and line numbers.");
}

FString FCVXSearchInFilesTool::GetInputSchemaJson() const
{
	return TEXT(R"({"type":"object","properties":{)"
				R"("path":{"type":"string",)"
				R"("description":"Directory to search in"},)"
				R"("pattern":{"type":"string",)"
				R"("description":"Text pattern to search for"},)"
				R"("file_glob":{"type":"string",)"
				R"("description":"File glob filter, e.g. '*.cpp'. Default '*'."},)"
				R"("case_sensitive":{"type":"boolean",)"
				R"("description":"Case sensitive search. Default false."},)"
				R"("max_results":{"type":"integer",)"
				R"("description":"Maximum results to return. Default 50."}},)"
				R"("required":["path","pattern"]})");
}

FCVXToolExecutionResult FCVXSearchInFilesTool::Execute(const FString& ArgumentsJson, const FCVXAgentProfile&)
{
	FCVXToolExecutionResult Error;
	TSharedPtr<FJsonObject> Arguments;
	FCVXListingDirectory Directory;
	FString Glob = TEXT("*");
	FString Pattern;
	if (!ParseToolArguments(ArgumentsJson, Arguments, Error) || !Directory.Resolve(*Arguments, Error) ||
		!GetFilePattern(*Arguments, TEXT("file_glob"), Glob, Error) ||
		!ReadStringArgument(*Arguments, TEXT("pattern"), Pattern, Error))
	{
		return Error;
	}
	const bool bCaseSensitive = GetBoolArgument(*Arguments, TEXT("case_sensitive"), false);
	const int32 MaxResults =
		FMath::Clamp(GetIntArgument(*Arguments, TEXT("max_results"), DefaultResults), 1, MostResults);
	TArray<FString> Files;
	IFileManager::Get().FindFilesRecursive(Files, *Directory.Absolute, *Glob, true, false);
	const FCVXLineSearch Search(Pattern, bCaseSensitive ? ESearchCase::CaseSensitive : ESearchCase::IgnoreCase);
	const TArray<FString> Results = FTreeSearch(Search, Directory.ProjectDir, MaxResults).Run(Files);
	return FCVXToolExecutionResult::MakeSuccess(
		Directory.Note + Describe(Results, MaxResults, Pattern, Directory.Shown));
}
