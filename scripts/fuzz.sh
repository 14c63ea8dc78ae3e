#!/usr/bin/env bash
# Builds the fuzz preset and runs the differential fuzz target of every
# family of entries, one after the other.
#
#   scripts/fuzz.sh [RUNS] [LIBFUZZER OPTION...]     (default: 1000000 runs each)
#
# Inputs found along the way go to build/fuzz/corpus/<family> (kept between
# runs); a finding stops its target and is written to
# build/fuzz/findings/<family>/.  Once the fault is fixed, copy the input to
# fuzz/regressions/<family>/ so that test_fuzz_corpus replays it in every build.
set -euo pipefail
cd "$(dirname "$0")/.."

runs=${1:-1000000}
[ $# -eq 0 ] || shift
scripts/deps.sh fuzz
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --parallel "${ORVIK_JOBS:-$(nproc)}"

status=0
for target in build/fuzz/fuzz/fuzz_*; do
  [ -f "$target" ] && [ -x "$target" ] || continue
  family=${target##*/fuzz_}
  work=build/fuzz/corpus/$family
  findings=build/fuzz/findings/$family
  log=build/fuzz/$family.log
  mkdir -p "$work" "$findings"
  echo "== fuzz_$family: $runs runs"
  if ! "$target" "$work" "fuzz/corpus/$family" -runs="$runs" \
    -artifact_prefix="$findings/" -print_final_stats=1 "$@" >"$log" 2>&1; then
    status=1
    echo "!! finding in fuzz_$family (input in $findings):"
    grep -E '^difference:|ERROR:|SUMMARY:' "$log" | head -n 5 | sed 's/^/   /'
  fi
  grep -E '^stat::(number_of_executed_units|average_exec_per_sec)|^Done [0-9]+ runs' "$log" | sed 's/^/   /'
done
exit "$status"
