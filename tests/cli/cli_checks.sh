#!/usr/bin/env bash
# The batch command from the outside: exit statuses, the one-line refusal on
# stderr, outputs, and nothing left behind in the program folder.
set -u
cli=$1
samples=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
home=$work/home
mkdir -p "$home"
passed=0
failed=0
check() {
  if [ "$2" = 0 ]; then passed=$((passed + 1)); else failed=$((failed + 1)); echo "FAILED: $1"; fi
}
empty_home() { [ -z "$(ls -A "$home" | grep -v '^VIEWERCOM.INI$')" ]; }

"$cli" --home "$home" info "$samples/SHEAT01.FDT" >"$work/info.json" 2>"$work/err"
check "info exits 0" $?
grep -q '"RecordCount": 25920' "$work/info.json"; check "info gives the record count" $?
grep -q '"AlarmPath": ".*AHEAT01.FDT"' "$work/info.json"; check "info finds the alarm file" $?
[ ! -s "$work/err" ]; check "info writes nothing on stderr" $?
empty_home; check "info leaves no working files" $?

printf 'garbage' >"$work/SBAD.FDT"
"$cli" --home "$home" info "$work/SBAD.FDT" >/dev/null 2>"$work/err"
[ $? = 2 ]; check "a garbage record exits 2" $?
[ "$(cat "$work/err")" = "error 11190: ファイルが間違っています" ]; check "refusal is one catalogue line" $?
empty_home; check "a refused open leaves nothing" $?

head -c 900 "$samples/SHEAT01.FDT" >"$work/SCUT.FDT"
"$cli" --home "$home" stats "$work/SCUT.FDT" >/dev/null 2>"$work/err"
[ $? = 2 ] && grep -q '^error 11190: ' "$work/err"; check "a truncated record is refused" $?

cp "$samples/SHEAT01.FDT" "$work/XHEAT01.FDT"
"$cli" --home "$home" info "$work/XHEAT01.FDT" >/dev/null 2>"$work/err"
[ $? = 2 ] && grep -q '^error 11112: ' "$work/err"; check "a name without S is refused" $?

"$cli" --home "$home" levels "$samples/SHEAT01.FDT" --slot 2 >"$work/levels"
check "levels exits 0" $?
[ "$(wc -l <"$work/levels")" = 4 ]; check "levels names four files" $?
while read -r f; do [ -f "$f" ] || failed=$((failed + 1)); done <"$work/levels"
rm -f "$home"/Operation_*

"$cli" --home "$home" stats "$samples/SHEAT01.FDT" >"$work/stats.json"
check "stats exits 0" $?
grep -q '"DataNum":25920' "$work/stats.json"; check "stats over the whole file" $?
empty_home; check "stats leaves no working files" $?

"$cli" --home "$home" render "$samples/SHEAT01.FDT" --out "$work/t.png" --frames 3 2>"$work/err"
check "render exits 0" $?
head -c 8 "$work/t.png" | od -An -c | grep -q 'P   N   G'; check "render writes a PNG" $?
grep -Eq '^frames: 3 median_ms: [0-9.]+ max_ms: [0-9.]+$' "$work/err"; check "render times its frames" $?

"$cli" --home "$home" render "$samples/SHEAT01.FDT" >/dev/null 2>&1
[ $? = 1 ]; check "render without --out is a usage error" $?
"$cli" --bogus >/dev/null 2>&1
[ $? = 1 ]; check "an unknown option is a usage error" $?
"$cli" --help | grep -q 'Subcommands'; check "help lists the subcommands" $?

"$cli" --home "$home" instant "$samples/SHEAT01.FDT" >"$work/instant" 2>"$work/err"
check "instant exits 0" $?
[ "$(wc -l <"$work/instant")" = 1204 ]; check "instant prints two title rows and 1202 rows" $?
[ "$(sed -n 1p "$work/instant")" = "$(printf '時刻\tCH01\tCH01\tCH02\tCH03\tCH04\t')" ]
check "instant title row" $?
[ "$(sed -n 3p "$work/instant")" = "$(printf '2024/03/04 08:00:00\t39.6\t42.3\t38.3\t34.2\t28.7\t')" ]
check "instant first row" $?
empty_home; check "instant leaves no working files" $?
"$cli" --home "$home" instant "$samples/SHEAT01.FDT" --page last >"$work/instant"
tail -n 1 "$work/instant" | grep -q '^2024/03/07 07:59:50'; check "instant --page last ends at the file end" $?
"$cli" --home "$home" instant "$samples/SHEAT01.FDT" --page 2 | sed -n 3p | grep -q '^2024/03/04 11:20:20'
check "instant --page 2 starts at record 1203" $?
"$cli" --home "$home" instant "$samples/SHEAT01.FDT" --cursor '2024/03/05 08:00:04' | sed -n 3p | grep -q '^2024/03/05 06:19:50'
check "instant --cursor centres the cursor's record" $?
"$cli" --home "$home" --decimal-char , --date-format 2 instant "$samples/SHEAT01.FDT" --group 9 | sed -n 3p | grep -q '^04/03/2024 08:00:00	39,6	'
check "instant follows --decimal-char and --date-format" $?
"$cli" --home "$home" instant "$samples/SHEAT01.FDT" --group 4 >/dev/null 2>&1
[ $? = 1 ]; check "instant of a group without members is a usage error" $?
"$cli" --home "$home" instant "$samples/SHEAT01.FDT" --page 0 >/dev/null 2>&1
[ $? = 1 ]; check "instant --page 0 is a usage error" $?
"$cli" instant --help | grep -q -- '--cursor T'; check "instant --help tells its options" $?

echo "cli: $passed passed, $failed failed"
[ "$failed" = 0 ]
