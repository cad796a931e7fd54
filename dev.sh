#!/usr/bin/env bash
# Recscope developer entry point on Debian 12.
#   ./dev.sh run [FILE...]   install what is missing, build, start the viewer
#                            (on the bundled sample record when no file is named)
#   ./dev.sh test            install what is missing, build, run every test
set -euo pipefail
cd "$(dirname "$0")"

PACKAGES=(
  build-essential cmake ninja-build pkg-config
  qt6-base-dev qt6-serialport-dev qt6-svg-dev libgl-dev
  libcurl4-openssl-dev libgtest-dev libgmock-dev libbenchmark-dev
  python3-pyftpdlib
  clang-14 libclang-rt-14-dev
  fonts-ipafont-gothic xvfb xauth
  desktop-file-utils shared-mime-info dpkg-dev file
)

install_missing() {
  local missing=()
  for p in "${PACKAGES[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "Installing: ${missing[*]}"
  local sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}"
}

build() {
  cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
  cmake --build build -j "$(nproc)"
}

build_fuzz() {
  # The file readers are fuzzed with libFuzzer, which needs clang: a second,
  # Qt-free build of the core alone.
  CXX=clang++-14 cmake -S . -B build-fuzz -G Ninja -DRECSCOPE_FUZZ=ON \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
  cmake --build build-fuzz -j "$(nproc)"
}

case "${1:-}" in
  run)
    shift
    install_missing
    build
    if [ $# -eq 0 ]; then
      set -- samples/S*.FDT
      [ -e "$1" ] || set --
    fi
    exec build/bin/recscope "$@"
    ;;
  test)
    install_missing
    build
    ctest --test-dir build --output-on-failure -j "$(nproc)"
    if [ -f fuzz/CMakeLists.txt ]; then
      build_fuzz
      ctest --test-dir build-fuzz --output-on-failure
    fi
    ;;
  *)
    echo "usage: ./dev.sh run [FILE...] | ./dev.sh test" >&2
    exit 1
    ;;
esac
