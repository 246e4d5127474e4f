#!/usr/bin/env bash
# Installs what is missing, builds and runs the whole test suite.
source "$(dirname "${BASH_SOURCE[0]}")/scripts/lib.sh"

usage()
{
	cat <<'END'
Usage: ./test.sh [dev|asan|tsan]

  dev   (the default) optimised build with assertions, its tests, then scripts/check
  asan  the same tests under the address and undefined-behaviour sanitizers
  tsan  the same tests under the thread sanitizer

Exit status: 0 all passed, 1 something failed, 2 wrong usage.
END
}

Preset="${1:-dev}"
case "$Preset" in
dev | asan | tsan) ;;
-h | --help)
	usage
	exit 0
	;;
*)
	printf "test.sh: unknown preset '%s'\n" "$Preset" >&2
	usage >&2
	exit 2
	;;
esac

install_packages build test
build "$Preset"
run_suite "$Preset"
if [[ "$Preset" == dev ]]; then
	say "Checking the sources"
	"$Root/scripts/check" || fail "scripts/check found faults"
fi
say "All of '$Preset' passed"
