#!/usr/bin/env bash
# The installed tree and the Debian package, checked file by file from the outside.
#   install_checks.sh BUILD_DIR
set -euo pipefail
build=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }

# 1. An install into a temporary prefix holds exactly the delivered files.
cmake --install "$build" --prefix "$work/prefix" >/dev/null
(cd "$work/prefix" && find . -type f | sort) >"$work/files"
expected="./bin/recscope
./bin/recscope-cli
./share/applications/recscope.desktop
./share/icons/hicolor/scalable/apps/recscope.svg
./share/mime/packages/recscope.xml
./share/recscope/VIEWERCOM.INI
./share/recscope/samples/AHEAT01.FDT
./share/recscope/samples/FHEAT01.FDT
./share/recscope/samples/SHEAT01.FDT
./share/recscope/samples/THEAT01.FDT
./share/recscope/samples/text/AHEAT01.FDT
./share/recscope/samples/text/FHEAT01.FDT
./share/recscope/samples/text/SHEAT01.FDT
./share/recscope/samples/text/THEAT01.FDT"
for name in InitSet.txt DailyReportFormat.txt MonthlyReportFormat.txt AnnualReportFormat.txt; do
  [ -e "$(dirname "$0")/../../resources/$name" ] && expected="$expected
./share/recscope/$name"
done
expected=$(echo "$expected" | sort)
[ "$(cat "$work/files")" = "$expected" ] || { fail "installed files differ"; diff <(echo "$expected") "$work/files" || true; }
cmp -s "$work/prefix/share/recscope/VIEWERCOM.INI" "$(dirname "$0")/../../resources/VIEWERCOM.INI" ||
  fail "VIEWERCOM.INI is not the delivered one"
cmp -s "$work/prefix/share/recscope/samples/SHEAT01.FDT" "$(dirname "$0")/../../samples/SHEAT01.FDT" ||
  fail "the sample record differs"

# 2. The desktop entry and the file type are valid.
desktop-file-validate "$work/prefix/share/applications/recscope.desktop" || fail "desktop entry"
grep -q '^MimeType=application/x-recscope-record;$' "$work/prefix/share/applications/recscope.desktop" ||
  fail "desktop entry does not open record files"
grep -q '^Exec=recscope %F$' "$work/prefix/share/applications/recscope.desktop" || fail "Exec line"
mkdir -p "$work/mime/packages"
cp "$work/prefix/share/mime/packages/recscope.xml" "$work/mime/packages/"
update-mime-database "$work/mime" >/dev/null 2>&1 || fail "mime database"
grep -q 'application/x-recscope-record:S\*.FDT:cs' "$work/mime/globs2" || fail "S*.FDT glob"
grep -q 'application/x-recscope-record:s\*.fdt:cs' "$work/mime/globs2" || fail "s*.fdt glob"
if grep -q 'application/x-recscope-record:A' "$work/mime/globs2"; then fail "companions matched"; fi

# 3. An installed copy homes in the user's data folder and fills it there.
HOME="$work/user" XDG_DATA_HOME="" RECSCOPE_HOME="" \
  "$work/prefix/bin/recscope-cli" info "$work/prefix/share/recscope/samples/SHEAT01.FDT" >/dev/null ||
  fail "installed recscope-cli info"
data="$work/user/.local/share/Recscope/Recscope"
cmp -s "$data/VIEWERCOM.INI" "$work/prefix/share/recscope/VIEWERCOM.INI" ||
  fail "the user's folder was not filled"
[ -z "$(find "$work/prefix" -newer "$work/files" -type f)" ] || fail "the installed tree was written"
[ -z "$(ls "$data" | grep OPL || true)" ] || fail "working files left in the user's folder"

# 4. The package: its contents and its run-time dependencies from the linked libraries.
(cd "$build" && cpack -G DEB -B "$work/pkg" >/dev/null 2>&1)
deb=$(ls "$work"/pkg/recscope_*_amd64.deb)
dpkg-deb -c "$deb" | awk '{print $6}' | grep -v '/$' | sort >"$work/debfiles"
[ "$(cat "$work/debfiles")" = "$(echo "$expected" | sed 's#^\./#./usr/#' | sort)" ] ||
  { fail "package contents differ"; diff <(echo "$expected" | sed 's#^\./#./usr/#' | sort) "$work/debfiles" || true; }
depends=$(dpkg-deb -f "$deb" Depends)
for lib in libqt6widgets6 libqt6gui6 libqt6core6 libqt6svg6 libstdc++6; do
  echo "$depends" | grep -q "$lib" || fail "Depends lacks $lib: $depends"
done
dpkg-deb -x "$deb" "$work/x"
if file "$work/x/usr/bin/recscope" | grep -q "not stripped"; then
  fail "programs in the package are not stripped"
fi

[ "$failures" -eq 0 ] || { echo "$failures check(s) failed"; exit 1; }
echo "install checks passed"
