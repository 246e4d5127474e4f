#include "Agent/CVXApprovalManager.h"

#include "../Tools/ToolFixture.h"

namespace
{
class CVXApprovalManager : public FToolFixture
{
protected:
	static ECVXApprovalState Check(
		ECVXApprovalMode Mode, const TCHAR* Tool, const FString& Path = FString(), bool bReadOnly = false)
	{
		FCVXAgentProfile Profile;
		Profile.ApprovalMode = Mode;
		FCVXApprovalRequest Request;
		Request.ToolName = Tool;
		Request.FilePath = Path;
		Request.bIsReadOnly = bReadOnly;
		return FCVXApprovalManager::Get().CheckAutoRules(Request, Profile);
	}

	static FCVXAutoApprovalRule Rule(const TCHAR* Tool, const TCHAR* Glob, bool bApprove)
	{
		FCVXAutoApprovalRule Made;
		Made.ToolName = Tool;
		Made.PathGlob = Glob;
		Made.bAutoApprove = bApprove;
		return Made;
	}

	static constexpr ECVXApprovalMode Ask = ECVXApprovalMode::AlwaysAsk;
	static constexpr ECVXApprovalMode Reads = ECVXApprovalMode::AutoApproveReads;
	static constexpr ECVXApprovalMode Free = ECVXApprovalMode::FullyAutonomous;
	static constexpr ECVXApprovalState Approved = ECVXApprovalState::Approved;
	static constexpr ECVXApprovalState Denied = ECVXApprovalState::Denied;
	static constexpr ECVXApprovalState Pending = ECVXApprovalState::Pending;
};

TEST_F(CVXApprovalManager, DeniesWritesToProtectedPathsInEveryMode)
{
	Settings.ProtectedPaths = {TEXT("*.UASSET"), TEXT("Config/*")};
	Settings.AutoApprovalRules = {Rule(TEXT(""), TEXT(""), true)};
	EXPECT_EQ(Check(Free, TEXT("write_file"), TEXT("Content/A.uasset")), Denied);
	EXPECT_EQ(Check(Ask, TEXT("write_file"), TEXT("Source/../config/x.ini")), Denied);
	EXPECT_EQ(Check(Free, TEXT("write_file"), Project.Dir() + TEXT("Config/x.ini")), Denied);
	EXPECT_EQ(Check(Free, TEXT("read_file"), TEXT("Config/x.ini"), true), Approved);
	EXPECT_EQ(Check(Free, TEXT("write_file"), TEXT("../Config/x.uasset")), Approved) << "not in the project";
	EXPECT_EQ(Check(Free, TEXT("write_file"), TEXT("Source/x.cpp")), Approved);
}

TEST_F(CVXApprovalManager, AsksTheModeBeforeTheRulesAndTakesTheFirstRuleThatMatches)
{
	EXPECT_EQ(Check(Ask, TEXT("read_file"), TEXT(""), true), Pending);
	EXPECT_EQ(Check(Reads, TEXT("read_file"), TEXT(""), true), Approved);
	EXPECT_EQ(Check(Reads, TEXT("write_file")), Pending);
	Settings.AutoApprovalRules = {Rule(TEXT("read_file"), TEXT(""), false), Rule(TEXT("mcp__*"), TEXT(""), true),
		Rule(TEXT("write_file"), TEXT("Source/**/../*.cpp"), true), Rule(TEXT(""), TEXT("Saved\\*"), false)};
	EXPECT_EQ(Check(Reads, TEXT("read_file"), TEXT(""), true), Approved) << "the mode beats a rule";
	EXPECT_EQ(Check(Ask, TEXT("READ_FILE"), TEXT("x"), true), Denied);
	EXPECT_EQ(Check(Ask, TEXT("mcp__Server__tool")), Approved);
	EXPECT_EQ(Check(Ask, TEXT("write_file"), TEXT("source/a.CPP")), Approved);
	EXPECT_EQ(Check(Ask, TEXT("write_file"), TEXT("Source/a.h")), Pending);
	EXPECT_EQ(Check(Ask, TEXT("write_file"), TEXT("Saved/a.h")), Denied);
	EXPECT_EQ(Check(Ask, TEXT("execute_shell")), Denied) << "a rule about paths also takes a call without one";
}

TEST_F(CVXApprovalManager, KeepsAlwaysDecisionsInTheSettingsFile)
{
	Settings.AutoApprovalRules.Empty();
	FCVXApprovalManager& Manager = FCVXApprovalManager::Get();
	Manager.RecordUserDecision(TEXT("a"), TEXT(""), ECVXApprovalState::AlwaysAllow, false);
	Manager.RecordUserDecision(TEXT("a"), TEXT(""), ECVXApprovalState::Approved, true);
	Manager.RecordUserDecision(TEXT("a"), TEXT(""), ECVXApprovalState::Denied, true);
	EXPECT_TRUE(Settings.AutoApprovalRules.IsEmpty());
	Settings.MaxAgentTurns = 77;
	Manager.RecordUserDecision(TEXT("shell_x"), TEXT(""), ECVXApprovalState::AlwaysAllow, true);
	Manager.RecordUserDecision(TEXT("shell_x"), TEXT(""), ECVXApprovalState::AlwaysAllow, true);
	Manager.RecordUserDecision(TEXT("shell_y"), TEXT("Source/*"), ECVXApprovalState::AlwaysDeny, true);
	EXPECT_EQ(Settings.AutoApprovalRules.Num(), 3) << "two clicks are two rules";
	EXPECT_EQ(Check(Ask, TEXT("shell_x")), Approved);
	EXPECT_EQ(Check(Ask, TEXT("shell_y"), TEXT("Source/a")), Denied);
	const std::string File = Project.Read("Config/DefaultEditor.ini");
	EXPECT_NE(File.find("shell_x"), std::string::npos);
	EXPECT_NE(File.find("shell_y"), std::string::npos);
	EXPECT_EQ(File.find("MaxAgentTurns=77"), std::string::npos) << "only the rules are written";
}
} // namespace
