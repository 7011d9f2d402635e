#!/usr/bin/env bash
# Installs what is missing, builds and runs every test: all of them in an optimised build,
# and those of the engine once more under AddressSanitizer and UBSan, with a short fuzzing run.
set -euo pipefail
cd "$(dirname "$0")"

scripts/install-packages.sh build test
export QT_QPA_PLATFORM=offscreen
jobs=$(nproc)

cmake --preset check
cmake --build --preset check -j "$jobs"
ctest --test-dir build/check --output-on-failure -j "$jobs"

cmake --preset asan
cmake --build --preset asan -j "$jobs"
ctest --test-dir build/asan --output-on-failure -j "$jobs"
scripts/fuzz.sh 20
