#include "Dom/JsonValue.h"

#include "Dom/JsonObject.h"
#include "Serialization/JsonSerializer.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <optional>

namespace
{
TSharedPtr<FJsonValue> Read(const TCHAR* Text)
{
	TSharedPtr<FJsonValue> Value;
	EXPECT_TRUE(FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(Text), Value));
	return Value;
}

template <typename T>
std::optional<T> Number(const TCHAR* Text)
{
	T Result = 0;
	return Read(Text)->TryGetNumber(Result) ? std::optional<T>(Result) : std::nullopt;
}

std::optional<bool> Boolean(const TCHAR* Text)
{
	bool bResult = false;
	return Read(Text)->TryGetBool(bResult) ? std::optional<bool>(bResult) : std::nullopt;
}
}

TEST(JsonValue, NumbersFitTheirTargetOrFail)
{
	EXPECT_EQ(127, Number<int8>(TEXT("127")));
	EXPECT_EQ(std::nullopt, Number<int8>(TEXT("128")));
	EXPECT_EQ(std::nullopt, Number<uint8>(TEXT("-1")));
	EXPECT_EQ(255, Number<uint8>(TEXT("254.5")));
	EXPECT_EQ(-3, Number<int32>(TEXT("-2.5"))) << "halves go away from zero";
	EXPECT_EQ(2, Number<int32>(TEXT("2.4999")));
	EXPECT_EQ(std::nullopt, Number<int32>(TEXT("2147483648")));
	EXPECT_EQ(std::nullopt, Number<int32>(TEXT("1e999")));
	EXPECT_EQ(9007199254740993, Number<int64>(TEXT("9007199254740993"))) << "no detour over a double";
	EXPECT_EQ(MIN_int64, Number<int64>(TEXT("-9223372036854775808")));
	EXPECT_EQ(std::nullopt, Number<int64>(TEXT("9223372036854775808")));
	EXPECT_EQ(std::nullopt, Number<int64>(TEXT("9223372036854775808.0")));
	EXPECT_EQ(MAX_uint64, Number<uint64>(TEXT("18446744073709551615")));
	EXPECT_EQ(std::nullopt, Number<uint64>(TEXT("18446744073709551616")));
	EXPECT_EQ(1e300, Number<double>(TEXT("1e300")));
	EXPECT_EQ(1.8446744073709552e19, Number<double>(TEXT("18446744073709551616")));
	EXPECT_EQ(std::nullopt, Number<double>(TEXT("1e999")));
	EXPECT_EQ(std::nullopt, Number<float>(TEXT("1e300")));
	EXPECT_EQ(0.5f, Number<float>(TEXT("0.5")));
}

TEST(JsonValue, StringsAndBooleansReadAsNumbersAndBack)
{
	EXPECT_EQ(12, Number<int32>(TEXT("\"12\"")));
	EXPECT_EQ(-1.5, Number<double>(TEXT("\"-1.5\"")));
	EXPECT_EQ(std::nullopt, Number<double>(TEXT("\"12 apples\"")));
	EXPECT_EQ(std::nullopt, Number<double>(TEXT("\"\"")));
	EXPECT_EQ(1, Number<int32>(TEXT("true")));
	EXPECT_EQ(std::nullopt, Number<int32>(TEXT("null")));
	EXPECT_EQ(std::nullopt, Number<int32>(TEXT("[1]")));

	EXPECT_EQ(true, Boolean(TEXT("\"True\"")));
	EXPECT_EQ(false, Boolean(TEXT("\"no\"")));
	EXPECT_EQ(true, Boolean(TEXT("-2")));
	EXPECT_EQ(false, Boolean(TEXT("0.0")));
	EXPECT_EQ(std::nullopt, Boolean(TEXT("{}")));

	EXPECT_EQ(TEXT("1e999"), Read(TEXT("1e999"))->AsString());
	EXPECT_EQ(TEXT("18446744073709551615"), Read(TEXT("18446744073709551615"))->AsString());
	EXPECT_EQ(TEXT("0.25"), Read(TEXT("0.250"))->AsString());
	EXPECT_EQ(TEXT("true"), Read(TEXT("true"))->AsString());
	FString Kept = TEXT("kept");
	EXPECT_FALSE(Read(TEXT("null"))->TryGetString(Kept));
	EXPECT_FALSE(Read(TEXT("[]"))->TryGetString(Kept));
	EXPECT_EQ(TEXT("kept"), Kept);
}

TEST(JsonValue, AMissingFormIsEmpty)
{
	const TSharedPtr<FJsonValue> Value = Read(TEXT("7"));
	EXPECT_EQ(0, Value->AsArray().Num());
	ASSERT_TRUE(Value->AsObject().IsValid());
	Value->AsObject()->SetBoolField(TEXT("left behind"), true);
	EXPECT_EQ(0, Value->AsObject()->Values.Num()) << "what was put into one stays out of the next";
	EXPECT_EQ(TEXT(""), Read(TEXT("null"))->AsString());
	EXPECT_TRUE(Read(TEXT("null"))->IsNull());
	EXPECT_EQ(EJson::Null, MakeShared<FJsonValueObject>(TSharedPtr<FJsonObject>())->Type);
}

