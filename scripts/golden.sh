#!/usr/bin/env bash
# Rewrites tests/golden/*.txt from this machine's portable kernels.  The test
# first runs every vector target too and refuses to write when any of them
# gives other bytes.  Review the diff: a changed line is a changed output.
#
#   scripts/golden.sh
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/deps.sh base
cmake --preset default >/dev/null
cmake --build --preset default --parallel "${ORVIK_JOBS:-$(nproc)}" --target test_golden
ORVIK_GOLDEN_UPDATE=1 build/default/tests/test_golden --gtest_brief=1
git --no-pager diff --stat -- tests/golden || true
