#include "SemanticSearch/CVXBM25Index.h"

#include "Algo/AnyOf.h"
#include "Core/CVXSettings.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Misc/ScopeRWLock.h"
#include "SemanticSearch/CVXBM25File.h"
#include "SemanticSearch/CVXBM25Indexer.h"
#include "SemanticSearch/CVXBM25Log.h"
#include "SemanticSearch/CVXBM25Search.h"
#include "SemanticSearch/CVXBM25Tokenizer.h"

DEFINE_LOG_CATEGORY(LogCVXBM25);

namespace
{
constexpr FStringView SourceExtensions[] = {TEXT("cpp"), TEXT("h"), TEXT("cs"), TEXT("hlsl"), TEXT("usf"), TEXT("ush")};

/** What is made by programs, or by others. */
constexpr FStringView SkippedFolders[] = {TEXT("/intermediate/"), TEXT("/binaries/"), TEXT("/thirdparty/"),
	TEXT("/deriveddatacache/"), TEXT("/build/"), TEXT("/saved/"), TEXT("/.git/"), TEXT("/node_modules/")};

int32 GetMaxDocs()
{
	constexpr int32 Default = 5000;
	const UCVXSettings* Settings = UCVXSettings::Get();
	return Settings ? Settings->BM25MaxIndexedDocs : Default;
}
} // namespace

FCVXBM25Index& FCVXBM25Index::Get()
{
	static FCVXBM25Index Index;
	return Index;
}

FString FCVXBM25Index::GetIndexFilePath()
{
	return FPaths::Combine(
		FPaths::ConvertRelativePathToFull(FPaths::ProjectSavedDir()), TEXT("CVX/BM25Index/index.json"));
}

TArray<FString> FCVXBM25Index::Tokenize(const FString& Text)
{
	return CVXBM25Tokenizer::Tokenize(Text);
}

bool FCVXBM25Index::ShouldIndexFile(const FString& Path)
{
	const FString Extension = FPaths::GetExtension(Path);
	return Algo::AnyOf(SourceExtensions, [&](FStringView Each) { return Each == Extension; }) &&
		!Algo::AnyOf(SkippedFolders, [&](FStringView Each) { return Path.Contains(Each); });
}

void FCVXBM25Index::IndexFiles(const TArray<FString>& Paths, bool bForceRebuild)
{
	const FWriteScopeLock Scope(Lock);
	if (bForceRebuild)
	{
		Store = FCVXBM25Store();
	}
	{
		FCVXBM25Indexer Indexer(Store);
		for (FString Path : Paths)
		{
			FPaths::NormalizeFilename(Path);
			if (ShouldIndexFile(Path))
			{
				Indexer.IndexFile(Path, bForceRebuild);
			}
		}
	}
	Store.FinalizeIndex(GetMaxDocs());
}

void FCVXBM25Index::RemoveMissingFiles()
{
	const FWriteScopeLock Scope(Lock);
	const TArray<FString> Missing =
		Store.FindFiles([](const FString& Path) { return !IFileManager::Get().FileExists(*Path); });
	for (const FString& Path : Missing)
	{
		Store.RemoveFile(Path);
	}
	if (!Missing.IsEmpty())
	{
		Store.FinalizeIndex(GetMaxDocs());
	}
}

TArray<FCVXBM25Result> FCVXBM25Index::Search(const FString& Query, int32 MaxResults) const
{
	const FReadScopeLock Scope(Lock);
	return CVXBM25Search::Search(Store, Query, MaxResults);
}

bool FCVXBM25Index::Save() const
{
	const FReadScopeLock Scope(Lock);
	const FString Path = GetIndexFilePath();
	FString Json;
	if (!CVXBM25File::Write(Store.GetDocs(), Store.GetAverageDocLength(), Json))
	{
		UE_LOG(LogCVXBM25, Warning, TEXT("BM25: Failed to serialize index to JSON"));
		return false;
	}
	if (!IFileManager::Get().MakeDirectory(*FPaths::GetPath(Path), true) || !FFileHelper::SaveStringToFile(Json, *Path))
	{
		UE_LOG(LogCVXBM25, Warning, TEXT("BM25: Failed to write index to %s"), *Path);
		return false;
	}
	UE_LOG(LogCVXBM25, Log, TEXT("BM25: Saved %d docs → %s"), Store.GetDocs().Num(), *Path);
	return true;
}

bool FCVXBM25Index::Load()
{
	const FString Path = GetIndexFilePath();
	FString Json;
	FCVXBM25Contents Contents;
	if (!FPaths::FileExists(Path) || !FFileHelper::LoadFileToString(Json, *Path) || !CVXBM25File::Read(Json, Contents))
	{
		return false;
	}
	// All that takes time is done aside, so that nobody waits for it.
	FCVXBM25Store Loaded;
	{
		FCVXBM25Indexer Indexer(Loaded);
		for (FCVXBM25Doc& Doc : Contents.Docs)
		{
			Indexer.AddStored(MoveTemp(Doc));
		}
	}
	Loaded.FinishLoad(Contents.AverageDocLength);
	UE_LOG(LogCVXBM25, Log, TEXT("BM25: Loaded %d docs from %s"), Loaded.GetDocs().Num(), *Path);
	Swap(Loaded);
	return true;
}

void FCVXBM25Index::Clear()
{
	FCVXBM25Store Empty;
	Swap(Empty);
}

int32 FCVXBM25Index::GetDocCount() const
{
	const FReadScopeLock Scope(Lock);
	return Store.GetDocs().Num();
}

void FCVXBM25Index::Swap(FCVXBM25Store& Other)
{
	const FWriteScopeLock Scope(Lock);
	std::swap(Store, Other);
}
