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
"$cli" --home "$home" render "$samples/SHEAT01.FDT" --out "$work/t.SVG" --width 800 --height 450
check "render to SVG exits 0" $?
head -c 5 "$work/t.SVG" | grep -q '<?xml'; check "render writes an XML file for .SVG" $?
grep -q 'viewBox="0 0 800 450"' "$work/t.SVG"; check "the SVG has the asked size" $?
grep -q '2024/03/04' "$work/t.SVG"; check "the SVG holds the time labels as text" $?

"$cli" --home "$home" render "$samples/SHEAT01.FDT" >/dev/null 2>&1
[ $? = 1 ]; check "render without --out is a usage error" $?
"$cli" --bogus >/dev/null 2>&1
[ $? = 1 ]; check "an unknown option is a usage error" $?
"$cli" --help | grep -q 'Subcommands'; check "help lists the subcommands" $?

"$cli" --home "$home" events "$samples/SHEAT01.FDT" >"$work/alarms" 2>"$work/err"
check "events exits 0" $?
printf '発生/解除時刻\tﾁｬﾈﾙ№\tｱﾗｰﾑ№\t警報動作\t発生/解除\t\n2024/03/04 18:38:30\t1\t1\tH\t発生\t\n' >"$work/alarms_head"
head -n 2 "$work/alarms" | cmp -s - "$work/alarms_head"; check "events prints the alarm grid with titles" $?
[ "$(wc -l <"$work/alarms")" = 5 ]; check "events prints a row an alarm" $?
"$cli" --home "$home" --date-format 2 events "$samples/SHEAT01.FDT" --tab flag >"$work/flags"
printf '設定時刻\tメッセージ\t表示\t表示位置\t\n04/03/2024 09:30:00\tロット 101 昇温確認\tON\t3\t\n' >"$work/flags_head"
head -n 2 "$work/flags" | cmp -s - "$work/flags_head"; check "events --tab flag in the date format" $?
[ "$(wc -l <"$work/flags")" = 10 ]; check "events prints a row a flag" $?
"$cli" --home "$home" events "$samples/SHEAT01.FDT" --tab message | wc -l | grep -qx 37; check "events --tab message" $?
"$cli" --home "$home" events "$samples/SHEAT01.FDT" --tab bogus >/dev/null 2>&1
[ $? = 1 ]; check "events with an unknown tab is a usage error" $?
empty_home; check "events leaves no working files" $?

"$cli" --home "$home" cursor-stats "$samples/SHEAT01.FDT" --cursor1 '2024/03/04 18:38:33' --cursor2 1709544600 >"$work/cs"
check "cursor-stats exits 0" $?
printf '2024/03/04 09:30:00  to  2024/03/04 18:38:30\t0 日  09:08:30\t3292\n\tCH1\tCH2\tCH3\tCH4\t\n\t炉内温度\t炉内温度\t炉内温度\tワーク温\t\n\t 上     \t 中     \t 下     \t度      \t\n\tﾟC     \tﾟC     \tﾟC     \tﾟC     \t\n最大値\t897.2\t848.5\t845.5\t806.5\t\n最小値\t36.8\t35.5\t32.5\t27.9\t\n平均値\t543.6\t540.6\t537.6\t511.9\t\n' >"$work/cs_expected"
cmp -s "$work/cs" "$work/cs_expected"; check "cursor-stats prints the span line and the grid" $?
"$cli" --home "$home" --decimal-char , cursor-stats "$samples/SHEAT01.FDT" --cursor1 0 --cursor2 0 --group 2 >"$work/cs2"
sed -n 1p "$work/cs2" | grep -q $'^2024/03/04 08:00:00  to  2024/03/04 08:00:00\t0 日  00:00:00\t1$'; check "cursor-stats on equal cursors is one sample" $?
sed -n 2p "$work/cs2" | grep -qx $'\tCH5\tCH9\tCH8\tCH11\t'; check "cursor-stats --group picks the group" $?
sed -n 8p "$work/cs2" | grep -q $'^平均値\t            -   \t[0-9]*,[0-9]'; check "cursor-stats follows the decimal character" $?
"$cli" --home "$home" cursor-stats "$samples/SHEAT01.FDT" --cursor1 0 >/dev/null 2>&1
[ $? = 1 ]; check "cursor-stats without --cursor2 is a usage error" $?
"$cli" --home "$home" cursor-stats "$samples/SHEAT01.FDT" --cursor1 0 --cursor2 0 --group 4 >/dev/null 2>&1
[ $? = 1 ]; check "cursor-stats on a group without members is a usage error" $?
empty_home; check "cursor-stats leaves no working files" $?
"$cli" events --help | grep -q -- '--tab alarm|message|flag'; check "events --help" $?
"$cli" cursor-stats --help | grep -q -- '--cursor1 T1 --cursor2 T2 \[--group G\]'; check "cursor-stats --help" $?

echo "cli: $passed passed, $failed failed"
[ "$failed" = 0 ]
