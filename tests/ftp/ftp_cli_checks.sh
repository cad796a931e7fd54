#!/usr/bin/env bash
# recscope-cli ftp-list, ftp-get and ftp-delete from the outside, against the test
# FTP server on 127.0.0.1: outputs, files byte for byte, exit statuses and the
# one-line refusals, hostile names and a cut transfer.
set -u
cli=$1
server_script=$2
work=$(mktemp -d)
pids=()
cleanup() {
  for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null; wait "$pid" 2>/dev/null; done
  rm -rf "$work"
}
trap cleanup EXIT
passed=0
failed=0
check() {
  if [ "$2" = 0 ]; then passed=$((passed + 1)); else failed=$((failed + 1)); echo "FAILED: $1"; fi
}

# start_server NAME [switches...]: serves $work/NAME/root; sets $port.
start_server() {
  local name=$1
  shift
  mkdir -p "$work/$name/root"
  /usr/bin/python3 "$server_script" --root "$work/$name/root" --port-file "$work/$name/port" \
    --lifetime 60 "$@" &
  pids+=($!)
  for _ in $(seq 1 150); do
    [ -s "$work/$name/port" ] && break
    sleep 0.1
  done
  port=$(cat "$work/$name/port")
}

home=$work/home
mkdir -p "$home"
run() { "$cli" --home "$home" "$@"; }

# The memory layout: record files in /S000000, totalize files in its T000000.
mkdir -p "$work/mem/root/S000000/T000000" "$work/mem/root/MEMORY"
head -c 3000 /dev/urandom >"$work/mem/root/S000000/S0001.FDT"
head -c 1024 /dev/urandom >"$work/mem/root/S000000/S0002.FDT"
head -c 400 /dev/urandom >"$work/mem/root/S000000/A0001.FDT"
head -c 2000 /dev/urandom >"$work/mem/root/S000000/T000000/T0001.FDT"
# A file of an older year: its list line carries the year and no time of day.
touch -d "2024-01-05 10:20" "$work/mem/root/S000000/S0002.FDT"
start_server mem --layout memory
mem=$port
login=(--user user --password pass)

run ftp-list 127.0.0.1 "${login[@]}" --port "$mem" >"$work/list" 2>"$work/err"
check "ftp-list exits 0" $?
year=$(( $(date +%Y) + 1 ))
today=$(date +%m/%d)
printf 'S0001.FDT\t%s/%s %s\t3 KB\nS0002.FDT\t2024/01/05 00:00:00\t1024  B\n' "$year" "$today" \
  "$(date -r "$work/mem/root/S000000/S0001.FDT" +%H:%M:00)" >"$work/list.expected"
diff "$work/list" "$work/list.expected"; check "ftp-list prints the browser's rows" $?
[ ! -s "$work/err" ]; check "ftp-list writes nothing on stderr" $?

run --date-format 2 ftp-list 127.0.0.1 "${login[@]}" --port "$mem" --totalize >"$work/tlist"
check "ftp-list --totalize exits 0" $?
grep -q "^T0001.FDT	$(date +%d/%m)/$year .*	2 KB$" "$work/tlist"; check "ftp-list --totalize lists T000000" $?
[ "$(wc -l <"$work/tlist")" = 1 ]; check "ftp-list --totalize lists T000000 alone" $?

mkdir -p "$work/out"
run ftp-get 127.0.0.1 "${login[@]}" --port "$mem" S0001.FDT --to "$work/out" >"$work/got"
check "ftp-get exits 0" $?
printf '%s\n%s\n' "$work/out/S0001.FDT" "$work/out/A0001.FDT" | cmp -s - "$work/got"
check "ftp-get prints the file and its alarm twin" $?
cmp -s "$work/out/S0001.FDT" "$work/mem/root/S000000/S0001.FDT"; check "record file byte for byte" $?
cmp -s "$work/out/A0001.FDT" "$work/mem/root/S000000/A0001.FDT"; check "alarm twin byte for byte" $?

run ftp-get 127.0.0.1 "${login[@]}" --port "$mem" S0001.FDT --to "$work/out" >/dev/null 2>"$work/err"
[ $? = 2 ]; check "a file already there exits 2" $?
[ "$(cat "$work/err")" = "error 30108: S0001.FDT このファイルは既にローカルにあります" ]
check "a file already there is one catalogue line" $?

run ftp-get 127.0.0.1 "${login[@]}" --port "$mem" S0002.FDT S0404.FDT --to "$work/out" \
  >"$work/got" 2>"$work/err"
[ $? = 2 ]; check "a missing file exits 2" $?
[ "$(cat "$work/err")" = "error 30109: S0404.FDT ファイルを取得できませんでした" ]
check "a missing file is named" $?
[ "$(cat "$work/got")" = "$work/out/S0002.FDT" ]; check "the file beside it still comes" $?

