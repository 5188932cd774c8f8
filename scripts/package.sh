#!/usr/bin/env bash
# Builds the release and makes the Debian packages of it, in build/release/packages.
#   scripts/package.sh [arguments of cpack]
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/dependencies.sh

install_missing "${packaging_packages[@]}"
./run.sh --no-start
cd build/release
exec cpack "$@"
