#pragma once

#include "Containers/UnrealString.h"

/** The words of JSON, read one by one with care: what the parsers of our own share. */
class FJsonScanner
{
public:
	/** What was wrong, and where: lines and characters count from 1. Empty when nothing was. */
	FString GetErrorMessage() const;

protected:
	/** @param InText UTF-8 without a byte order mark, which must outlive this. */
	FJsonScanner(const ANSICHAR* InText, int64 Bytes);

	/** Both note the first thing wrong and give false. */
	bool Fail(const TCHAR* InError);
	bool FailAt(const ANSICHAR* Place, const TCHAR* InError);
	bool HasFailed() const { return Error != nullptr; }

	bool IsAtEnd() const { return At == End; }
	/** The next character; 0 at the end. */
	ANSICHAR Peek() const { return At == End ? (ANSICHAR)0 : *At; }
	void SkipSpace();
	/** Passes over the character if it is next. */
	bool Accept(ANSICHAR Char);
	/** Reads a string whose opening quote is next, and appends its text. */
	bool ScanString(FString& OutText);
	/** Passes over a number. @param bOutWhole whether it has neither fraction nor exponent. */
	bool ScanNumber(const ANSICHAR*& OutStart, const ANSICHAR*& OutEnd, bool& bOutWhole);
	bool ScanWord(const char* Word);
	/** Reads a member's name and the colon behind it. */
	bool ScanName(FString& OutName);

	static constexpr const TCHAR* EmptyText = TEXT("The text is empty");
	static constexpr const TCHAR* TextBehindEnd = TEXT("Unexpected text behind the end of the value");
	static constexpr const TCHAR* NoValue = TEXT("The text ends where a value is expected");
	static constexpr const TCHAR* TooDeep = TEXT("Objects and arrays are nested too deeply");
	static constexpr const TCHAR* NoEndOfObject = TEXT("Expected ',' or '}' behind a member");
	static constexpr const TCHAR* NoEndOfArray = TEXT("Expected ',' or ']' behind an element");

private:
	bool ScanEscape(FString& OutText);
	bool ScanCodeUnit(FString& OutText);
	bool SkipDigits();

	const ANSICHAR* Text;
	const ANSICHAR* At;
	const ANSICHAR* End;
	const TCHAR* Error = nullptr;
	const ANSICHAR* ErrorPlace = nullptr;
};
