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

# expectFile NAME - there must be a file of that name, below share/, with text.
expectFile()
{
    [ -s "$work/prefix/share/$1" ] || fail "share/$1 was not installed"
}

# 5. The manual of the library, licence, pages and examples; links between pages lead somewhere.
for name in man/man3/murv.3 man/man5/murv.5 man/man5/murv-layout.5 doc/murv/LICENSE doc/murv/docs/layouts.md \
    doc/murv/examples/weather.cpp doc/murv/examples/weather.murv; do
    expectFile $name
done
for page in README.md docs/install.md docs/tool.md docs/layouts.md; do
    for link in $(grep -oE '\]\([^):#]+' "$work/prefix/share/doc/murv/$page" | cut -c3- | sort -u); do
        case $link in
        *CONTRIBUTING.md) ;;  # for those who have the sources
        *) expectFile "doc/murv/$(dirname $page)/$link" || exit 1 ;;
        esac
    done
done

# 6. The installed tool, where one was built, with manual and completions.
if [ -x "$work/prefix/bin/murv" ]; then
    "$work/prefix/bin/murv" --help >/dev/null || fail "the installed tool does not start"
    "$work/prefix/bin/murv" layouts >/dev/null || fail "the installed tool finds no layouts"
    for name in man/man1/murv.1 man/man1/murv-fmt.1 bash-completion/completions/murv zsh/site-functions/_murv \
        fish/vendor_completions.d/murv.fish; do
        expectFile $name
    done
fi
