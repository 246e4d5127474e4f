#pragma once

#include <gtest/gtest.h>

#include <string>

/**
 * Compares a text with the one recorded in a file under the tests' data folder. With CORVEXA_REWRITE_GOLDEN set in the
 * environment, the text is recorded instead, for review with the other changes.
 */
class FGoldenText
{
public:
	/** @param DataDir the test executable's CORVEXA_TEST_DATA_DIR. */
	explicit FGoldenText(std::string DataDir);

	/** @param Name the file's path below the data folder. */
	testing::AssertionResult Matches(const std::string& Name, const std::string& Text) const;

	/** A condensed JSON text with a line for each member and element, changed in nothing but white space. */
	static std::string JsonLines(const std::string& Json);

private:
	std::string DataDir;
};
