#!/usr/bin/env bash
# clang-format, clang-tidy and qmllint over everything of ours. Needs a configured and built build/release.
set -euo pipefail
cd "$(dirname "$0")/.."
build=build/release

mapfile -t sources < <(git ls-files -- 'src/*.cpp' 'src/*.h' 'demo/*.cpp' 'demo/*.h' 'tests/*.cpp' 'tests/*.h' 'bench/*.cpp' 'bench/*.h')
clang-format --dry-run --Werror "${sources[@]}"
echo "clang-format: ${#sources[@]} files clean"

mapfile -t units < <(git ls-files -- 'src/*.cpp' 'demo/*.cpp')
printf '%s\n' "${units[@]}" | xargs -P "$(nproc)" -n 4 clang-tidy -p $build --quiet 2> >(grep -v 'warnings generated\|Suppressed\|Use -header-filter' >&2)
echo "clang-tidy: ${#units[@]} files clean"

cmake --build $build --target all_qmllint
echo "qmllint: clean"
