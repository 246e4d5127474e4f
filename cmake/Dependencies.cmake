# The libraries behind the host's facades. Each is a Debian package, named in scripts/packages.txt.

find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
find_package(ZLIB REQUIRED)
pkg_check_modules(CURL REQUIRED IMPORTED_TARGET libcurl)
pkg_check_modules(UTF8PROC REQUIRED IMPORTED_TARGET libutf8proc)
pkg_check_modules(PCRE2 REQUIRED IMPORTED_TARGET libpcre2-16)
find_package(simdjson REQUIRED)
