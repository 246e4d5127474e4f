// How the sanitizers behave in every test executable, whoever starts it: a fault ends the run at once.

#if defined(__SANITIZE_ADDRESS__)

extern "C" const char* __asan_default_options()
{
	return "detect_stack_use_after_return=1:strict_string_checks=1:check_initialization_order=1:detect_leaks=1";
}

extern "C" const char* __ubsan_default_options()
{
	return "halt_on_error=1:print_stacktrace=1";
}

#elif defined(__SANITIZE_THREAD__)

extern "C" const char* __tsan_default_options()
{
	return "halt_on_error=1:second_deadlock_stack=1";
}

#endif
