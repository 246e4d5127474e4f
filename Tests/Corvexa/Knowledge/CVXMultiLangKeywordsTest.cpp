#include "Corvexa/Knowledge/KnowledgeFixture.h"
#include "Support/LogCapture.h"

namespace
{
class CVXMultiLangKeywordsTest : public FKnowledgeFixture
{
protected:
	void Load()
	{
		FCVXMultiLangKeywords::Reset();
		FCVXMultiLangKeywords::LoadTranslations(FPaths::ProjectDir());
	}
	static FString Translate(const TArray<FString>& Words)
	{
		return FString::Join(FCVXMultiLangKeywords::TranslateKeywords(Words), TEXT(" "));
	}
};

TEST_F(CVXMultiLangKeywordsTest, TheBuiltInDictionaryKnowsShortFormsStemsAndIdeographs)
{
	EXPECT_EQ(Translate({TEXT("bp")}), TEXT("")) << "nothing is loaded";
	Load();
	EXPECT_EQ(Translate({TEXT("BP")}), TEXT("blueprint"));
	EXPECT_EQ(Translate({TEXT("bp"), TEXT("Blueprint")}), TEXT(""));
	EXPECT_EQ(Translate({TEXT("hud"), TEXT("gui"), TEXT("ПРОЕКТАМИ"), TEXT("材质")}), TEXT("widget project material"));
	EXPECT_EQ(Translate({TEXT("door")}), TEXT(""));
	EXPECT_TRUE(FCVXMultiLangKeywords::ContainsCJK(TEXT("a 한")));
	EXPECT_FALSE(FCVXMultiLangKeywords::ContainsCJK(TEXT("дверь é")));
}

TEST_F(CVXMultiLangKeywordsTest, FilesReplaceTheBuiltInDictionaryAsSoonAsOneGivesAnything)
{
	Project.Write("translations/a.json", R"({"mappings":[]})");
	Project.Write("translations/b.json", "{");
	FLogCapture Log;
	Load();
	EXPECT_EQ(Translate({TEXT("bp")}), TEXT("blueprint"));
	EXPECT_TRUE(Log.Contains(TEXT("Failed to parse translation JSON: ")));
	EXPECT_TRUE(Log.Contains(TEXT("Using built-in fallback dictionary (22 exact + 25 prefix entries)")));

	Project.Write("translations/a.json", R"({"mappings":[{"term":"Puerta","key":"Door"},{"term":"puerta","key":"gate"},
		{"term":"puert","key":"opening","prefix":true},{"term":"","key":"x"},7,{"term":"puerta","key":"door"}]})");
	Load();
	EXPECT_EQ(Translate({TEXT("bp")}), TEXT(""));
	EXPECT_EQ(Translate({TEXT("puerta")}), TEXT("door gate")) << "a whole word isn't tried against stems";
	EXPECT_EQ(Translate({TEXT("Puertas")}), TEXT("opening"));
	EXPECT_TRUE(Log.Contains(TEXT("Loaded 3 keyword mappings from 1 translation files")));
	Project.Write("translations/a.json", R"({"mappings":[{"term":"bp","key":"other"}]})");
	FCVXMultiLangKeywords::LoadTranslations(FPaths::ProjectDir());
	EXPECT_EQ(Translate({TEXT("puerta")}), TEXT("door gate")) << "it loads once";
}
} // namespace
