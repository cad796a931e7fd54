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

mkdir -p "$work/csv" "$work/csvc"
cp "$samples"/SHEAT01.FDT "$samples"/AHEAT01.FDT "$work/csv/"
cp "$samples"/SHEAT01.FDT "$work/csvc/"
"$cli" --home "$home" csv "$work/csv/SHEAT01.FDT" >"$work/csvout" 2>"$work/err"
check "csv exits 0" $?
[ "$(cat "$work/csvout")" = "$work/csv/SHEAT01.CSV
$work/csv/AHEAT01.CSV" ]; check "csv names the two files" $?
empty_home; check "csv leaves no working files" $?
python3 - "$work/csv/SHEAT01.CSV" "$work/csv/AHEAT01.CSV" ',' '.' <<'PY'
import csv, sys, re
path, alarm, sep, dec = sys.argv[1:5]
with open(path, encoding="cp932", newline="") as f:
    rows = list(csv.reader(f, delimiter=sep))
assert rows[0][0].startswith("SHEAT01.FDT"), rows[0]
assert rows[3][:4] == ["12", "04", "08", "03"] and rows[3][4].strip() == "04", rows[3]
assert [r[0] for r in rows[4:16]] == ["CH%02d" % n for n in range(1, 13)]
assert [r[0] for r in rows[16:19]] == ["DI01", "DI02", "DI03"]
assert [r[0] for r in rows[19:23]] == ["G1", "G2", "G3", "G4"]
assert rows[23][1:3] == ["CH01MIN", "CH01MAX"] and rows[23][-1] == "DI03PV "
# With digital inputs the rows run on in one line: 14 fields a record.
assert len(rows) == 25, len(rows)
data = rows[24]
assert len(data) == 25920 * 14 + 1 and data[-1] == "", len(data)
time = re.compile(r"^\d{4}/[1-9]\d?/[1-9]\d? \d\d:\d\d:\d\d$")
for i in range(0, len(data) - 1, 14):
    assert time.match(data[i]), data[i]
    for v in data[i + 1:i + 14]:
        assert len(v) >= 7, v
        if "E" not in v:
            float(v.replace(dec, "."))
with open(alarm, encoding="cp932", newline="") as f:
    events = list(csv.reader(f, delimiter=sep))[3:]
assert events and all(e[1] in ("A", "M") for e in events), events[:3]
PY
check "csv files read back with the csv module" $?
before=$(md5sum <"$work/csv/SHEAT01.CSV")
"$cli" --home "$home" csv "$work/csv/SHEAT01.FDT" >/dev/null 2>"$work/err"
[ $? = 2 ] && [ "$(cat "$work/err")" = "error 11130: ファイルが既に存在します。" ]
check "csv over existing files exits 2 with 11130" $?
[ "$(md5sum <"$work/csv/SHEAT01.CSV")" = "$before" ]; check "csv refused touches nothing" $?
"$cli" --home "$home" --decimal-char , csv "$work/csvc/SHEAT01.FDT" >/dev/null
check "csv with a decimal comma exits 0" $?
python3 - "$work/csvc/SHEAT01.CSV" <<'PY'
import csv, sys
with open(sys.argv[1], encoding="cp932", newline="") as f:
    rows = list(csv.reader(f, delimiter=";"))
assert rows[4][5] == "    0,0" and rows[4][6] == " 1200,0", rows[4]
assert float(rows[24][1].replace(",", ".")) > 0
PY
check "decimal comma gives ';' between fields and ',' in values" $?
[ ! -e "$work/csvc/AHEAT01.CSV" ] && [ "$(ls "$work/csvc" | wc -l)" = 2 ]
check "a record without alarm file gives one CSV" $?
printf 'garbage' >"$work/csv/SBAD.FDT"
"$cli" --home "$home" csv "$work/csv/SBAD.FDT" >/dev/null 2>"$work/err"
[ $? = 2 ] && grep -q '^error 11190: ' "$work/err" && [ ! -e "$work/csv/SBAD.CSV" ]
check "csv of a broken record is refused and writes nothing" $?

mkdir -p "$work/save"
cp "$samples"/SHEAT01.FDT "$samples"/AHEAT01.FDT "$work/save/"
"$cli" --home "$home" saveas "$work/save/SHEAT01.FDT" --from "2024/03/05 00:00:00" \
  --to "2024/03/05 00:00:50" --out "$work/save/sday5.fdt" >"$work/saveout" 2>"$work/err"
check "saveas exits 0" $?
[ "$(cat "$work/saveout")" = "$work/save/sday5.fdt
$work/save/Aday5.fdt" ]; check "saveas names the record and its alarm file" $?
"$cli" --home "$home" info "$work/save/sday5.fdt" >"$work/saveinfo" 2>/dev/null
grep -q '"RecordCount": 6' "$work/saveinfo"; check "the saved range opens with its 6 records" $?
python3 - "$samples/SHEAT01.FDT" "$work/save/sday5.fdt" <<'PY'
import json, subprocess, sys
src, out = open(sys.argv[1], "rb").read(), open(sys.argv[2], "rb").read()
# Header region of the binary record: 108 + 56 A + 24 D + 26 G + 2; 12 channels, 3 DI, 4 groups.
start = 108 + 56 * 12 + 24 * 3 + 26 * 4 + 2
length = (len(src) - start) // 25920
first = (1709596800 - 1709539200) // 10  # 2024/03/05 00:00:00 from 2024/03/04 08:00:00
assert out == src[:start] + src[start + first * length:start + (first + 6) * length]
PY
check "saveas copies header and range byte for byte" $?
"$cli" --home "$home" saveas "$work/save/SHEAT01.FDT" --from 1709596800 --to 1709596850 \
  --out "$work/save/SDAY6.FDT" >/dev/null 2>"$work/err"
[ $? = 0 ]; check "saveas takes times in seconds" $?
cp "$work/save/Aday5.fdt" "$work/save/ADAY7.FDT"
"$cli" --home "$home" saveas "$work/save/SHEAT01.FDT" --from 1709596800 --to 1709596850 \
  --out "$work/save/SDAY7.FDT" >/dev/null 2>"$work/err"
[ $? = 2 ] && grep -q '^error 11185: ' "$work/err" && [ ! -e "$work/save/SDAY7.FDT" ]
check "saveas over an alarm file without --yes exits 2 with 11185" $?
"$cli" --home "$home" saveas "$work/save/SHEAT01.FDT" --from 1709596800 --to 1709596850 \
  --out "$work/save/SDAY7.FDT" --yes >/dev/null 2>"$work/err"
[ $? = 0 ] && [ -e "$work/save/SDAY7.FDT" ]; check "saveas --yes overwrites the alarm file" $?
"$cli" --home "$home" saveas "$work/save/SHEAT01.FDT" --from 1709596800 --to 1709596850 \
  --out "$work/save/SDAY7.FDT" --yes >/dev/null 2>"$work/err"
[ $? = 2 ] && grep -q '^error 11181: ' "$work/err"; check "saveas over a record exits 2 with 11181" $?
"$cli" --home "$home" saveas "$work/save/SHEAT01.FDT" --from 1709596800 --to 1709596850 \
  --out "$work/save/XDAY8.FDT" >/dev/null 2>"$work/err"
[ $? = 2 ] && grep -q '^error 11180: ' "$work/err"; check "saveas with a wrong name exits 2 with 11180" $?
"$cli" --home "$home" saveas "$work/save/SHEAT01.FDT" --out "$work/save/SDAY9.FDT" >/dev/null 2>&1
[ $? = 1 ]; check "saveas without a range is a usage error" $?
empty_home; check "saveas leaves no working files" $?

reg=$work/reghome
mkdir -p "$reg"
"$cli" --home "$reg" registry list >"$work/reglist"
[ $? = 0 ] && [ ! -s "$work/reglist" ] && [ -f "$reg/ViewerFile.txt" ]
check "registry list on a new home makes an empty ViewerFile.txt" $?
"$cli" --home "$reg" registry add-group "熱処理炉" && "$cli" --home "$reg" registry add-group second &&
  "$cli" --home "$reg" registry add-file 1 "$samples/SHEAT01.FDT" "3日間" &&
  "$cli" --home "$reg" registry add-file "熱処理炉" "$samples/text/SHEAT01.FDT" &&
  "$cli" --home "$reg" registry move 1 2 up && "$cli" --home "$reg" registry move second up
check "registry changes exit 0" $?
printf '001\tsecond\n002\t熱処理炉\n002001\tSHEAT01.FDT\t%s\n002002\t3日間\t%s\n' \
  "$samples/text/SHEAT01.FDT" "$samples/SHEAT01.FDT" >"$work/regwant"
"$cli" --home "$reg" registry list | cmp -s - "$work/regwant"; check "registry list shows the groups and files" $?
python3 - "$reg/ViewerFile.txt" <<'PY'
import sys
data = open(sys.argv[1], "rb").read()
lines = data.split(b"\r\n")
assert lines[0] == b"V,100" and lines[1] == b"G,second", lines[:2]
assert lines[2] == "G,熱処理炉".encode("cp932"), lines[2]
assert lines[3].startswith(b"F,SHEAT01.FDT" + b" " * 53 + b","), lines[3]
assert lines[4][2:66] == "3日間".encode("cp932").ljust(64), lines[4]
assert lines[5] == b"" and len(lines) == 6
PY
check "ViewerFile.txt is code page 932 with names padded to 64 bytes" $?
"$cli" --home "$reg" registry add-group "" 2>"$work/err"
[ $? = 2 ] && grep -q '^error 41056: ' "$work/err"; check "registry refuses an empty group name" $?
"$cli" --home "$reg" registry add-group "$(printf '炉%.0s' $(seq 65))" 2>"$work/err"
[ $? = 2 ] && grep -q '^error 41059: ' "$work/err"; check "registry refuses a name of 130 bytes" $?
for n in $(seq 3 30); do "$cli" --home "$reg" registry add-group "g$n" || break; done
"$cli" --home "$reg" registry add-group g31 2>"$work/err"
[ $? = 2 ] && grep -q '^error 41050: ' "$work/err"; check "registry refuses the 31st group" $?
"$cli" --home "$reg" registry delete "熱処理炉" && [ -f "$samples/SHEAT01.FDT" ]
check "registry delete keeps the record files" $?
[ "$("$cli" --home "$reg" registry list | grep -c $'^[0-9]*\t')" = 29 ]; check "registry has 29 groups left" $?

mkdir -p "$work/couple"
python3 - "$samples/SHEAT01.FDT" "$work/couple" <<'PY'
import sys
src = open(sys.argv[1], "rb").read()
start = 108 + 56 * 12 + 24 * 3 + 26 * 4 + 2
length = (len(src) - start) // 25920
# Records 0..9999 and 12000..25919: 2000 records of the sample are missing between.
open(sys.argv[2] + "/SRUNA.FDT", "wb").write(src[:start + 10000 * length])
open(sys.argv[2] + "/SRUNB.FDT", "wb").write(src[:start] + src[start + 12000 * length:])
PY
"$cli" --home "$home" couple "$work/couple/SRUNB.FDT" "$work/couple/SRUNA.FDT" >"$work/coupleout" 2>"$work/err"
check "couple exits 0" $?
[ "$(cat "$work/coupleout")" = "$work/couple/SCUNB.FDT" ]; check "couple names the joined record" $?
python3 - "$samples/SHEAT01.FDT" "$work/couple/SCUNB.FDT" <<'PY'
import struct, sys
src, out = open(sys.argv[1], "rb").read(), open(sys.argv[2], "rb").read()
start = 108 + 56 * 12 + 24 * 3 + 26 * 4 + 2
length = (len(src) - start) // 25920
rec = lambda b, i: b[start + i * length:start + (i + 1) * length]
assert out[:start] == src[:start] and len(out) == len(src)
for i in list(range(0, 10000, 997)) + list(range(12000, 25920, 991)) + [9999, 12000, 25919]:
    assert rec(out, i) == rec(src, i), i
for i in range(10000, 12000):
    r = rec(out, i)
    assert struct.unpack("<i", r[:4])[0] == struct.unpack("<i", rec(src, i)[:4])[0]
    assert r[4:] == bytes(length - 4), i
PY
check "couple fills the gap with zero records a period apart" $?
"$cli" --home "$home" couple "$work/couple/SRUNB.FDT" "$work/couple/SRUNA.FDT" >/dev/null 2>"$work/err"
[ $? = 2 ] && grep -q '^error 19806: ' "$work/err"; check "couple over a target without --yes exits 2 with 19806" $?
"$cli" --home "$home" couple "$work/couple/SRUNB.FDT" "$work/couple/SRUNA.FDT" --yes >/dev/null
check "couple --yes overwrites" $?
"$cli" --home "$home" couple "$work/couple/SRUNA.FDT" "$work/couple/SRUNA.FDT" >/dev/null 2>"$work/err"
[ $? = 2 ] && grep -q '^error 19812: ' "$work/err"; check "couple of one file twice exits 2 with 19812" $?
cp "$samples/text/SHEAT01.FDT" "$work/couple/STXT.FDT"
"$cli" --home "$home" couple "$work/couple/SRUNA.FDT" "$work/couple/STXT.FDT" >/dev/null 2>"$work/err"
[ $? = 2 ] && grep -q '^error 19800: ' "$work/err" && [ ! -e "$work/couple/SCUNA.FDT" ]
check "couple of a binary and a text record exits 2 with 19800" $?
empty_home; check "couple leaves no working files" $?

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

"$cli" --home "$home" print-pdf "$samples/SHEAT01.FDT" --out "$work/p.pdf" --from '2024/03/04 08:00:00' --to '2024/03/05 08:00:00' --mode continuous --pages 3 --orientation landscape --title 'T' >"$work/pout"
check "print-pdf exits 0" $?
[ "$(sed -n 2p "$work/pout")" = 3 ]; check "print-pdf prints its page count" $?
head -c 5 "$work/p.pdf" | grep -q '%PDF-'; check "print-pdf writes a PDF" $?
if command -v pdftoppm >/dev/null; then
  pdftoppm -r 10 -png "$work/p.pdf" "$work/pp"
  [ "$(ls "$work"/pp*.png | wc -l)" = 3 ]; check "pdftoppm renders the print's three pages" $?
fi
"$cli" --home "$home" print-pdf "$samples/SHEAT01.FDT" --out "$work/s.pdf" --step 43200 --pages 2 --paper B5 --orientation portrait | sed -n 2p | grep -qx 2
check "print-pdf --step prints stepped pages" $?
empty_home; check "print-pdf leaves no working files" $?
"$cli" --home "$home" print-pdf "$samples/SHEAT01.FDT" --out "$work/x.pdf" --paper Letter >/dev/null 2>&1
[ $? = 1 ]; check "print-pdf with an unknown paper is a usage error" $?
"$cli" --home "$home" print-pdf "$samples/SHEAT01.FDT" --out "$work/x.pdf" --step 90 >/dev/null 2>&1
[ $? = 1 ]; check "print-pdf --step of no whole minutes is a usage error" $?
"$cli" print-pdf --help | grep -q -- '--paper A3|A4|A5|B4|B5'; check "print-pdf --help tells its options" $?

echo "cli: $passed passed, $failed failed"
[ "$failed" = 0 ]
