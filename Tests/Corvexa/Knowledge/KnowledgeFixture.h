#pragma once

#include "Knowledge/CVXKnowledgeManager.h"
#include "Knowledge/CVXMultiLangKeywords.h"
#include "Misc/Paths.h"
#include "Support/HostTypePrinting.h"
#include "Support/TempProject.h"

#include <gtest/gtest.h>

/** A project with a read-only source "Shipped" and a writable one, which is the project's own. */
class FKnowledgeFixture : public testing::Test
{
protected:
	FKnowledgeFixture()
	{
		Manager.Reset();
		Manager.RegisterSource(TEXT("UE Engine"), FPaths::Combine(FPaths::ProjectDir(), TEXT("Shipped")), false);
		Manager.RegisterSource(TEXT("Project"), FCVXKnowledgeManager::GetProjectKnowledgeDir(), true);
	}
	~FKnowledgeFixture() override
	{
		Manager.Reset();
		FCVXMultiLangKeywords::Reset();
	}

	/** Writes the manifest of the read-only source, and a document for each file that it names. */
	void Ship(const std::string& Modules) { Project.Write("Shipped/manifest.json", "{\"modules\":[" + Modules + "]}"); }

	FTempProject Project;
	FCVXKnowledgeManager& Manager = FCVXKnowledgeManager::Get();
};
