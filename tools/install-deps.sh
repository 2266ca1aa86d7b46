#!/bin/sh
# Installs, from Debian's packages, everything the build and the tests need.
# Idempotent: when every package is present it installs nothing.
set -eu
PKGS="cmake ninja-build g++ clang libclang-rt-14-dev googletest libgtest-dev
 g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix binutils-mingw-w64-x86-64
 binutils-mingw-w64-i686 wine wine64 xvfb xauth fonts-liberation imagemagick nsis python3 xdotool
 libxfixes3 libpixman-1-dev libstb-dev libbenchmark-dev"
missing=""
for p in $PKGS; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing="$missing $p"
done
[ -z "$missing" ] && exit 0
echo "install-deps: installing$missing" >&2
SUDO=""; [ "$(id -u)" = 0 ] || SUDO="sudo"
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends $missing >/dev/null
