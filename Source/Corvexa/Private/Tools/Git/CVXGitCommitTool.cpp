#include "Tools/Git/CVXGitCommitTool.h"

#include "Misc/Paths.h"
#include "Tools/CVXToolArguments.h"
#include "Tools/Git/CVXGitProcess.h"
#include "Tools/Shell/CVXCommandRun.h"

namespace
{
/** @return whether OutMessage can be committed; else OutError is the result. */
bool ReadMessage(const FJsonObject& Arguments, FString& OutMessage, FCVXToolExecutionResult& OutError)
{
	if (!ReadStringArgument(Arguments, TEXT("message"), OutMessage, OutError))
	{
		return false;
	}
	int32 Nul = INDEX_NONE;
	if (OutMessage.IsEmpty() || OutMessage.FindChar(u'\0', Nul))
	{
		OutError =
			FCVXToolExecutionResult::MakeError(OutMessage.IsEmpty() ? TEXT("Missing required field: message")
																	: TEXT("'message' can't contain NUL characters."));
		return false;
	}
	return true;
}

FCVXToolExecutionResult Commit(const FString& Message, bool bAddAll)
{
	const FString ProjectDir = FPaths::ConvertRelativePathToFull(FPaths::ProjectDir());
	FString Report;
	FString Error;
	if (bAddAll)
	{
		(void)RunGit(TEXT("add -A"), ProjectDir, Error);
		if (!Error.IsEmpty())
		{
			return FCVXToolExecutionResult::MakeError(TEXT("git add -A failed:\n") + Error);
		}
		Report = TEXT("git add -A: OK\n");
	}
	const FString Output = RunGit(TEXT("commit -m ") + QuoteArgument(Message), ProjectDir, Error);
	if (!Error.IsEmpty() && Output.IsEmpty())
	{
		return FCVXToolExecutionResult::MakeError(TEXT("git commit failed:\n") + Error);
	}
	return FCVXToolExecutionResult::MakeSuccess(Report + Output);
}
} // namespace

FString FCVXGitCommitTool::GetName() const
{
	return TEXT("git_commit");
}

FString FCVXGitCommitTool::GetDescription() const
{
	return TEXT("Creates a git commit with the given message. Requires user approval. Optionally stages all changes "
				"(git add -A) before committing. Use git_query to inspect staged/unstaged changes first.");
}

FString FCVXGitCommitTool::GetInputSchemaJson() const
{
	return TEXT(R"({"type":"object","properties":{)"
				R"("message":{"type":"string","description":"Commit message"},)"
				R"("add_all":{"type":"boolean",)"
				R"__("description":"Run git add -A before committing (default: false)"}},)__"
				R"("required":["message"]})");
}

FCVXToolExecutionResult FCVXGitCommitTool::Execute(const FString& ArgumentsJson, const FCVXAgentProfile&)
{
	FCVXToolExecutionResult Error;
	TSharedPtr<FJsonObject> Json;
	FString Message;
	if (!ParseToolArguments(ArgumentsJson, Json, Error) || !ReadMessage(*Json, Message, Error))
	{
		return Error;
	}
	return Commit(Message, GetBoolArgument(*Json, TEXT("add_all"), false));
}
