#!/usr/bin/env bash
# clang-tidy over the sources, or over those named. Needs a configured and built build/release.
set -euo pipefail
cd "$(dirname "$0")/.."

units=("$@")
[ ${#units[@]} -gt 0 ] || mapfile -t units < <(git ls-files -- 'src/*.cpp' 'demo/*.cpp')
printf '%s\n' "${units[@]}" | xargs -P "$(nproc)" -n 4 clang-tidy -p build/release --quiet 2> >(grep -v 'warnings generated\|Suppressed\|Use -header-filter' >&2)
echo "clang-tidy: ${#units[@]} files clean"
