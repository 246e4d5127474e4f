#pragma once

#include "Logging/LogCategory.h"

/** Where a log message goes. Any thread. */
struct FMsg
{
	template <typename... ArgTypes>
	static void Logf(const FLogCategoryBase& Category, ELogVerbosity::Type Verbosity,
		TCheckedFormat<std::type_identity_t<ArgTypes>...> Format, ArgTypes... Args)
	{
		if constexpr (sizeof...(ArgTypes) == 0)
		{
			LogPacked(Category, Verbosity, Format.Get(), {});
		}
		else
		{
			const FFormatArg Packed[] = {FormatString::MakeArg(Args)...};
			LogPacked(Category, Verbosity, Format.Get(), Packed);
		}
	}

private:
	/** A fatal message ends the process after it has reached every device. */
	static void LogPacked(const FLogCategoryBase& Category, ELogVerbosity::Type Verbosity, const TCHAR* Format,
		TArrayView<const FFormatArg> Args);
};

#define DECLARE_LOG_CATEGORY_EXTERN(CategoryName, DefaultVerbosity, CompileTimeVerbosity)           \
	extern struct FLogCategory##CategoryName                                                        \
		: public FLogCategory<ELogVerbosity::DefaultVerbosity, ELogVerbosity::CompileTimeVerbosity> \
	{                                                                                               \
		FLogCategory##CategoryName()                                                                \
			: FLogCategory(TEXT(#CategoryName))                                                     \
		{                                                                                           \
		}                                                                                           \
	} CategoryName

#define DEFINE_LOG_CATEGORY(CategoryName) FLogCategory##CategoryName CategoryName

#define DEFINE_LOG_CATEGORY_STATIC(CategoryName, DefaultVerbosity, CompileTimeVerbosity)            \
	static struct FLogCategory##CategoryName                                                        \
		: public FLogCategory<ELogVerbosity::DefaultVerbosity, ELogVerbosity::CompileTimeVerbosity> \
	{                                                                                               \
		FLogCategory##CategoryName()                                                                \
			: FLogCategory(TEXT(#CategoryName))                                                     \
		{                                                                                           \
		}                                                                                           \
	} CategoryName

/** Whether a message of this category and verbosity would be written. */
#define UE_LOG_ACTIVE(CategoryName, Verbosity)                                   \
	(ELogVerbosity::Verbosity <= decltype(CategoryName)::CompileTimeVerbosity && \
		!CategoryName.IsSuppressed(ELogVerbosity::Verbosity))

/** Logs a formatted text. The arguments are evaluated only when the message is written. */
#define UE_LOG(CategoryName, Verbosity, Format, ...)                                               \
	do                                                                                             \
	{                                                                                              \
		if (UE_LOG_ACTIVE(CategoryName, Verbosity))                                                \
		{                                                                                          \
			FMsg::Logf(CategoryName, ELogVerbosity::Verbosity, Format __VA_OPT__(, ) __VA_ARGS__); \
		}                                                                                          \
	} while (false)

#define UE_CLOG(Condition, CategoryName, Verbosity, Format, ...)                                   \
	do                                                                                             \
	{                                                                                              \
		if (UE_LOG_ACTIVE(CategoryName, Verbosity) && (Condition))                                 \
		{                                                                                          \
			FMsg::Logf(CategoryName, ELogVerbosity::Verbosity, Format __VA_OPT__(, ) __VA_ARGS__); \
		}                                                                                          \
	} while (false)

DECLARE_LOG_CATEGORY_EXTERN(LogTemp, Log, All);
DECLARE_LOG_CATEGORY_EXTERN(LogCore, Log, All);
