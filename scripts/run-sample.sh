#!/usr/bin/env bash
# Builds the default preset and runs the 3x3 Gaussian on the bundled sample
# image (data/astronaut.png), writing build/default/gaussian3x3.png.
#
#   scripts/run-sample.sh [FILTER [OPTIONS...]]   (default: gaussian3x3)
#
# Installs missing Debian packages first when run as root (scripts/deps.sh).
set -euo pipefail
cd "$(dirname "$0")/.."

jobs=${ORVIK_JOBS:-$(nproc)}
scripts/deps.sh base
cmake --preset default
cmake --build --preset default --parallel "$jobs" --target orvik

filter=${1:-gaussian3x3}
[ $# -eq 0 ] || shift
build/default/tools/orvik run "$filter" data/astronaut.png "build/default/$filter.png" "$@"
