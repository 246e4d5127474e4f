#include "Agent/Checkpoints/CVXCheckpointJson.h"

#include "Agent/Checkpoints/CVXCheckpointLog.h"
#include "Agent/Tasks/CVXTask.h"
#include "Core/CVXJsonObject.h"
#include "Misc/Guid.h"
#include "Policies/CondensedJsonPrintPolicy.h"
#include "Serialization/JsonWriter.h"

namespace
{
using FWriter = TJsonWriter<TCHAR, TCondensedJsonPrintPolicy<TCHAR>>;

/** Indexed by ECVXMessageRole. */
constexpr const TCHAR* RoleNames[] = {TEXT("system"), TEXT("user"), TEXT("assistant"), TEXT("tool")};

void WriteBlock(FWriter& Writer, const FCVXContentBlock& Block)
{
	Writer.WriteObjectStart();
	Writer.WriteValue(TEXT("type"), Block.Type);
	Writer.WriteValue(TEXT("text"), Block.Text);
	Writer.WriteValue(TEXT("tool_use_id"), Block.ToolUseId);
	Writer.WriteValue(TEXT("tool_name"), Block.ToolName);
	Writer.WriteValue(TEXT("input_json"), Block.InputJson);
	Writer.WriteValue(TEXT("tool_result_content"), Block.ToolResultContent);
	Writer.WriteValue(TEXT("is_error"), Block.bIsError);
	if (Block.Type == TEXT("image"))
	{
		Writer.WriteValue(TEXT("image_base64"), Block.ImageBase64);
		Writer.WriteValue(TEXT("image_media_type"), Block.ImageMediaType);
	}
	Writer.WriteObjectEnd();
}

void WriteMessage(FWriter& Writer, const FCVXMessage& Message)
{
	Writer.WriteObjectStart();
	Writer.WriteValue(TEXT("id"), Message.MessageId);
	Writer.WriteValue(TEXT("role"), RoleNames[static_cast<int32>(Message.Role)]);
	Writer.WriteArrayStart(TEXT("content"));
	for (const FCVXContentBlock& Block : Message.Content)
	{
		WriteBlock(Writer, Block);
	}
	Writer.WriteArrayEnd();
	if (!Message.AgentName.IsEmpty())
	{
		Writer.WriteValue(TEXT("agent_name"), Message.AgentName);
	}
	if (!Message.ReasoningContent.IsEmpty())
	{
		Writer.WriteValue(TEXT("reasoning_content"), Message.ReasoningContent);
	}
	Writer.WriteObjectEnd();
}

void WriteIdentity(FWriter& Writer, const FCVXTask& Task)
{
	Writer.WriteValue(TEXT("task_id"), Task.GetTaskId());
	Writer.WriteValue(TEXT("title"), Task.GetTitle());
	Writer.WriteValue(TEXT("task_description"), Task.GetTitle());
	Writer.WriteValue(TEXT("created_at"), Task.GetCreatedAt().ToIso8601());
	Writer.WriteValue(TEXT("last_modified"), FDateTime::UtcNow().ToIso8601());
	Writer.WriteValue(TEXT("agent_profile"), Task.GetAgentProfileName());
	Writer.WriteValue(TEXT("saved_at"), FDateTime::UtcNow().ToString());
	Writer.WriteValue(TEXT("parent_task_id"), Task.ParentTaskId);
	Writer.WriteValue(TEXT("nesting_depth"), Task.NestingDepth);
	Writer.WriteValue(TEXT("is_sub_task"), Task.bIsSubTask);
}

FCVXContentBlock ReadBlock(const FJsonObject& Object)
{
	FCVXContentBlock Block;
	Object.TryGetStringField(TEXT("type"), Block.Type);
	Object.TryGetStringField(TEXT("text"), Block.Text);
	Object.TryGetStringField(TEXT("tool_use_id"), Block.ToolUseId);
	Object.TryGetStringField(TEXT("tool_name"), Block.ToolName);
	Object.TryGetStringField(TEXT("input_json"), Block.InputJson);
	Object.TryGetStringField(TEXT("tool_result_content"), Block.ToolResultContent);
	Object.TryGetBoolField(TEXT("is_error"), Block.bIsError);
	Object.TryGetStringField(TEXT("image_base64"), Block.ImageBase64);
	Object.TryGetStringField(TEXT("image_media_type"), Block.ImageMediaType);
	return Block;
}

bool ReadRole(const FString& Name, ECVXMessageRole& OutRole)
{
	for (int32 Index = 0; Index < UE_ARRAY_COUNT(RoleNames); ++Index)
	{
		if (Name == RoleNames[Index])
		{
			OutRole = static_cast<ECVXMessageRole>(Index);
			return true;
		}
	}
	return false;
}

/** Whether a message says anything. */
bool ValidateMessage(const FCVXMessage& Message, int32 Index, const FString& Path)
{
	const bool bSpeaks = Message.Role == ECVXMessageRole::User || Message.Role == ECVXMessageRole::Assistant;
	if (bSpeaks && Message.Content.IsEmpty() && Message.ReasoningContent.IsEmpty())
	{
		UE_LOG(LogCVXCheckpoint, Warning, TEXT("H7: Empty content for %s message at index %d in %s"),
			RoleNames[static_cast<int32>(Message.Role)], Index, *Path);
		return false;
	}
	return true;
}

/** @return whether OutMessage is one that the history can take. */
bool ReadMessage(const FJsonObject& Object, int32 Index, const FString& Path, FCVXMessage& OutMessage)
{
	FString Role;
	Object.TryGetStringField(TEXT("role"), Role);
	if (!ReadRole(Role, OutMessage.Role))
	{
		UE_LOG(LogCVXCheckpoint, Warning, TEXT("H7: Unknown role '%s' at message %d in %s — skipping"), *Role, Index,
			*Path);
		return false;
	}
	const TArray<TSharedPtr<FJsonValue>>* Blocks = nullptr;
	if (Object.TryGetArrayField(TEXT("content"), Blocks))
	{
		for (const TSharedPtr<FJsonValue>& Value : *Blocks)
		{
			const TSharedPtr<FJsonObject>* Block = nullptr;
			if (Value->TryGetObject(Block))
			{
				OutMessage.Content.Add(ReadBlock(**Block));
			}
		}
	}
	Object.TryGetStringField(TEXT("agent_name"), OutMessage.AgentName);
	Object.TryGetStringField(TEXT("reasoning_content"), OutMessage.ReasoningContent);
	if (!Object.TryGetStringField(TEXT("id"), OutMessage.MessageId) || OutMessage.MessageId.IsEmpty())
	{
		OutMessage.MessageId = FGuid::NewGuid().ToString(EGuidFormats::Digits);
	}
	return ValidateMessage(OutMessage, Index, Path);
}

int32 ReadMessages(const TArray<TSharedPtr<FJsonValue>>& Values, const FString& Path, FCVXContextManager& Context)
{
	int32 Restored = 0;
	for (int32 Index = 0; Index < Values.Num(); ++Index)
	{
		const TSharedPtr<FJsonObject>* Object = nullptr;
		FCVXMessage Message;
		if (Values[Index]->TryGetObject(Object) && ReadMessage(**Object, Index, Path, Message))
		{
			Context.AddMessage(Message);
			++Restored;
		}
	}
	if (Restored < Values.Num())
	{
		UE_LOG(LogCVXCheckpoint, Warning, TEXT("H7: Restored %d messages, skipped %d invalid entries from %s"),
			Restored, Values.Num() - Restored, *Path);
	}
	return Restored;
}

void ReadIdentity(const FJsonObject& Object, FCVXTask& Task)
{
	FString Text;
	if (Object.TryGetStringField(TEXT("title"), Text) && !Text.IsEmpty())
	{
		Task.SetTitle(Text);
	}
	FDateTime CreatedAt;
	if (Object.TryGetStringField(TEXT("created_at"), Text) && FDateTime::ParseIso8601(*Text, CreatedAt))
	{
		Task.SetCreatedAt(CreatedAt);
	}
	if (Object.TryGetStringField(TEXT("agent_profile"), Text) && !Text.IsEmpty())
	{
		Task.SetAgentProfileName(Text);
	}
	Object.TryGetStringField(TEXT("parent_task_id"), Task.ParentTaskId);
	Object.TryGetNumberField(TEXT("nesting_depth"), Task.NestingDepth);
	Object.TryGetBoolField(TEXT("is_sub_task"), Task.bIsSubTask);
	if (Object.TryGetStringField(TEXT("todo_list"), Text))
	{
		Task.GetTodoList().UpdateFromJson(Text);
	}
}
} // namespace

