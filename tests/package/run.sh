#!/usr/bin/env bash
# Installs the build tree, moves it, and builds and runs a program outside against it, found in every way we offer.
#
# ctest calls it with CMAKE, BUILD_DIR, CONFIG, GENERATOR, CXX and CXXFLAGS in the environment. The installed tree is
# moved before it is used: neither the CMake package nor murv.pc may remember where it was installed first.
set -euo pipefail
cd "$(dirname "$0")"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail()
{
    echo "package: $*" >&2
    exit 1
}

# expectOutput PROGRAM LABEL - runs the program, which must print exactly consumer/expected.txt.
expectOutput()
{
    local program=$1 label=$2
    "$program" >"$work/output.txt" || fail "$label: the program failed with status $?"
    diff consumer/expected.txt "$work/output.txt" || fail "$label: unexpected output"
    echo "package: $label works"
}

"$CMAKE" --install "$BUILD_DIR" --config "$CONFIG" --prefix "$work/first" >"$work/install.log" \
    || { cat "$work/install.log"; fail "installing failed"; }
mv "$work/first" "$work/prefix"

# 1. find_package, shared and static.
"$CMAKE" -S consumer -B "$work/consumer" -G "$GENERATOR" -DCMAKE_BUILD_TYPE="$CONFIG" \
    -DCMAKE_PREFIX_PATH="$work/prefix" -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_CXX_FLAGS="${CXXFLAGS:-}" \
    >"$work/configure.log" 2>&1 || { cat "$work/configure.log"; fail "find_package: configuring failed"; }
"$CMAKE" --build "$work/consumer" >"$work/build.log" 2>&1 \
    || { cat "$work/build.log"; fail "find_package: building failed"; }
expectOutput "$work/consumer/consumer" "find_package, murv::murv"
expectOutput "$work/consumer/consumer_static" "find_package, murv::murv_static"

# 2. pkg-config, shared.
if ! command -v pkg-config >/dev/null; then
    fail "pkg-config is missing (Debian: pkg-config)"
fi
pcFile=$(find "$work/prefix" -name murv.pc)
[ -n "$pcFile" ] || fail "murv.pc was not installed"
export PKG_CONFIG_PATH=${pcFile%/*}
[ "$(pkg-config --modversion murv)" = "$(sed -n 's/^Version: //p' "$pcFile")" ] || fail "another murv.pc was read"
# shellcheck disable=SC2046,SC2086
"$CXX" -std=c++17 ${CXXFLAGS:-} consumer/main.cpp -o "$work/by-pkg-config" $(pkg-config --cflags --libs murv) \
    || fail "pkg-config: building failed"
libDir=$(pkg-config --variable=libdir murv)
export LD_LIBRARY_PATH=$libDir${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}
expectOutput "$work/by-pkg-config" "pkg-config, shared"

# 3. The shared library needs the standard library alone.
if command -v readelf >/dev/null && [ -z "${CXXFLAGS:-}" ]; then
    needed=$(readelf -d "$libDir/libmurv.so" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' \
        | grep -vE '^(libstdc\+\+|libc\+\+|libc\+\+abi|libgcc_s|libm|libc|ld-linux.*)\.so' || true)
    [ -z "$needed" ] || fail "the shared library links more than the standard library: $needed"
    readelf -d "$libDir/libmurv.so" | grep -q 'SONAME.*\[libmurv\.so\.1\]' || fail "the soname is not libmurv.so.1"
fi

# 4. The installed layouts are those of the sources.
diff -r ../../share/murv/layouts "$work/prefix/share/murv/layouts" >&2 || fail "other layouts are installed"

# 5. The installed tool, where one was built.
if [ -x "$work/prefix/bin/murv" ]; then
    "$work/prefix/bin/murv" --help >/dev/null || fail "the installed tool does not start"
fi
