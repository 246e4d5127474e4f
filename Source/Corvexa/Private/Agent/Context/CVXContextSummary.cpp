#include "Agent/Context/CVXContextSummary.h"

#include "Agent/Context/CVXCallArguments.h"
#include "Agent/Context/CVXContextManager.h"
#include "Algo/AnyOf.h"

namespace
{
constexpr int32 MaxRequestChars = 200;
constexpr int32 MaxActionChars = 150;
constexpr int32 MaxResultChars = 500;
constexpr int32 ListedTools = 10;
/** A summary over its limit keeps so many characters for each token of it. */
constexpr int32 KeptCharsPerToken = 3;

/** Tools whose results a summary keeps. */
constexpr const TCHAR* ImportantTools[] = {TEXT("delegate_to_agent"), TEXT("ask_followup_question"),
	TEXT("compile_and_check"), TEXT("execute_python"), TEXT("write_file"), TEXT("edit_file"), TEXT("apply_patch"),
	TEXT("attempt_completion"), TEXT("compile_blueprints"), TEXT("live_coding_compile")};

void AppendCut(FStringView Text, int32 MaxChars, FString& Out)
{
	Out += Text.Left(MaxChars);
	Out += Text.Len() > MaxChars ? TEXT("...") : TEXT("");
}

bool IsSpokenText(const FCVXContentBlock& Block)
{
	return Block.Type == TEXT("text") && !Block.Text.IsEmpty();
}
} // namespace

void FCVXContextSummary::FLastLines::Add(FStringView Text, int32 MaxChars)
{
	FString& Line = Lines.Num() < MaxLines ? Lines.AddDefaulted_GetRef() : Lines[Total % MaxLines];
	Line.Reset();
	AppendCut(Text, MaxChars, Line);
	++Total;
}

FString FCVXContextSummary::FLastLines::Format(const TCHAR* Heading, const TCHAR* EarlierNoun) const
{
	if (Lines.IsEmpty())
	{
		return FString();
	}
	FString Text = Heading;
	const int32 First = Total - Lines.Num();
	for (int32 Index = First; Index < Total; ++Index)
	{
		Text += FString::Printf(TEXT("- %s\n"), *Lines[Index % MaxLines]);
	}
	if (First > 0 && EarlierNoun)
	{
		Text += FString::Printf(TEXT("  (+ %d earlier %s)\n"), First, EarlierNoun);
	}
	return Text + TEXT("\n");
}

void FCVXContextSummary::Add(const FCVXMessage& Message)
{
	if (Message.Role == ECVXMessageRole::System)
	{
		return;
	}
	++MessageCount;
	for (const FCVXContentBlock& Block : Message.Content)
	{
		if (Message.Role == ECVXMessageRole::Tool)
		{
			AddResult(Block);
		}
		else if (Message.Role == ECVXMessageRole::Assistant)
		{
			AddCall(Block);
			if (IsSpokenText(Block))
			{
				Actions.Add(Block.Text, MaxActionChars);
			}
		}
		else if (IsSpokenText(Block))
		{
			Requests.Add(Block.Text, MaxRequestChars);
		}
	}
}

void FCVXContextSummary::AddCall(const FCVXContentBlock& Block)
{
	if (Block.Type != TEXT("tool_use"))
	{
		return;
	}
	++ToolCounts.FindOrAdd(Block.ToolName);
	++TotalCalls;
	if (!CVXCallArguments::IsFileWrite(Block.ToolName))
	{
		return;
	}
	const FString Path = CVXCallArguments::GetPath(Block.InputJson);
	const FString Line = Block.ToolName + TEXT(": ") + Path;
	bool bKnown = false;
	KnownFiles.Add(Line, &bKnown);
	if (!Path.IsEmpty() && !bKnown)
	{
		Files.Add(Line, Line.Len());
	}
}

void FCVXContextSummary::AddResult(const FCVXContentBlock& Block)
{
	if (Block.Type != TEXT("tool_result") || Block.ToolResultContent.IsEmpty() ||
		!Algo::AnyOf(ImportantTools, [&](const TCHAR* Name) { return Block.ToolName == Name; }))
	{
		return;
	}
	Results += TEXT("- ");
	if (Block.ToolName != TEXT("delegate_to_agent"))
	{
		Results += TEXT("[");
		Results += Block.ToolName;
		Results += TEXT("]: ");
	}
	AppendCut(Block.ToolResultContent, MaxResultChars, Results);
	Results += TEXT("\n");
}

FString FCVXContextSummary::FormatTools() const
{
	if (ToolCounts.IsEmpty())
	{
		return FString();
	}
	TArray<TPair<FString, int32>> Counts;
	for (const TPair<FString, int32>& Each : ToolCounts)
	{
		Counts.Add(Each);
	}
	Counts.StableSort([](const auto& A, const auto& B) { return A.Value > B.Value; });
	FString Text = FString::Printf(TEXT("Tools used (%d total calls):\n"), TotalCalls);
	for (int32 Index = 0; Index < FMath::Min(ListedTools, Counts.Num()); ++Index)
	{
		Text += FString::Printf(TEXT("- %s (x%d)\n"), *Counts[Index].Key, Counts[Index].Value);
	}
	return Text + TEXT("\n");
}

FString FCVXContextSummary::Write(int32 MaxTokens) const
{
	FString Text =
		TEXT("[CONTEXT SUMMARY — Earlier messages were truncated to fit the context window. Key points from the "
			 "truncated portion:]\n\n");
	Text += Requests.Format(TEXT("User requests:\n"), TEXT("requests"));
	Text += FormatTools();
	Text += Actions.Format(TEXT("Key assistant actions:\n"), nullptr);
	Text += Files.Format(TEXT("Files modified (DO NOT re-create or re-edit these):\n"), TEXT("operations"));
	if (!Results.IsEmpty())
	{
		Text += TEXT("Completed work results (DO NOT repeat this work):\n");
		Text += Results;
		Text += TEXT("\n");
	}
	Text += FString::Printf(TEXT("[End of summary — %d messages were truncated]"), MessageCount);
	if (FCVXContextManager::EstimateTokensForString(Text) > MaxTokens)
	{
		Text = Text.Left(MaxTokens * KeptCharsPerToken) + TEXT("\n[Summary truncated]");
	}
	return Text;
}

FString FCVXContextManager::SummarizeDroppedMessages(const TArray<FCVXMessage>& Dropped, int32 MaxTokens)
{
	FCVXContextSummary Summary;
	for (const FCVXMessage& Message : Dropped)
	{
		Summary.Add(Message);
	}
	return Summary.Write(MaxTokens);
}
