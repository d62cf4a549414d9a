# common.sh - sourced by the scripts: place, headings, building.

s_root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
s_jobs=${MURV_JOBS:-$(nproc)}
cd "$s_root" || exit 1
# shellcheck source=scripts/packages.sh
. scripts/packages.sh

# step TEXT... - heading of a stage, with the seconds since the script began.
step()
{
    echo
    echo "==> $* [${SECONDS}s]"
}

# die TEXT... - ends the script with a message.
die()
{
    echo "${0##*/}: $*" >&2
    exit 1
}

# wantNodePackages - installs into build/node what tests/delivery/package.json names; without npm, tests are skipped.
wantNodePackages()
{
    local wanted=tests/delivery/package.json installed=build/node/package.json
    if [ -d build/node/node_modules ] && cmp -s $wanted $installed; then
        return
    fi
    if ! command -v npm >/dev/null; then
        echo "NOT TESTED: npm is not installed, and so neither are the packages of $wanted"
        return
    fi
    mkdir -p build/node
    cp $wanted $installed
    npm install --prefix build/node --no-audit --no-fund --loglevel=error >/dev/null \
        || echo "NOT TESTED: npm cannot install the packages of $wanted"
}

# installNodePackages FOLDER - installs below FOLDER what its package-lock.json names.
installNodePackages()
{
    command -v npm >/dev/null || needPackages npm
    (cd "$1" && npm ci --no-audit --no-fund --loglevel=error) || die "npm could not install what $1/ needs"
}

# buildDemo [TARGET...] - builds library, tool and examples, or the targets, in build/demo. Needs s_packagesBuild only.
buildDemo()
{
    local log
    log=$(mktemp)
    cmake -S . -B build/demo -G Ninja -DCMAKE_BUILD_TYPE=Release -DMURV_BUILD_TESTS=OFF -DMURV_BUILD_EXAMPLES=ON \
        >"$log" 2>&1 || { cat "$log"; rm -f "$log"; die "configuring failed"; }
    rm -f "$log"
    # Lines of progress are for terminals; a log gets the last one only.
    if [ -t 1 ]; then
        cmake --build build/demo -j "$s_jobs" ${1:+--target "$@"}
    else
        cmake --build build/demo -j "$s_jobs" ${1:+--target "$@"} | tail -n 1
    fi
}

# buildPreset PRESET [TARGET...] - configures and builds build/PRESET; all targets when none is named.
buildPreset()
{
    local preset=$1
    shift
    cmake --preset "$preset" >"/tmp/murv-configure-$$.log" 2>&1 || {
        cat "/tmp/murv-configure-$$.log"
        rm -f "/tmp/murv-configure-$$.log"
        die "configuring '$preset' failed"
    }
    rm -f "/tmp/murv-configure-$$.log"
    cmake --build --preset "$preset" -j "$s_jobs" ${1:+--target "$@"} || die "building '$preset' failed"
}

# testPreset PRESET - runs ctest in build/PRESET; its summary is the last thing printed. What single tests could not try
# is shown before that, for ctest counts their programs as passed.
testPreset()
{
    local log=build/$1/Testing/Temporary/LastTest.log status=0 summary
    summary=$(mktemp)
    ctest --preset "$1" -j "$s_jobs" --no-label-summary | tee "$summary" || status=$?
    if grep -qs "NOT TESTED" "$log"; then
        echo
        grep -h "NOT TESTED" "$log" | sort -u
        echo
        sed -n '/ tests passed, /,$p' "$summary"
    fi
    rm -f "$summary"
    return $status
}