run ftp-delete 127.0.0.1 "${login[@]}" --port "$mem" S0001.FDT S0404.FDT >"$work/deleted" 2>"$work/err"
[ $? = 2 ]; check "ftp-delete of a missing file exits 2" $?
[ "$(cat "$work/deleted")" = "S0001.FDT" ]; check "ftp-delete prints what it deleted" $?
[ "$(cat "$work/err")" = "error 30107: S0404.FDT ファイルを削除できません" ]
check "ftp-delete names what it could not delete" $?
[ ! -e "$work/mem/root/S000000/S0001.FDT" ] && [ ! -e "$work/mem/root/S000000/A0001.FDT" ]
check "ftp-delete takes the alarm twin" $?
[ -e "$work/mem/root/S000000/S0002.FDT" ]; check "ftp-delete leaves the others" $?
run ftp-delete 127.0.0.1 "${login[@]}" --port "$mem" --totalize T0001.FDT >/dev/null
check "ftp-delete --totalize exits 0" $?
[ ! -e "$work/mem/root/S000000/T000000/T0001.FDT" ]; check "ftp-delete --totalize deletes in T000000" $?

run ftp-list 127.0.0.1 --user user --password wrong --port "$mem" >/dev/null 2>"$work/err"
[ $? = 2 ] && [ "$(cat "$work/err")" = "error 30001: 接続できません" ]
check "a wrong password is refused with 30001" $?
run ftp-list 127.0.0.1 --user user --port "$mem" >/dev/null 2>&1
[ $? = 1 ]; check "a missing password is a usage error" $?
run ftp-list 127.0.0.1 "${login[@]}" --port 0 >/dev/null 2>&1
[ $? = 1 ]; check "a port out of range is a usage error" $?

# The flat layout from a hostile server: names that must never become files, and
# every transfer cut in the middle.
mkdir -p "$work/bad/root/T000000"
head -c 40000 /dev/urandom >"$work/bad/root/S0001.FDT"
start_server bad --hostile-names --cut-transfer
bad=$port
run ftp-list 127.0.0.1 "${login[@]}" --port "$bad" >"$work/list"
check "ftp-list on the hostile server exits 0" $?
[ "$(cut -f1 "$work/list")" = "S0001.FDT" ]; check "hostile names never show" $?
mkdir -p "$work/victim/target"
run ftp-get 127.0.0.1 "${login[@]}" --port "$bad" S0001.FDT ../x.FDT /etc/S1.FDT 'C:S2.FDT' \
  --to "$work/victim/target" >"$work/got" 2>"$work/err"
[ $? = 2 ]; check "a cut transfer and hostile names exit 2" $?
[ "$(cat "$work/err")" = "error 30109: S0001.FDT ../x.FDT /etc/S1.FDT C:S2.FDT ファイルを取得できませんでした" ]
check "a cut transfer and hostile names are not fetched" $?
[ ! -s "$work/got" ]; check "nothing is printed as written" $?
[ -z "$(ls -A "$work/victim/target")" ]; check "the target folder stays empty" $?
[ "$(ls -A "$work/victim")" = "target" ]; check "nothing lands beside the target folder" $?
[ ! -e /etc/S1.FDT ]; check "nothing lands in /etc" $?

# A server that refuses logins, and one that answers too slowly.
start_server refuse --refuse-login
start=$(date +%s)
run ftp-list 127.0.0.1 "${login[@]}" --port "$port" >/dev/null 2>"$work/err"
[ $? = 2 ] && [ "$(cat "$work/err")" = "error 30001: 接続できません" ]
check "a refused login gives 30001" $?
[ $(( $(date +%s) - start )) -lt 15 ]; check "a refused login returns in time" $?
start_server slow --slow 8
start=$(date +%s)
RECSCOPE_FTP_TIMEOUT=2 "$cli" --home "$home" ftp-list 127.0.0.1 "${login[@]}" --port "$port" \
  >/dev/null 2>"$work/err"
[ $? = 2 ] && [ "$(cat "$work/err")" = "error 30001: 接続できません" ]
check "a slow server gives 30001" $?
[ $(( $(date +%s) - start )) -lt 6 ]; check "a slow server returns within its limit" $?

"$cli" --help | grep -q "ftp-list"; check "--help names ftp-list" $?
"$cli" ftp-get --help | grep -q -- "--to DIR"; check "ftp-get --help" $?
"$cli" ftp-delete --help | grep -q "Usage: recscope-cli ftp-delete"; check "ftp-delete --help" $?

echo "ftp cli checks: $passed passed, $failed failed"
[ "$failed" = 0 ]
