#!/usr/bin/env bash
# Feeds the targets of tests/Fuzz with inputs of libFuzzer's making, one target after the other.
#   scripts/fuzz.sh [SECONDS [TARGET...]]    60 seconds each, all targets
# Needs Clang (apt-get install clang). A finding ends the run; its input is kept in build/fuzz/findings and belongs,
# once mended, into tests/Fuzz/corpus. New inputs that reach more code are merged into the corpus by --merge as SECONDS.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
shift || true
targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=(wire offline_index deep_link lyrics rows settings)

cmake -S . -B build/fuzz -G Ninja -DCMAKE_CXX_COMPILER="${CLANG:-clang++}" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DNAVORIN_FUZZ=ON >/dev/null
cmake --build build/fuzz
for target in "${targets[@]}"; do
    corpus=tests/Fuzz/corpus/$target
    grown=build/fuzz/corpus/$target
    mkdir -p "$grown" build/fuzz/findings
    echo "== $target"
    if [ "$seconds" = --merge ]; then
        build/fuzz/bin/"fuzz_$target" -merge=1 "$corpus" "$grown" 2>&1 | tail -1
    else
        build/fuzz/bin/"fuzz_$target" -max_total_time="$seconds" -timeout=10 -print_final_stats=1 \
            -artifact_prefix="build/fuzz/findings/$target-" "$grown" "$corpus" 2>build/fuzz/"$target.log" ||
            { tail -40 build/fuzz/"$target.log"; exit 1; }
        grep -E "stat::number_of_executed_units|DONE" build/fuzz/"$target.log" | tail -2
    fi
done
