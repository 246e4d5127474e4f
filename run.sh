#!/usr/bin/env bash
# Installs what is missing, builds, and runs the program with the arguments given.
source "$(dirname "${BASH_SOURCE[0]}")/scripts/lib.sh"

install_packages build bench
build release
Program="$Root/Build/release/Host/Launch/corvexa"
if [[ -x "$Program" ]]; then
	exec "$Program" "$@"
fi
say "There is no program to start yet. These are the core's figures beside its peers', for a few seconds:"
"$Root/Build/release/Benchmarks/Benchmarks" --benchmark_min_time=0.05 --benchmark_filter='Text|Map'
say "./test.sh runs every test; CONTRIBUTING.md tells how to run all benchmarks."
