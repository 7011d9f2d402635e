#!/usr/bin/env bash
# Installs the packages of the kinds named (build, test, bench, lint) that are missing.
#   scripts/install-packages.sh build test
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)

missing=()
for kind in "$@"; do
    while read -r name; do
        dpkg-query -W -f='${Status}' "$name" 2>/dev/null | grep -q '^install ok' || missing+=("$name")
    done < <(awk -v kind="$kind" '$1 == kind { print $2 }' "$here/packages.txt")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Установка пакетов: ${missing[*]}"
run=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || {
        echo "Нет прав на установку. Выполните: apt-get install ${missing[*]}" >&2
        exit 1
    }
    run=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
"${run[@]}" apt-get update -qq
"${run[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
