#!/usr/bin/env bash
# Installs what is missing, builds, and starts the program on a demonstration journal.
#   ./run.sh            build and start; without a display the same work through jurnalctl
#   ./run.sh --build    build only, programs in build/release/bin/
#   ./run.sh FILE       build and open FILE instead of the demonstration journal
set -euo pipefail
cd "$(dirname "$0")"

scripts/install-packages.sh build
cmake --preset release -DJURNAL_TESTS=OFF -DJURNAL_BENCH=OFF >/dev/null
cmake --build --preset release
bin=$PWD/build/release/bin
[ "${1:-}" = --build ] && { echo "Готово: $bin/jurnal, $bin/jurnalctl"; exit 0; }

journal=${1:-$PWD/build/demo.mdb}
if [ $# -eq 0 ] && [ ! -f "$journal" ]; then
    "$bin/jurnalctl" demo "$journal" --scale college
fi
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    exec "$bin/jurnal" "$journal"
fi

echo "Экран недоступен: та же работа выполняется программой jurnalctl."
scripts/tour.sh "$bin/jurnalctl" "$journal"