FString CVXCheckpointJson::Write(const FCVXTask& Task)
{
	FString Json;
	FWriter Writer(Json);
	Writer.WriteObjectStart();
	WriteIdentity(Writer, Task);
	Writer.WriteArrayStart(TEXT("messages"));
	for (const FCVXMessage& Message : Task.GetAgentLoop()->GetContextManager().GetHistory())
	{
		WriteMessage(Writer, Message);
	}
	Writer.WriteArrayEnd();
	if (!Task.GetTodoList().GetItems().IsEmpty())
	{
		Writer.WriteValue(TEXT("todo_list"), Task.GetTodoList().ToJson());
	}
	Writer.WriteObjectEnd();
	Writer.Close();
	return Json;
}

bool CVXCheckpointJson::IsObject(const FString& Json)
{
	return CVXJsonObject::Parse(Json).IsValid();
}

bool CVXCheckpointJson::Read(const FString& Json, const FString& Path, FCVXTask& Task, int32& OutMessageCount)
{
	const TSharedPtr<FJsonObject> Object = CVXJsonObject::Parse(Json);
	Task.GetAgentLoop()->ClearHistory();
	const TArray<TSharedPtr<FJsonValue>>* Messages = nullptr;
	if (!Object || !Object->TryGetArrayField(TEXT("messages"), Messages))
	{
		UE_LOG(LogCVXCheckpoint, Error, TEXT("H7: Checkpoint missing 'messages' array: %s"), *Path);
		return false;
	}
	OutMessageCount = ReadMessages(*Messages, Path, Task.GetAgentLoop()->GetContextManager());
	ReadIdentity(*Object, Task);
	return true;
}
