#include "Tools/CVXToolRegistry.h"

#include "Serialization/JsonSerializer.h"
#include "ToolFixture.h"
#include "Tools/CVXBuiltinTools.h"
#include "Tools/CVXToolArguments.h"

namespace
{
class CVXToolRegistry : public FToolFixture
{
protected:
	static void Add(const TCHAR* Name, bool bReadOnly = false)
	{
		FFakeTool Tool(Name, [](const FString&) { return FCVXToolExecutionResult(); });
		(bReadOnly ? Tool.ReadOnly() : Tool).Register();
	}

	static FString Offered(const FCVXAgentProfile& Profile)
	{
		FString Names;
		for (const FCVXToolDescriptor& Tool : Registry().GetToolDescriptors(Profile))
		{
			Names += Tool.Name + TEXT(" ");
		}
		return Names;
	}

	static FCVXToolRegistry& Registry() { return FCVXToolRegistry::Get(); }
};

TEST_F(CVXToolRegistry, ListsToolsInOrderAndReusesAFreedPlace)
{
	Add(TEXT("one"));
	Add(TEXT("two"));
	Add(TEXT("three"));
	ICVXTool* const Two = Registry().FindTool(TEXT("TWO"));
	ASSERT_NE(Two, nullptr);
	Add(TEXT("Two"));
	EXPECT_NE(Registry().FindTool(TEXT("two")), Two) << "the second of a name replaces the first";
	EXPECT_EQ(Registry().GetAllTools().Num(), 3);
	const TSharedPtr<ICVXTool> Held = Registry().FindToolShared(TEXT("one"));
	Registry().UnregisterTool(TEXT("ONE"));
	Registry().UnregisterTool(TEXT("one"));
	EXPECT_EQ(Held->GetName(), TEXT("one")) << "who holds a tool keeps it";
	Add(TEXT("four"));
	EXPECT_EQ(Registry().GetAllTools()[0]->GetName(), TEXT("four"));
}

TEST_F(CVXToolRegistry, OffersWhatTheProfileAllows)
{
	Add(TEXT("read"), true);
	Add(TEXT("write"));
	Add(TEXT("look"), true);
	FCVXAgentProfile Profile;
	EXPECT_EQ(Offered(Profile), TEXT("read write look "));
	Profile.DeniedTools = {TEXT("READ")};
	EXPECT_EQ(Offered(Profile), TEXT("write look "));
	Profile.AllowedTools = {TEXT("Read"), TEXT("Write")};
	EXPECT_EQ(Offered(Profile), TEXT("write ")) << "denial wins";
	Profile.bReadOnly = true;
	EXPECT_EQ(Offered(Profile), TEXT(""));
}

TEST_F(CVXToolRegistry, LabelsACallByWhatItWorksOn)
{
	Add(TEXT("read_file"));
	const auto Label = [](const TCHAR* Name, const TCHAR* Arguments)
	{ return Registry().GetToolDisplayLabel(Name, Arguments); };
	EXPECT_EQ(
		Label(TEXT("read_file"), TEXT(R"({"command":"ls","path":"","file_path":"a/b"})")), TEXT("Read File: a/b"));
	EXPECT_EQ(Label(TEXT("read_file"), TEXT(R"({"path":["a"],"other":"b"})")), TEXT("Read File"));
	EXPECT_EQ(Label(TEXT("read_file"), TEXT("")), TEXT("Read File"));
	EXPECT_EQ(Label(TEXT("mcp__x_éa"), TEXT(R"({"path":"a"})")), TEXT("Mcp  X éa")) << "no such tool";
}

TEST_F(CVXToolRegistry, HasTheBuiltInToolsWithSchemasThatAreObjects)
{
	RegisterBuiltinTools();
	const TArray<ICVXTool*> Tools = Registry().GetAllTools();
	ASSERT_GE(Tools.Num(), 5);
	for (const ICVXTool* Tool : Tools)
	{
		TSharedPtr<FJsonObject> Schema;
		ASSERT_TRUE(FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(Tool->GetInputSchemaJson()), Schema));
		EXPECT_EQ(Schema->GetStringField(TEXT("type")), TEXT("object")) << TCHAR_TO_UTF8(*Tool->GetName());
		const TSharedPtr<FJsonObject>& Properties = Schema->GetObjectField(TEXT("properties"));
		TArray<FString> Required;
		(void)Schema->TryGetStringArrayField(TEXT("required"), Required);
		for (const FString& Name : Required)
		{
			EXPECT_TRUE(Properties->HasField(Name)) << TCHAR_TO_UTF8(*(Tool->GetName() + TEXT(".") + Name));
		}
		EXPECT_FALSE(Tool->GetDescription().IsEmpty());
	}
}
} // namespace
