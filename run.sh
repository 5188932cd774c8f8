#!/usr/bin/env bash
# Installs what is missing, builds the release and starts the demo backend and the app.
#   ./run.sh [--no-start] [arguments of navorin]
# With NAVORIN_BASE_URL set, the app uses that backend instead of the demo one.
set -euo pipefail
cd "$(dirname "$0")"
. scripts/dependencies.sh

start=yes
if [ "${1:-}" = --no-start ]; then
    start=no
    shift
fi

install_missing "${build_packages[@]}" "${run_packages[@]}" "${ad_packages[@]}"
cmake --preset release -DNAVORIN_TESTS=OFF -DNAVORIN_BENCHMARKS=OFF >/dev/null
cmake --build --preset release

[ $start = no ] && exit 0
demo=(--demo)
[ -n "${NAVORIN_BASE_URL:-}" ] && demo=()
exec build/release/bin/navorin "${demo[@]}" "$@"
