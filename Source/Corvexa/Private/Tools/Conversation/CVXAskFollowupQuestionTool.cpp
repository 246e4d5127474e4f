#include "Tools/Conversation/CVXAskFollowupQuestionTool.h"

#include "Algo/AnyOf.h"
#include "Tools/CVXToolArguments.h"

namespace
{
/** A text is a title; an object has both. @return an option without a title when it is neither. */
FCVXClarificationOption ReadOption(const TSharedPtr<FJsonValue>& Value)
{
	FCVXClarificationOption Option;
	const TSharedPtr<FJsonObject>* Object = nullptr;
	if (Value->Type == EJson::String)
	{
		Option.Title = Value->AsString();
	}
	else if (Value->TryGetObject(Object))
	{
		Option.Title = GetStringArgument(**Object, TEXT("title"));
		Option.Description = GetStringArgument(**Object, TEXT("description"));
	}
	return Option;
}

TArray<FCVXClarificationOption> ReadOptions(const FJsonObject& Holder)
{
	TArray<FCVXClarificationOption> Options;
	const TArray<TSharedPtr<FJsonValue>>* Values = nullptr;
	if (Holder.TryGetArrayField(TEXT("options"), Values))
	{
		for (const TSharedPtr<FJsonValue>& Value : *Values)
		{
			FCVXClarificationOption Option = ReadOption(Value);
			if (!Option.Title.IsEmpty())
			{
				Options.Add(MoveTemp(Option));
			}
		}
	}
	return Options;
}

/** Adds the question that the object holds, if it holds one. */
void AddQuestion(const FJsonObject& Holder, TArray<FCVXClarificationQuestion>& Out)
{
	const FString Question = GetStringArgument(Holder, TEXT("question"));
	if (!Question.IsEmpty())
	{
		Out.Add({Question, ReadOptions(Holder)});
	}
}

TArray<FCVXClarificationQuestion> ReadQuestions(const FJsonObject& Arguments)
{
	TArray<FCVXClarificationQuestion> Questions;
	const TArray<TSharedPtr<FJsonValue>>* Values = nullptr;
	if (Arguments.TryGetArrayField(TEXT("questions"), Values))
	{
		for (const TSharedPtr<FJsonValue>& Value : *Values)
		{
			const TSharedPtr<FJsonObject>* Object = nullptr;
			if (Value->TryGetObject(Object))
			{
				AddQuestion(**Object, Questions);
			}
		}
	}
	if (Questions.IsEmpty())
	{
		AddQuestion(Arguments, Questions);
	}
	return Questions;
}

FString JoinQuestions(const TArray<FCVXClarificationQuestion>& Questions)
{
	TArray<FString> Texts;
	for (const FCVXClarificationQuestion& Question : Questions)
	{
		Texts.Add(Question.Question);
	}
	return FString::Join(Texts, TEXT("\n"));
}
} // namespace

FString FCVXAskFollowupQuestionTool::GetName() const
{
	return TEXT("ask_followup_question");
}

FString FCVXAskFollowupQuestionTool::GetDescription() const
{
	return TEXT("Ask the user one or more questions and wait for the answers. Use it when something that you need is "
				"inaccessible, "
				"when you are unsure which approach is best, after repeated failures of the same kind, when the task "
				"is ambiguous, "
				"or when the user must choose between trade-offs. Don't use it for what you can find out with your own "
				"tools. ALWAYS "
				"provide concrete options with clear descriptions so the user can decide quickly.");
}

FString FCVXAskFollowupQuestionTool::GetInputSchemaJson() const
{
	return TEXT(
		R"({"type":"object","properties":{)"
		R"("question":{"type":"string",)"
		R"__("description":"Single question to ask the user (shorthand for questions with one entry)"},)__"
		R"__("options":{"type":"array","description":"Options for the single question (used with 'question' field)",)__"
		R"("items":{"type":"object","properties":{)"
		R"("title":{"type":"string","description":"Short option title"},)"
		R"("description":{"type":"string","description":"Brief explanation of this option"}},)"
		R"("required":["title"]}},)"
		R"("questions":{"type":"array","description":"Multiple questions, each with its own options. )"
		R"(Use this when you need to ask several things at once.",)"
		R"("items":{"type":"object","properties":{)"
		R"("question":{"type":"string","description":"The question text"},)"
		R"("options":{"type":"array","items":{"type":"object","properties":{)"
		R"("title":{"type":"string"},"description":{"type":"string"}},"required":["title"]}}},)"
		R"("required":["question"]}}}})");
}

FCVXToolExecutionResult FCVXAskFollowupQuestionTool::Execute(const FString& ArgumentsJson, const FCVXAgentProfile&)
{
	TSharedPtr<FJsonObject> Arguments;
	FCVXToolExecutionResult Outcome;
	if (!ParseToolArguments(ArgumentsJson, Arguments, Outcome))
	{
		return Outcome;
	}
	TArray<FCVXClarificationQuestion> Questions = ReadQuestions(*Arguments);
	if (Questions.IsEmpty())
	{
		return FCVXToolExecutionResult::MakeError(TEXT("No question provided. Specify 'question' or 'questions'."));
	}
	if (!Algo::AnyOf(Questions, [](const FCVXClarificationQuestion& Each) { return !Each.Options.IsEmpty(); }))
	{
		return FCVXToolExecutionResult::MakeSuccess(
			FString::Printf(TEXT("Question asked: %s"), *JoinQuestions(Questions)));
	}
	Outcome = FCVXToolExecutionResult::MakeSuccess(TEXT("Waiting for user selection..."));
	Outcome.bHasQuestions = true;
	Outcome.Questions = MoveTemp(Questions);
	return Outcome;
}
