#pragma once

#include "Core/CVXSettings.h"
#include "HAL/FileManager.h"
#include "Misc/DateTime.h"
#include "SemanticSearch/CVXBM25Index.h"
#include "Support/HostTypePrinting.h"
#include "Support/TempProject.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

/** A project, and the index empty before and behind a test. */
class FSearchFixture : public testing::Test
{
protected:
	FSearchFixture() { Index.Clear(); }
	~FSearchFixture() override
	{
		Index.Clear();
		UCVXSettings::Get()->BM25MaxIndexedDocs = MaxDocsBefore;
	}

	/** Writes a file that was last changed so many ticks after a certain day. @return its path. */
	FString Write(const std::string& Relative, const std::string& Bytes, int64 Age = 0) const
	{
		Project.Write(Relative, Bytes);
		const FString Path = Project.Path(Relative);
		EXPECT_TRUE(IFileManager::Get().SetTimeStamp(*Path, FDateTime(FDateTime(2026, 3, 1).GetTicks() + Age)));
		return Path;
	}

	/** The names of the files that have a word of the query. */
	std::set<std::string> Find(const TCHAR* Query) const
	{
		std::set<std::string> Names;
		for (const FCVXBM25Result& Hit : Index.Search(Query, 1000))
		{
			std::string Name;
			for (const TCHAR Char : Hit.FilePath.RightChop(Project.Dir().Len()))
			{
				Name += (char)Char;
			}
			Names.insert(Name);
		}
		return Names;
	}

	/** So many lines of a file, each with its number. */
	static std::string Lines(int Count, const std::string& Word)
	{
		std::string Text;
		for (int Line = 1; Line <= Count; ++Line)
		{
			Text += Word + " line" + std::to_string(Line) + "\n";
		}
		return Text;
	}

	/** Files without any of the words that a test looks for, so that these are no frequent terms. */
	TArray<FString> WriteOthers(int32 Count) const
	{
		TArray<FString> Paths;
		for (int32 File = 0; File < Count; ++File)
		{
			Paths.Add(Write("Other/File" + std::to_string(File) + ".h", "filler filler\n"));
		}
		return Paths;
	}

	using FNames = std::set<std::string>;

	FTempProject Project;
	FCVXBM25Index& Index = FCVXBM25Index::Get();
	const int32 MaxDocsBefore = UCVXSettings::Get()->BM25MaxIndexedDocs;
};
