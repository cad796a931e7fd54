#!/usr/bin/env bash
# The outputs of the batch command on the heaviest record: 72 channels of noise
# (every pixel column of a page covers the full height of its zone), 7,000,000
# records at 1 s. Each subcommand builds the working files first, so `levels`
# (the build alone) is timed beside them; the difference is the output's own cost.
# Prints one line a subcommand and round, with the load average at its start.
#   outputs_bench.sh RECSCOPE_CLI MAKE_LARGE_RECORD FOLDER [ROUNDS]
set -euo pipefail
cli=$1 maker=$2 folder=$3 rounds=${4:-2}
mkdir -p "$folder/home"
[ -f "$folder/SBIG.FDT" ] || "$maker" "$folder" --format 2 --noise >/dev/null
last=$("$cli" info "$folder/SBIG.FDT" | sed -n 's/.*"LastTime": \([0-9]*\).*/\1/p')
home=(--home "$folder/home")
now() { date +%s.%N; }
timed() {
  local name=$1
  shift
  local load t0 t1
  load=$(cut -d' ' -f1 /proc/loadavg)
  t0=$(now)
  "$@" >/dev/null
  t1=$(now)
  awk -v n="$name" -v s="$(echo "$t1 - $t0" | bc)" -v l="$load" -v r="$round" \
    'BEGIN { printf "round %d: %-34s %7.2f s  (load %s)\n", r, n, s, l }'
}
for round in $(seq "$rounds"); do
  timed "levels (working files only)" "$cli" "${home[@]}" levels "$folder/SBIG.FDT"
  timed "report --type month, last month" "$cli" "${home[@]}" report "$folder/SBIG.FDT" \
    --type month --base "$last" --out "$folder/month.csv"
  timed "report --type year" "$cli" "${home[@]}" report "$folder/SBIG.FDT" \
    --type year --base "$last" --out "$folder/year.csv"
  timed "print-pdf 10 pages at the far end" "$cli" "${home[@]}" print-pdf "$folder/SBIG.FDT" \
    --out "$folder/far.pdf" --from $((last - 10 * 86400)) --to "$last" \
    --mode single --orientation landscape
  timed "print-pdf 10 continuous pages" "$cli" "${home[@]}" print-pdf "$folder/SBIG.FDT" \
    --out "$folder/cont.pdf" --from $((last - 10 * 86400)) --to $((last - 9 * 86400)) \
    --mode continuous --pages 10 --orientation landscape
done
ls -l "$folder/far.pdf" "$folder/cont.pdf" | awk '{ print $5, $9 }'
rm -f "$folder"/month.csv "$folder"/year.csv "$folder"/far.pdf "$folder"/cont.pdf
