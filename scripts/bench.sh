#!/usr/bin/env bash
# Builds the large demonstration journal once and prints every timing beside its peer.
#   scripts/bench.sh [FILE [--benchmark_filter=REGEX]]
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-packages.sh build test bench
cmake --preset release -DJURNAL_BENCH=ON >/dev/null
cmake --build --preset release --target jurnal_bench jurnalctl
bin=$PWD/build/release/bin
journal=${1:-$PWD/build/large.mdb}
[ -f "$journal" ] || "$bin/jurnalctl" demo "$journal" --scale large
"$bin/jurnal_bench" "$journal" "$bin/jurnalctl" "${@:2}"
