#!/bin/sh
# Runs every fuzz target and prints a line for each: executions, speed, memory, findings.
#
#   scripts/fuzz.sh              5,000 executions of each target (500 whole runs), as CI does
#   scripts/fuzz.sh RUNS         so many of each (a fiftieth of it whole runs)
#   scripts/fuzz.sh SECONDSs     so many seconds each, as in 60s
#   scripts/fuzz.sh long         ten million of each, 200,000 whole runs: some hours
#
# TARGETS="history run" chooses some. FUZZ_BUILD names the build folder, FUZZ_WORK the folder where
# new inputs, logs and findings are kept (default: work/ in the build folder). Ends with status 1
# when a target found something; the input that shows it is named in its line.
set -eu
cd "$(dirname "$0")/.."
amount=${1:-5000}
build=${FUZZ_BUILD:-build/fuzz}
targets=${TARGETS:-alerts ratings hits_in hits_out formula settings history summary run ip_table}

if [ -z "${FUZZ_BUILD:-}" ]; then
  cmake --preset fuzz >/dev/null
  # shellcheck disable=SC2046,SC2086 # one argument for each target
  cmake --build --preset fuzz -j "$(nproc)" --target $(printf 'fuzz-%s ' $targets) >/dev/null
fi
build=$(cd "$build" && pwd)
work=${FUZZ_WORK:-$build/work}
mkdir -p "$work"
work=$(cd "$work" && pwd)
corpus=$PWD/fuzz/corpus
dictionary=$PWD/fuzz/site.dict

# The sites the targets work in are small and written at every execution: in memory if possible.
TMPDIR=$(mktemp -d "$([ -w /dev/shm ] && echo /dev/shm || echo "${TMPDIR:-/tmp}")/fuzz.XXXXXX")
export TMPDIR
trap 'rm -rf "$TMPDIR"' EXIT
trap 'exit 130' INT TERM
# A small quarantine keeps the memory near what the program itself needs.
export ASAN_OPTIONS=quarantine_size_mb=16:detect_leaks=1:allocator_may_return_null=0

# limits TARGET: how much of it to run.
limits() {
  case $amount in
    long) [ "$1" = run ] && echo -runs=200000 || echo -runs=10000000 ;;
    *s) echo "-max_total_time=${amount%s}" ;;
    5000) [ "$1" = run ] && echo -runs=500 || echo -runs=5000 ;;
    *) [ "$1" = run ] && echo "-runs=$((amount / 50 + 1))" || echo "-runs=$amount" ;;
  esac
}

field() { sed -n "s/^stat::$1: *//p" "$2" | tail -n 1; }

status=0
printf '%-10s %12s %9s %8s  %s\n' target executions exec/s 'rss MB' findings
for target in $targets; do
  log=$work/$target.log
  mkdir -p "$work/$target"
  longest=4096
  [ "$target" = run ] && longest=8192
  found=none
  # -malloc_limit_mb: no single allocation out of proportion to inputs of a few kilobytes.
  if ! "$build/fuzz/fuzz-$target" "$(limits "$target")" -max_len=$longest -dict="$dictionary" \
    -timeout=20 -rss_limit_mb=512 -malloc_limit_mb=64 -print_final_stats=1 \
    -artifact_prefix="$work/$target-" "$work/$target" "$corpus/$target" >"$log" 2>&1; then
    found=$(sed -n 's/.*Test unit written to //p' "$log" | tail -n 1)
    found=${found:-see $log}
    status=1
  fi
  printf '%-10s %12s %9s %8s  %s\n' "$target" "$(field number_of_executed_units "$log")" \
    "$(field average_exec_per_sec "$log")" "$(field peak_rss_mb "$log")" "$found"
done
exit $status
