#!/usr/bin/env bash
# Installs what is missing, builds everything, runs the suite and checks the style.
#   ./test.sh [STAGE...]    runs only these stages; without any, all but tidy:
#     release   the whole suite and the benchmarks' build
#     lint      clang-format and qmllint
#     tidy      clang-tidy, which takes its time
#     asan      the suite under the address sanitizer
#     tsan      the tests with threads of ours under the thread sanitizer
set -euo pipefail
cd "$(dirname "$0")"
. scripts/dependencies.sh
install_missing "${build_packages[@]}" "${run_packages[@]}" "${ad_packages[@]}" "${packaging_packages[@]}" "${test_packages[@]}"

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
    lint | tidy)
        [ -f build/release/compile_commands.json ] || configure_and_build release
        "scripts/check-$stage.sh"
        ;;
    release | asan)
        configure_and_build "$stage"
        ctest --preset "$stage" --label-exclude desktop
        # These share a screen, a bus and a sound server with whatever else the machine does: each has a second try.
        ctest --preset "$stage" --label-regex desktop --repeat until-pass:2
        ;;
    tsan)
        configure_and_build tsan
        # its binaries need the address space laid out as their runtime expects
        runner=()
        setarch -R true 2>/dev/null && runner=(setarch -R)
        "${runner[@]}" ctest --preset tsan
        ;;
    *)
        echo "unknown stage: $stage" >&2
        exit 64
        ;;
    esac
done
