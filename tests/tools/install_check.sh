#!/usr/bin/env bash
# Installs the build tree into a scratch prefix and builds a tiny host against
# it both ways, by the CMake package and by pkg-config, and runs both.
#   install_check.sh BUILD_DIR SOURCE_DIR
set -euo pipefail
build="$1" source="$2"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
prefix="$work/prefix"
cmake --install "$build" --prefix "$prefix" >/dev/null
for f in bin/kelps2pdf include/kelumpd64/conversion.h include/kelumpd64/limits.h \
         lib/libkelumpd64.so lib/cmake/kelumpd64/kelumpd64Config.cmake lib/pkgconfig/kelumpd64.pc; do
    [ -e "$prefix/$f" ] || { echo "not installed: $f"; exit 1; }
done
# The installed program finds the installed library by itself.
"$prefix/bin/kelps2pdf" --version

cmake -S "$source/tests/tools/install" -B "$work/by-cmake" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/by-cmake" >/dev/null
LD_LIBRARY_PATH="$prefix/lib" "$work/by-cmake/host" >/dev/null
echo "CMake package: the host converts"

if ! command -v pkg-config >/dev/null; then
    echo "pkg-config not installed: that half is skipped"
    exit 0
fi
flags="$(PKG_CONFIG_PATH="$prefix/lib/pkgconfig" pkg-config --cflags --libs kelumpd64)"
cc -D_GNU_SOURCE -o "$work/by-pkg-config" "$source/tests/tools/install/host.c" $flags
LD_LIBRARY_PATH="$prefix/lib" "$work/by-pkg-config" >/dev/null
echo "pkg-config: the host converts"
