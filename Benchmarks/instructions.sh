#!/usr/bin/env bash
# instructions.sh PROGRAM BASELINE [update]: counts the instructions of each operation of the benchmarks and compares
# them with those of the baseline. Fails with the name of each operation that needs over 5 % more. The counts of another
# compiler, other flags or another C library than the baseline's first line names are printed and not compared. With
# "update" the baseline is written.
set -euo pipefail

program=$1 baseline=$2 mode=${3-}
profiles=$(mktemp -d)
trap 'rm -rf "$profiles"' EXIT

holds_for=$(valgrind --quiet --tool=callgrind --callgrind-out-file="$profiles/profile" "$program" --instructions)
# One profile an operation, after "desc: Trigger: Client Request: TIMES ROW".
counts=$(awk '/^desc: Trigger: Client Request: / { times = $5; $1 = $2 = $3 = $4 = $5 = ""; row = substr($0, 6) }
  /^summary: / && row != "" { printf "%s | %.1f\n", row, $2 / times; row = "" }' \
  $(ls -v "$profiles"/profile.*))

if [ "$mode" = update ]; then
  printf '%s\n%s\n' "$holds_for" "$counts" >"$baseline"
  echo "Written to $baseline: $(wc -l <<<"$counts") operations, $holds_for"
  exit
fi

same=1
if [ "$holds_for" != "$(head -n 1 "$baseline")" ]; then
  echo "Not compared: the baseline is of $(head -n 1 "$baseline"), this is $holds_for"
  same=0
fi
awk -F ' [|] ' -v same="$same" '
  NR == FNR { if (FNR > 1) before[$1] = $2; next }
  { now = $2; seen[$1] = 1; note = "" }
  same && !($1 in before) { note = "  NOT IN THE BASELINE"; failed = 1 }
  same && $1 in before { change = 100 * (now / before[$1] - 1); note = sprintf("%+7.1f %%", change) }
  same && $1 in before && change > 5 { note = note "  WORSE"; failed = 1 }
  { printf "%-46s %10.1f %s\n", $1, now, note }
  END {
    if (same) for (row in before) if (!(row in seen)) { print row ": in the baseline and not counted"; failed = 1 }
    if (failed) print "FAILED. Where a change is meant, make instructions-baseline writes the baseline anew."
    exit failed
  }' "$baseline" <(printf '%s\n' "$counts")