TEST(JsonValue, FieldsReadByFormAndLeaveTheArgumentAloneOtherwise)
{
	const TSharedPtr<FJsonObject> Object =
		Read(TEXT("{\"n\":3,\"s\":\"text\",\"b\":true,\"a\":[\"x\",\"y\"],\"m\":[{}],\"o\":{\"i\":1},\"z\":null}"))
			->AsObject();
	int32 Integer = 9;
	uint64 Big = 9;
	FString String = TEXT("kept");
	bool bBoolean = false;
	const TArray<TSharedPtr<FJsonValue>>* Array = nullptr;
	const TSharedPtr<FJsonObject>* Inner = nullptr;
	TArray<FString> Strings = {TEXT("kept")};
	EXPECT_TRUE(Object->TryGetNumberField(TEXT("N"), Integer) && Integer == 3);
	EXPECT_TRUE(Object->TryGetNumberField(TEXT("n"), Big) && Big == 3);
	EXPECT_FALSE(Object->TryGetStringField(TEXT("a"), String) || Object->TryGetStringField(TEXT("none"), String));
	EXPECT_TRUE(String.Equals(TEXT("kept")));
	EXPECT_TRUE(Object->TryGetStringField(TEXT("s"), String) && String.Equals(TEXT("text")));
	EXPECT_TRUE(Object->TryGetBoolField(TEXT("b"), bBoolean) && bBoolean);
	EXPECT_TRUE(Object->TryGetArrayField(TEXT("a"), Array) && Array->Num() == 2);
	EXPECT_FALSE(Object->TryGetArrayField(TEXT("o"), Array));
	EXPECT_TRUE(Object->TryGetObjectField(TEXT("o"), Inner) && (*Inner)->GetIntegerField(TEXT("i")) == 1);
	EXPECT_FALSE(Object->TryGetObjectField(TEXT("z"), Inner));
	EXPECT_FALSE(Object->TryGetStringArrayField(TEXT("m"), Strings));
	EXPECT_EQ(1, Strings.Num());
	EXPECT_TRUE(Object->TryGetStringArrayField(TEXT("a"), Strings) && Strings.Num() == 2);

	EXPECT_TRUE(Object->HasTypedField<EJson::Null>(TEXT("z")));
	EXPECT_TRUE(Object->HasTypedField<EJson::None>(TEXT("z")));
	EXPECT_FALSE(Object->HasTypedField<EJson::Array>(TEXT("o")));
	EXPECT_FALSE(Object->HasField(TEXT("none")));
	EXPECT_EQ(TEXT(""), Object->GetStringField(TEXT("none")));
	EXPECT_EQ(0, Object->GetArrayField(TEXT("none")).Num());
	EXPECT_EQ(0, Object->GetObjectField(TEXT("none"))->Values.Num());
}

TEST(JsonValue, ACopySharesNothingAndIsEqual)
{
	const TCHAR* Text = TEXT("{\"n\":1e999,\"i\":-5,\"u\":18446744073709551615,\"d\":0.5,\"b\":true,\"z\":null,"
							 "\"s\":\"\\ud83d\",\"a\":[1,[{}]],\"o\":{\"k\":\"v\"}}");
	const TSharedPtr<FJsonValue> Value = Read(Text);
	const TSharedPtr<FJsonValue> Copy = FJsonValue::Duplicate(Value);
	EXPECT_TRUE(FJsonValue::CompareEqual(*Value, *Copy));
	Value->AsObject()->GetObjectField(TEXT("o"))->SetStringField(TEXT("k"), TEXT("changed"));
	EXPECT_FALSE(FJsonValue::CompareEqual(*Value, *Copy));
	EXPECT_EQ(TEXT("v"), Copy->AsObject()->GetObjectField(TEXT("o"))->GetStringField(TEXT("k")));

	EXPECT_TRUE(FJsonValue::CompareEqual(*Read(TEXT("{\"a\":1,\"b\":2}")), *Read(TEXT("{\"B\":2.0,\"a\":1}"))));
	EXPECT_FALSE(FJsonValue::CompareEqual(*Read(TEXT("[1,2]")), *Read(TEXT("[2,1]"))));
	EXPECT_FALSE(FJsonValue::CompareEqual(*Read(TEXT("\"a\"")), *Read(TEXT("\"A\""))));
	EXPECT_FALSE(FJsonValue::CompareEqual(*Read(TEXT("1e999")), *Read(TEXT("1e998"))));
}
