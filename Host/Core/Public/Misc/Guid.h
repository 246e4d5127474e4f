#pragma once

#include "Containers/UnrealString.h"

/** The written forms of an identity; letters are upper-case unless the name says otherwise. */
enum class EGuidFormats : uint8
{
	/** 32 digits. */
	Digits,
	DigitsLower,
	/** 8-4-4-4-12 digits. */
	DigitsWithHyphens,
	DigitsWithHyphensLower,
	DigitsWithHyphensInBraces,
	DigitsWithHyphensInParentheses,
	/** 8-8-8-8 digits. */
	UniqueObjectGuid
};

/** An identity of 128 bits. All zero means none. */
struct FGuid
{
	constexpr FGuid() = default;
	constexpr FGuid(uint32 InA, uint32 InB, uint32 InC, uint32 InD)
		: A(InA)
		, B(InB)
		, C(InC)
		, D(InD)
	{
	}

	/** A fresh random identity from the operating system (RFC 4122, version 4). Any thread. */
	static FGuid NewGuid();

	/** Reads any of the written forms, in either case. @return false, and no change, for anything else. */
	static bool Parse(const FString& Text, FGuid& OutGuid);

	bool IsValid() const { return (A | B | C | D) != 0; }
	void Invalidate() { *this = FGuid(); }
	FString ToString(EGuidFormats Format = EGuidFormats::Digits) const;

	auto operator<=>(const FGuid&) const = default;
	friend uint32 GetTypeHash(const FGuid& Guid)
	{
		return HashCombine(HashCombine(Guid.A, Guid.B), HashCombine(Guid.C, Guid.D));
	}

	uint32 A = 0;
	uint32 B = 0;
	uint32 C = 0;
	uint32 D = 0;
};
