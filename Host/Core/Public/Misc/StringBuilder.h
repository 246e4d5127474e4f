#pragma once

#include "Containers/UnrealString.h"

/** Puts a text together in memory that begins inside the object and moves to the heap when it grows. */
class FStringBuilderBase
{
public:
	FStringBuilderBase(const FStringBuilderBase&) = delete;
	FStringBuilderBase& operator=(const FStringBuilderBase&) = delete;

	FStringBuilderBase& Append(FStringView Text);
	FStringBuilderBase& Append(const TCHAR* Text, int32 Count) { return Append(FStringView(Text, Count)); }
	FStringBuilderBase& AppendChar(TCHAR Char) { return Append(FStringView(&Char, 1)); }
	template <typename... ArgTypes>
	FStringBuilderBase& Appendf(TCheckedFormat<std::type_identity_t<ArgTypes>...> Format, ArgTypes... Args)
	{
		return Append(FString::Printf<ArgTypes...>(Format, Args...));
	}

	/** The text so far, ended by a NUL, good until the next change. */
	const TCHAR* ToString() const { return Data; }
	const TCHAR* operator*() const { return Data; }
	const TCHAR* GetData() const { return Data; }
	FStringView ToView() const { return FStringView(Data, Count); }
	int32 Len() const { return Count; }
	void Reset();
	void RemoveSuffix(int32 Units);
	TCHAR LastChar() const
	{
		check(Count > 0);
		return Data[Count - 1];
	}

	FStringBuilderBase& operator<<(FStringView Text) { return Append(Text); }
	FStringBuilderBase& operator<<(TCHAR Char) { return AppendChar(Char); }
	FStringBuilderBase& operator<<(int32 Value) { return Append(FString::FromInt(Value)); }
	FStringBuilderBase& operator<<(int64 Value) { return Append(FString::FromInt(Value)); }

protected:
	/** @param Inline room for Capacity units, owned by the derived object. */
	FStringBuilderBase(TCHAR* Inline, int32 Capacity);
	~FStringBuilderBase();

private:
	TCHAR* const InlineData;
	TCHAR* Data;
	int32 Count = 0;
	int32 Max;
};

template <int32 Capacity>
class TStringBuilder : public FStringBuilderBase
{
public:
	TStringBuilder()
		: FStringBuilderBase(Inline, Capacity)
	{
	}

private:
	TCHAR Inline[Capacity];
};

using FStringBuilder = TStringBuilder<256>;
