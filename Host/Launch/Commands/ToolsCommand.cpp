#include "Launch/Commands/ToolsCommand.h"

#include "Core/CVXSettings.h"
#include "Launch/Commands/ExitStatus.h"
#include "Launch/Commands/LaunchCommand.h"
#include "Launch/Options/LaunchOptions.h"
#include "Launch/Session/LaunchSession.h"
#include "Launch/Terminal/TerminalOut.h"
#include "Policies/CondensedJsonPrintPolicy.h"
#include "Serialization/JsonWriter.h"
#include "Tools/CVXToolRegistry.h"

#include <unistd.h>

namespace
{
constexpr int32 NameColumn = 26;
constexpr int32 FlagsColumn = 36;
/** The first sentence of a description, cut to this. */
constexpr int32 MaxSummary = 90;

/** "read-only", "destructive" and "background", separated by commas. */
FString ListFlags(const ICVXTool& Tool)
{
	TArray<FString> Flags;
	if (Tool.IsReadOnly())
	{
		Flags.Add(TEXT("read-only"));
	}
	if (Tool.IsDestructive())
	{
		Flags.Add(TEXT("destructive"));
	}
	if (Tool.IsThreadSafe())
	{
		Flags.Add(TEXT("background"));
	}
	return FString::Join(Flags, TEXT(", "));
}

FString Summarise(const FString& Description)
{
	FString Line = Description;
	int32 End = INDEX_NONE;
	if (Line.FindChar(TEXT('\n'), End))
	{
		Line.LeftInline(End);
	}
	End = Line.Find(TEXT(". "));
	if (End != INDEX_NONE)
	{
		Line.LeftInline(End + 1);
	}
	return Line.Len() > MaxSummary ? Line.Left(MaxSummary - 3) + TEXT("...") : Line;
}

FString MakeRow(const ICVXTool& Tool)
{
	return Tool.GetName().RightPad(NameColumn) + ListFlags(Tool).RightPad(FlagsColumn) +
		Summarise(Tool.GetDescription()) + TEXT("\n");
}

/** One line; the schema is a text in it, as it goes to the model. */
FString MakeJson(const ICVXTool& Tool)
{
	FString Json;
	TJsonWriter<TCHAR, TCondensedJsonPrintPolicy<TCHAR>> Writer(Json);
	Writer.WriteObjectStart();
	Writer.WriteValue(TEXT("name"), Tool.GetName());
	Writer.WriteValue(TEXT("read_only"), Tool.IsReadOnly());
	Writer.WriteValue(TEXT("destructive"), Tool.IsDestructive());
	Writer.WriteValue(TEXT("background"), Tool.IsThreadSafe());
	Writer.WriteValue(TEXT("description"), Tool.GetDescription());
	Writer.WriteRawJSONValue(TEXT("input_schema"), Tool.GetInputSchemaJson());
	Writer.WriteObjectEnd();
	Writer.Close();
	return Json + TEXT("\n");
}
} // namespace

int RunToolsCommand(const FLaunchOptions& Options)
{
	if (!Options.Words.IsEmpty())
	{
		return ReportUsageError(TEXT("'tools' takes no words; 'corvexa tool NAME' runs one"));
	}
	FLaunchSession Session;
	const FLaunchSession::FStart Started = Session.Start(Options, std::chrono::milliseconds(0));
	if (!Started.bStarted)
	{
		return ReportUsageError(Started.Error);
	}
	const UCVXSettings& Settings = *UCVXSettings::Get();
	const FCVXAgentProfile* Agent = Settings.FindAgentProfile(Settings.ActiveAgentProfile);
	if (!Agent)
	{
		return ReportUsageError(TEXT("the settings hold no agent"));
	}
	FString Text;
	for (const FCVXToolDescriptor& Descriptor : FCVXToolRegistry::Get().GetToolDescriptors(*Agent))
	{
		const TSharedPtr<ICVXTool> Tool = FCVXToolRegistry::Get().FindToolShared(Descriptor.Name);
		Text += !Tool ? FString() : Options.bJson ? MakeJson(*Tool) : MakeRow(*Tool);
	}
	return WriteToDescriptor(STDOUT_FILENO, Text) ? ExitComplete : ExitError;
}
