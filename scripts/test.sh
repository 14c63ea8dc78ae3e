#!/usr/bin/env bash
# Builds the default (Release) preset and runs every test.
#
#   scripts/test.sh [CTEST ARGS...]     e.g. scripts/test.sh -R gaussian
#
# Installs missing Debian packages first when run as root (scripts/deps.sh).
set -euo pipefail
cd "$(dirname "$0")/.."

jobs=${ORVIK_JOBS:-$(nproc)}
scripts/deps.sh base
cmake --preset default
cmake --build --preset default --parallel "$jobs"

log=build/default/ctest.log
status=0
ctest --preset default --parallel "$jobs" "$@" 2>&1 | tee "$log" || status=$?
echo
echo "== ctest summary (default) =="
grep -E '^[0-9]+% tests passed|^Total Test time|^No tests were found' "$log" || true
# With output on failure the names of failed tests are listed above it too.
sed -n '/^The following tests/,$p' "$log"
exit "$status"
