#!/usr/bin/env bash
# Joining two halves of a large binary record (recscope-cli couple) against the
# machine's copy of the same bytes (cat of both halves into one file), each
# timed to the end of its write-back (sync). Prints one line a round.
#   couple_bench.sh RECSCOPE_CLI MAKE_LARGE_RECORD FOLDER [ROUNDS]
set -euo pipefail
cli=$1 maker=$2 folder=$3 rounds=${4:-3}
mkdir -p "$folder"
[ -f "$folder/SBIG.FDT" ] || "$maker" "$folder" --format 2 >/dev/null
first=$("$cli" info "$folder/SBIG.FDT" | sed -n 's/.*"FirstTime": \([0-9]*\).*/\1/p')
last=$("$cli" info "$folder/SBIG.FDT" | sed -n 's/.*"LastTime": \([0-9]*\).*/\1/p')
middle=$(((first + last) / 2))
rm -f "$folder"/SHALF?.FDT "$folder"/AHALF?.FDT
"$cli" saveas "$folder/SBIG.FDT" --from "$first" --to "$middle" --out "$folder/SHALF1.FDT" >/dev/null
"$cli" saveas "$folder/SBIG.FDT" --from $((middle + 1)) --to "$last" --out "$folder/SHALF2.FDT" >/dev/null
sync
now() { date +%s.%N; }
for round in $(seq "$rounds"); do
  rm -f "$folder/SCALF1.FDT" "$folder/ACALF1.FDT" "$folder/COPY.BIN"; sync
  t0=$(now); cat "$folder/SHALF1.FDT" "$folder/SHALF2.FDT" >"$folder/COPY.BIN"; sync; t1=$(now)
  rm -f "$folder/COPY.BIN"; sync
  t2=$(now); "$cli" couple "$folder/SHALF1.FDT" "$folder/SHALF2.FDT" --yes >/dev/null; sync; t3=$(now)
  bytes=$(stat -c %s "$folder/SCALF1.FDT")
  awk -v r="$round" -v c="$(echo "$t1 - $t0" | bc)" -v j="$(echo "$t3 - $t2" | bc)" -v b="$bytes" \
    -v l="$(cut -d' ' -f1 /proc/loadavg)" \
    'BEGIN { printf "round %d: copy %.2f s, couple %.2f s (%.0f MB), couple/copy %.2f, load %s\n", r, c, j, b / 1e6, j / c, l }'
done
rm -f "$folder/SCALF1.FDT" "$folder/ACALF1.FDT"
