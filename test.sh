#!/usr/bin/env bash
# Installs what is missing, builds everything and runs every check:
#   style and lint, the whole suite, the suite under the address sanitizer, the threads tests under the thread
#   sanitizer.
#   ./test.sh [lint|release|asan|tsan]...    runs only these stages
set -euo pipefail
cd "$(dirname "$0")"
. scripts/dependencies.sh
install_missing "${build_packages[@]}" "${run_packages[@]}" "${test_packages[@]}"

stages=("$@")
[ ${#stages[@]} -eq 0 ] && stages=(release lint asan tsan)

configure_and_build() {
    local extra=()
    [ "$1" = release ] && extra=(-DNAVORIN_TESTS=ON -DNAVORIN_BENCHMARKS=ON)
    cmake --preset "$1" "${extra[@]}" >/dev/null
    cmake --build --preset "$1"
}

for stage in "${stages[@]}"; do
    echo "== $stage"
    case $stage in
    lint)
        [ -f build/release/compile_commands.json ] || configure_and_build release
        scripts/check-style.sh
        ;;
    release | asan | tsan)
        configure_and_build "$stage"
        # a tsan binary needs the address space laid out as its runtime expects
        runner=()
        [ "$stage" = tsan ] && setarch -R true 2>/dev/null && runner=(setarch -R)
        "${runner[@]}" ctest --preset "$stage"
        ;;
    *)
        echo "unknown stage: $stage" >&2
        exit 64
        ;;
    esac
done
