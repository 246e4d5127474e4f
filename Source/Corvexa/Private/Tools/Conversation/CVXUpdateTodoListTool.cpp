#include "Tools/Conversation/CVXUpdateTodoListTool.h"

#include "Agent/Tasks/CVXTaskManager.h"
#include "HAL/PlatformTime.h"
#include "Serialization/JsonSerializer.h"
#include "Serialization/JsonWriter.h"
#include "Tools/CVXToolArguments.h"

namespace
{
/** Calls closer than the second cost turns; closer than the first they belong to one batch. Seconds. */
constexpr double MinWarnedSeconds = 0.01;
constexpr double MaxWarnedSeconds = 90.0;

/** @return the seconds since the task's last call, counted from the process's start for the first one. */
double NoteCall(const FString& TaskId)
{
	static TMap<FString, double> LastCalls;
	double& Last = LastCalls.FindOrAdd(TaskId, 0.0);
	const double Now = FPlatformTime::Seconds();
	const double Elapsed = Now - Last;
	Last = Now;
	return Elapsed;
}
} // namespace

FString FCVXUpdateTodoListTool::GetName() const
{
	return TEXT("update_todo_list");
}

FString FCVXUpdateTodoListTool::GetDescription() const
{
	return TEXT(
		"Updates the structured TODO list for the current task. Call ONCE at the start to establish the plan, and "
		"ONCE after finishing a stage. Do NOT call between consecutive execute_python calls — each call costs a full "
		"turn. Batch your todo updates: complete a stage first, then update the list.");
}

FString FCVXUpdateTodoListTool::GetInputSchemaJson() const
{
	return TEXT(
		R"({"type":"object","properties":{)"
		R"__("todos":{"type":"array","description":"Complete replacement list of TODO items (replaces the existing list)",)__"
		R"("items":{"type":"object","properties":{)"
		R"__("id":{"type":"string","description":"Unique identifier for this item (e.g. 1 2 task-a)"},)__"
		R"("content":{"type":"string","description":"Human-readable description of the task"},)"
		R"("status":{"type":"string","enum":["pending","in_progress","completed","cancelled"],)"
		R"("description":"Current status of this item"}},)"
		R"("required":["id","content","status"]}}},)"
		R"("required":["todos"]})");
}

FCVXToolExecutionResult FCVXUpdateTodoListTool::Execute(const FString& ArgumentsJson, const FCVXAgentProfile&)
{
	TSharedPtr<FJsonObject> Arguments;
	FCVXToolExecutionResult Error;
	if (!ParseToolArguments(ArgumentsJson, Arguments, Error))
	{
		return Error;
	}
	const TArray<TSharedPtr<FJsonValue>>* Todos = nullptr;
	if (!Arguments->TryGetArrayField(TEXT("todos"), Todos))
	{
		return FCVXToolExecutionResult::MakeError(TEXT("Missing required field: todos"));
	}
	FString Json;
	FJsonSerializer::Serialize(*Todos, TJsonWriterFactory<>::Create(&Json));
	const TSharedPtr<FCVXTask> Task = FCVXTaskManager::Get().GetActiveTask();
	if (!Task)
	{
		return FCVXToolExecutionResult::MakeError(TEXT("No active task to update TODO list for."));
	}
	FCVXTodoList& List = Task->GetTodoList();
	List.UpdateFromJson(Json);
	const double Elapsed = NoteCall(Task->GetTaskId());
	if (Elapsed > MinWarnedSeconds && Elapsed < MaxWarnedSeconds)
	{
		return FCVXToolExecutionResult::MakeSuccess(
			FString::Printf(TEXT("WARNING: You called update_todo_list again after only %.0f seconds. Each call costs "
								 "a full turn. Do NOT "
								 "update todos between consecutive tool calls — batch updates after completing a "
								 "stage. Continue working."),
				Elapsed));
	}
	return FCVXToolExecutionResult::MakeSuccess(
		FString::Printf(TEXT("TODO list updated: %d pending, %d in-progress, %d completed, %d cancelled."),
			List.CountItems(ECVXTodoStatus::Pending), List.CountItems(ECVXTodoStatus::InProgress),
			List.CountItems(ECVXTodoStatus::Completed), List.CountItems(ECVXTodoStatus::Cancelled)));
}
