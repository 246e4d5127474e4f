#pragma once

#include <functional>
#include <string>
#include <vector>

/** How a run of the program ended, and what it wrote. */
struct FProgramResult
{
	/** The exit status; negative the signal that ended it. */
	int Status = 0;
	std::string Output;
	std::string Errors;
};

/** One start of the built program, in an environment of its own: no keys, no colours unless asked for. */
class FProgramRun
{
public:
	explicit FProgramRun(std::vector<std::string> InArguments);

	/** Sets a variable, as NAME=value. */
	FProgramRun& With(std::string Variable);

	/** Runs it to its end with these bytes as its standard input. */
	FProgramResult Run(const std::string& Input = {}) const;

	/** What is typed, or done, once the output so far holds a text. */
	struct FStep
	{
		std::string WaitFor;
		/** Typed as it stands; "\x03" is Ctrl-C. */
		std::string Type;
		/** Ends the program by SIGKILL in place of typing. */
		bool bKill = false;
	};

	/**
	 * Runs it at a terminal of its own. Each step waits for its text in the output since the step before.
	 * A step that waits in vain ends the program, and shows in the result as that step's text missing.
	 */
	FProgramResult RunAtTerminal(const std::vector<FStep>& Steps) const;

private:
	std::vector<std::string> Arguments;
	std::vector<std::string> Environment;
};
