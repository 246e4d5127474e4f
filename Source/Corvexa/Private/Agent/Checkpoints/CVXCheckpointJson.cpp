#include "Agent/Checkpoints/CVXCheckpointJson.h"

#include "Agent/Checkpoints/CVXCheckpointLog.h"
#include "Agent/Tasks/CVXTask.h"
#include "Core/CVXJsonMembers.h"
#include "Misc/Guid.h"
#include "Misc/Optional.h"
#include "Policies/CondensedJsonPrintPolicy.h"
#include "Serialization/JsonWriter.h"

namespace
{
using FWriter = TJsonWriter<TCHAR, TCondensedJsonPrintPolicy<TCHAR>>;

/** Indexed by ECVXMessageRole. */
constexpr const TCHAR* RoleNames[] = {TEXT("system"), TEXT("user"), TEXT("assistant"), TEXT("tool")};

struct FBlockText
{
	const TCHAR* Name;
	FString FCVXContentBlock::*Field;
};

/** The texts of every block, in the order written. */
constexpr FBlockText BlockTexts[] = {
	{TEXT("type"), &FCVXContentBlock::Type},
	{TEXT("text"), &FCVXContentBlock::Text},
	{TEXT("tool_use_id"), &FCVXContentBlock::ToolUseId},
	{TEXT("tool_name"), &FCVXContentBlock::ToolName},
	{TEXT("input_json"), &FCVXContentBlock::InputJson},
	{TEXT("tool_result_content"), &FCVXContentBlock::ToolResultContent},
};
/** Behind them, those of an image. */
constexpr FBlockText ImageTexts[] = {
	{TEXT("image_base64"), &FCVXContentBlock::ImageBase64},
	{TEXT("image_media_type"), &FCVXContentBlock::ImageMediaType},
};

void WriteTexts(FWriter& Writer, const FCVXContentBlock& Block, TArrayView<const FBlockText> Texts)
{
	for (const FBlockText& Text : Texts)
	{
		Writer.WriteValue(Text.Name, Block.*Text.Field);
	}
}

void WriteBlock(FWriter& Writer, const FCVXContentBlock& Block)
{
	Writer.WriteObjectStart();
	WriteTexts(Writer, Block, BlockTexts);
	Writer.WriteValue(TEXT("is_error"), Block.bIsError);
	if (Block.Type == TEXT("image"))
	{
		WriteTexts(Writer, Block, ImageTexts);
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

/** One element of "messages", before it is known whether it can be used. */
struct FStoredMessage
{
	FString Role;
	FCVXMessage Message;
	bool bIsObject = false;
};

/** What a text holds. */
struct FStoredTask
{
	bool bHasMessages = false;
	TArray<FStoredMessage> Messages;
	FString Title;
	FString CreatedAt;
	FString AgentProfile;
	FString ParentTaskId;
	int32 NestingDepth = 0;
	bool bIsSubTask = false;
	TOptional<FString> TodoList;
};

bool ReadBlock(FCVXJsonCursor& Cursor, FCVXContentBlock& OutBlock)
{
	FCVXJsonMembers Reader(Cursor);
	return Reader.Read(
		[&]
		{
			for (const FBlockText& Text : BlockTexts)
			{
				Reader.Text(Text.Name, OutBlock.*Text.Field);
			}
			for (const FBlockText& Text : ImageTexts)
			{
				Reader.Text(Text.Name, OutBlock.*Text.Field);
			}
			Reader.Bool(TEXT("is_error"), OutBlock.bIsError);
		});
}

bool ReadMessage(FCVXJsonCursor& Cursor, FStoredMessage& OutStored)
{
	OutStored.bIsObject = Cursor.IsAtObject();
	if (!OutStored.bIsObject)
	{
		return Cursor.SkipValue();
	}
	FCVXMessage& Message = OutStored.Message;
	FCVXJsonMembers Reader(Cursor);
	return Reader.Read(
		[&]
		{
			Reader.Text(TEXT("id"), Message.MessageId);
			Reader.Text(TEXT("role"), OutStored.Role);
			Reader.Text(TEXT("agent_name"), Message.AgentName);
			Reader.Text(TEXT("reasoning_content"), Message.ReasoningContent);
			Reader.Array(TEXT("content"),
				[&] {
					return Cursor.IsAtObject() ? ReadBlock(Cursor, Message.Content.AddDefaulted_GetRef())
											   : Cursor.SkipValue();
				});
		});
}

/** @return false when the text is no JSON object. */
bool ReadStoredTask(const FString& Json, FStoredTask& Out)
{
	FCVXJsonCursor Cursor(Json);
	FCVXJsonMembers Reader(Cursor);
	const bool bRead = Reader.Read(
		[&]
		{
			Reader.Text(TEXT("title"), Out.Title);
			Reader.Text(TEXT("created_at"), Out.CreatedAt);
			Reader.Text(TEXT("agent_profile"), Out.AgentProfile);
			Reader.Text(TEXT("parent_task_id"), Out.ParentTaskId);
			Reader.Text(TEXT("todo_list"), Out.TodoList);
			Reader.Integer(TEXT("nesting_depth"), Out.NestingDepth);
			Reader.Bool(TEXT("is_sub_task"), Out.bIsSubTask);
			if (Reader.Array(TEXT("messages"), [&] { return ReadMessage(Cursor, Out.Messages.AddDefaulted_GetRef()); }))
			{
				Out.bHasMessages = true;
			}
		});
	return bRead && Cursor.IsAtEnd();
}

bool FindRole(const FString& Name, ECVXMessageRole& OutRole)
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

/** @return whether the message is one that the history can take. */
bool Accept(FStoredMessage& Stored, int32 Index, const FString& Path)
{
	if (!Stored.bIsObject)
	{
		return false;
	}
	if (!FindRole(Stored.Role, Stored.Message.Role))
	{
		UE_LOG(LogCVXCheckpoint, Warning, TEXT("H7: Unknown role '%s' at message %d in %s — skipping"), *Stored.Role,
			Index, *Path);
		return false;
	}
	if (Stored.Message.MessageId.IsEmpty())
	{
		Stored.Message.MessageId = FGuid::NewGuid().ToString(EGuidFormats::Digits);
	}
	return ValidateMessage(Stored.Message, Index, Path);
}

/** Gives up the room to grow that reading has made: what comes back mostly stays as it is for the whole run. */
void Trim(FCVXMessage& Message)
{
	Message.Content.Shrink();
	Message.ReasoningContent.Shrink();
	for (FCVXContentBlock& Block : Message.Content)
	{
		for (const FBlockText& Text : BlockTexts)
		{
			(Block.*Text.Field).Shrink();
		}
		Block.ImageBase64.Shrink();
	}
}

int32 RestoreMessages(TArray<FStoredMessage>& Messages, const FString& Path, FCVXContextManager& Context)
{
	int32 Restored = 0;
	for (int32 Index = 0; Index < Messages.Num(); ++Index)
	{
		if (Accept(Messages[Index], Index, Path))
		{
			Trim(Messages[Index].Message);
			Context.AddMessage(MoveTemp(Messages[Index].Message));
			++Restored;
		}
	}
	if (Restored < Messages.Num())
	{
		UE_LOG(LogCVXCheckpoint, Warning, TEXT("H7: Restored %d messages, skipped %d invalid entries from %s"),
			Restored, Messages.Num() - Restored, *Path);
	}
	return Restored;
}

void RestoreIdentity(const FStoredTask& Stored, FCVXTask& Task)
{
	if (!Stored.Title.IsEmpty())
	{
		Task.SetTitle(Stored.Title);
	}
	FDateTime CreatedAt;
	if (FDateTime::ParseIso8601(*Stored.CreatedAt, CreatedAt))
	{
		Task.SetCreatedAt(CreatedAt);
	}
	if (!Stored.AgentProfile.IsEmpty())
	{
		Task.SetAgentProfileName(Stored.AgentProfile);
	}
	Task.ParentTaskId = Stored.ParentTaskId;
	Task.NestingDepth = Stored.NestingDepth;
	Task.bIsSubTask = Stored.bIsSubTask;
	if (Stored.TodoList.IsSet())
	{
		Task.GetTodoList().UpdateFromJson(*Stored.TodoList);
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

CVXCheckpointJson::EReadResult CVXCheckpointJson::Read(
	const FString& Json, const FString& Path, FCVXTask& Task, int32& OutMessageCount)
{
	FStoredTask Stored;
	Stored.ParentTaskId = Task.ParentTaskId;
	Stored.NestingDepth = Task.NestingDepth;
	Stored.bIsSubTask = Task.bIsSubTask;
	if (!ReadStoredTask(Json, Stored))
	{
		return EReadResult::NoObject;
	}
	Task.GetAgentLoop()->ClearHistory();
	if (!Stored.bHasMessages)
	{
		UE_LOG(LogCVXCheckpoint, Error, TEXT("H7: Checkpoint missing 'messages' array: %s"), *Path);
		return EReadResult::NoMessages;
	}
	OutMessageCount = RestoreMessages(Stored.Messages, Path, Task.GetAgentLoop()->GetContextManager());
	RestoreIdentity(Stored, Task);
	return EReadResult::Done;
}
