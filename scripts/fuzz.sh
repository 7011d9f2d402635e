#!/usr/bin/env bash
# A bounded run of the fuzz targets from seeds and kept inputs; any finding ends it with an error.
#   scripts/fuzz.sh [SECONDS [FOLDER]]   FOLDER keeps the corpus and findings between runs
# Needs the build of the preset asan.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-20}
programs=build/asan/bin
if [ $# -gt 1 ]; then
    folder=$2
else
    folder=$(mktemp -d)
    trap 'rm -rf "$folder"' EXIT
fi
export ASAN_OPTIONS=${ASAN_OPTIONS:-quarantine_size_mb=16}

"$programs/fuzz_seeds" "$folder/seeds"

run() {
    local target=$1
    shift
    mkdir -p "$folder/corpus/$target" "$folder/found"
    "$programs/fuzz_$target" -seed=1 -max_total_time="$seconds" -max_len=1200 -timeout=30 \
        -rss_limit_mb=2048 -entropic=0 -print_final_stats=1 -artifact_prefix="$folder/found/$target-" "$@" \
        "$folder/corpus/$target" "$folder/seeds/$target" "fuzz/regressions/$target" \
        >"$folder/$target.log" 2>&1
}

declare -A jobs
run read & jobs[read]=$!
run change & jobs[change]=$!
run compact & jobs[compact]=$!
run sql -dict=fuzz/sql.dict & jobs[sql]=$!
failed=0
for target in read change compact sql; do
    if wait "${jobs[$target]}"; then
        grep -E '^#[0-9]+.*DONE' "$folder/$target.log" | sed "s/^/fuzz_$target: /"
    else
        failed=1
        tail -n 60 "$folder/$target.log"
        for input in "$folder/found/$target-"*; do
            echo "fuzz_$target: $(basename "$input")"
            base64 "$input"
        done
    fi
done
exit $failed
