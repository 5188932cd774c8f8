#!/usr/bin/env bash
# clang-format and qmllint over everything of ours. Needs a configured build/release.
set -euo pipefail
cd "$(dirname "$0")/.."

mapfile -t sources < <(git ls-files -- '*.cpp' '*.h')
clang-format --dry-run --Werror "${sources[@]}"
echo "clang-format: ${#sources[@]} files clean"

cmake --build build/release --target all_qmllint
echo "qmllint: clean"
