# Language level, warnings, sanitizers, linker and compiler cache: everything that holds for every target.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

add_compile_options(-Wall -Wextra -Werror -fno-strict-aliasing)
add_compile_definitions(_FILE_OFFSET_BITS=64)
# GCC 12 sees overlaps in std::string's operator+ that aren't there (GCC bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
	add_compile_options(-Wno-restrict)
endif()

if(CORVEXA_SANITIZE)
	add_compile_options(-fsanitize=${CORVEXA_SANITIZE} -fno-omit-frame-pointer)
	add_link_options(-fsanitize=${CORVEXA_SANITIZE})
	# Instrumented code confuses the flow analysis behind these warnings; the other presets keep them.
	if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
		add_compile_options(-Wno-maybe-uninitialized -Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread)
	endif()
endif()

# Code that a fuzz target reaches tells it where it went; the targets themselves add the driver.
if(CORVEXA_FUZZ)
	add_compile_options(-fsanitize=fuzzer-no-link)
endif()

find_program(CORVEXA_CCACHE ccache)
if(CORVEXA_CCACHE)
	set(CMAKE_CXX_COMPILER_LAUNCHER "${CORVEXA_CCACHE}")
endif()

# A precompiled header and ccache agree only with these settings (ccache manual, "Precompiled headers").
if(CORVEXA_CCACHE AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
	add_compile_options(-fpch-preprocess)
	set(CMAKE_CXX_COMPILER_LAUNCHER
		${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
		"${CORVEXA_CCACHE}")
endif()

find_program(CORVEXA_LLD NAMES ld.lld)
if(CORVEXA_LLD)
	add_link_options(-fuse-ld=lld)
endif()
