#!/usr/bin/env bash
# Every source file stands as .clang-format says.
set -euo pipefail
cd "$(dirname "$0")/.."
git ls-files '*.cpp' '*.h' | xargs -r clang-format --dry-run --Werror
echo "Оформление исходных текстов: без замечаний."
