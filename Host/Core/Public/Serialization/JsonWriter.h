#pragma once

#include "Containers/Array.h"
#include "Containers/StringView.h"
#include "Containers/UnrealString.h"
#include "Dom/JsonValue.h"
#include "Policies/PrettyJsonPrintPolicy.h"
#include "Templates/SharedPointer.h"
#include "Templates/UniquePtr.h"

#include <type_traits>

class FJsonSink;

/**
 * Writes JSON into a string, piece by piece, whichever the form. The string is empty at first and holds all that was
 * written after each call. A value in an object needs its name and one in an array has none; anything else is a
 * programmer's mistake. Containers nested deeper than JsonMaxDepth make Close fail. One thread at a time.
 */
class FJsonTextWriter
{
public:
	/** @param OutText must outlive the writer. */
	FJsonTextWriter(FString& OutText, bool bInPretty);
	virtual ~FJsonTextWriter();

	void WriteObjectStart();
	void WriteObjectStart(FStringView Name);
	void WriteObjectEnd();
	void WriteArrayStart();
	void WriteArrayStart(FStringView Name);
	void WriteArrayEnd();
	void WriteNull();
	void WriteNull(FStringView Name);
	/** Text that is JSON already, written as it stands. */
	void WriteRawJSONValue(FStringView Json);
	void WriteRawJSONValue(FStringView Name, FStringView Json);
	/** The name of the next value. */
	void WriteIdentifierPrefix(FStringView Name);

	void WriteValue(bool bValue);
	/** The shortest text that reads back as the same number; null for what isn't finite. */
	void WriteValue(double Value);
	template <typename T>
	requires(std::is_integral_v<T> && !std::is_same_v<T, bool>) void WriteValue(T Value)
	{
		std::is_signed_v<T> ? WriteSigned((int64)Value) : WriteUnsigned((uint64)Value);
	}
	void WriteValue(FStringView Text);
	void WriteValue(const TCHAR* Text) { WriteValue(FStringView(Text)); }
	void WriteValue(const FString& Text) { WriteValue(FStringView(Text)); }
	void WriteValue(std::nullptr_t) { WriteNull(); }
	/** A tree of values; a null pointer in it writes null. */
	void WriteValue(const FJsonValue& Value);
	void WriteValue(const FJsonObject& Object);
	void WriteValue(const TArray<TSharedPtr<FJsonValue>>& Array);
	template <typename T>
	void WriteValue(const TArray<T>& Array)
	{
		WriteArrayStart();
		for (const T& Element : Array)
		{
			WriteValue(Element);
		}
		WriteArrayEnd();
	}
	template <typename T>
	void WriteValue(FStringView Name, const T& Value)
	{
		WriteIdentifierPrefix(Name);
		WriteValue(Value);
	}

	/** @return whether one whole value was written, every container closed. */
	bool Close();

private:
	void BeginValue();
	void EndValue();
	void Open(TCHAR Bracket, bool bObject);
	void Shut(TCHAR Bracket, bool bObject);
	void NewLine(int32 Depth);
	void PutName(FStringView Name);
	void PutTree(const TSharedPtr<FJsonValue>& Value, int32 Depth);
	void PutTree(const FJsonValue& Value, int32 Depth);
	void PutElements(const TArray<TSharedPtr<FJsonValue>>& Array, int32 Depth);
	void PutMembers(const FJsonObject& Object, int32 Depth);
	template <typename T>
	void PutNumber(T Number);
	void WriteSigned(int64 Value);
	void WriteUnsigned(uint64 Value);

	struct FOpenContainer
	{
		bool bObject = false;
		bool bHasElements = false;
	};

	TUniquePtr<FJsonSink> Sink;
	TArray<FOpenContainer> Containers;
	bool bPretty;
	/** A name has been written and waits for its value. */
	bool bNamed = false;
	bool bRootWritten = false;
	bool bTooDeep = false;
};

template <typename CharType = TCHAR, typename PrintPolicy = TPrettyJsonPrintPolicy<CharType>>
class TJsonWriter : public FJsonTextWriter
{
public:
	explicit TJsonWriter(FString& OutText)
		: FJsonTextWriter(OutText, PrintPolicy::bPretty)
	{
	}
};

template <typename CharType = TCHAR, typename PrintPolicy = TPrettyJsonPrintPolicy<CharType>>
class TJsonWriterFactory
{
public:
	/** @param OutText must outlive the writer. */
	static TSharedRef<TJsonWriter<CharType, PrintPolicy>> Create(FString* OutText)
	{
		return MakeShared<TJsonWriter<CharType, PrintPolicy>>(*OutText);
	}
};

template <typename PrintPolicy = TPrettyJsonPrintPolicy<TCHAR>>
using TJsonStringWriter = TJsonWriter<TCHAR, PrintPolicy>;
