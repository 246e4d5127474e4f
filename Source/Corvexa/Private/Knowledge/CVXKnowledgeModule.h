#pragma once

#include "CoreMinimal.h"
#include "Logging/LogMacros.h"

DECLARE_LOG_CATEGORY_EXTERN(LogCVXKnowledge, Log, All);

/** A directory of knowledge: a manifest and the documents that it lists. */
struct FCVXKnowledgeSource
{
	/** Shown to the model and in logs. */
	FString Label;
	/** Absolute. */
	FString Directory;
	/** Whether modules may be saved into it and deleted from it. */
	bool bWritable = false;
};

/** A Markdown document, and what makes it worth showing. Lengths are in UTF-16 code units, tokens a quarter of them. */
struct FCVXKnowledgeModule
{
	/** Compares without regard to case. */
	FString Id;
	FString FilePath;
	/** May be empty. */
	FString Title;
	int32 Priority = 0;
	/** In lower case. */
	TArray<FString> Keywords;
	/** Tools that make it relevant when the model may call one of them. */
	TArray<FString> ToolTriggers;
	/** Agents that it is meant for. */
	TArray<FString> ProfileTriggers;
	FString Content;
	int32 EstimatedTokens = 0;
	FString SourceLabel;
	/** For a budget that has no room for the whole; may be empty. */
	FString Summary;
	/** 0 without a summary. */
	int32 SummaryTokens = 0;
};

/** One module that was chosen. */
struct FCVXKnowledgeSelection
{
	FString ModuleId;
	float Score = 0.0f;
	/** The manager's; good until its next load. */
	const FCVXKnowledgeModule* Module = nullptr;
	/** Whether the summary is to stand for the whole. */
	bool bUseSummary = false;
};
