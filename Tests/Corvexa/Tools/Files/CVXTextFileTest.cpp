#include "Tools/Files/CVXTextFile.h"

#include "Support/HostTypePrinting.h"
#include "Support/TempProject.h"

namespace
{
TEST(CVXTextFile, GivesBackEveryByteThatWasNotEdited)
{
	const FTempProject Project;
	const std::string Cases[] = {"", "plain\nlines\n", "no end", "\xEF\xBB\xBFmarked é\r\n",
		std::string("\xFF\xFEh\0i\0\n\0", 8), std::string("\xFE\xFF\0h\0i\0\n", 8), "caf\xE9 \xFF latin\r\nmixed\n",
		std::string("nul\0inside", 10), "\xF0\x9F\x98\x80\xEF\xBF\xBD"};
	for (const std::string& Bytes : Cases)
	{
		Project.Write("Source/t.txt", Bytes);
		const FString Path = Project.Path("Source/t.txt");
		FString Text;
		ECVXTextEncoding Encoding = ECVXTextEncoding::Utf8;
		ASSERT_TRUE(CVXTextFile::Load(Path, Text, Encoding));
		ASSERT_TRUE(CVXTextFile::Save(Path, Text, Encoding));
		EXPECT_EQ(Project.Read("Source/t.txt"), Bytes);
	}
}

TEST(CVXTextFile, RefusesACharacterThatTheFileHasNoRoomFor)
{
	const FTempProject Project;
	Project.Write("t.txt", "caf\xE9");
	FString Text;
	ECVXTextEncoding Encoding = ECVXTextEncoding::Utf8;
	ASSERT_TRUE(CVXTextFile::Load(Project.Path("t.txt"), Text, Encoding));
	EXPECT_EQ(Text, TEXT("café"));
	EXPECT_FALSE(CVXTextFile::Save(Project.Path("t.txt"), TEXT("中"), Encoding));
	EXPECT_EQ(Project.Read("t.txt"), "caf\xE9");
	EXPECT_FALSE(CVXTextFile::Load(Project.Path("none.txt"), Text, Encoding));
}
} // namespace
