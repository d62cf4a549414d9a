# packages.sh - sourced by the scripts: makes sure that Debian packages are there.
#
# When all are installed, nothing changes and no network is needed. Otherwise they are installed if we may (root, or
# sudo without a password); if not, the script names the missing ones and ends.

# needPackages PACKAGE... - returns when all are installed, else ends the script with status 1.
needPackages()
{
    if ! command -v dpkg-query >/dev/null; then
        echo "not a Debian system: these must be there under other names: $*" >&2
        return 0
    fi
    local missing=() package
    for package in "$@"; do
        [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0

    local asRoot=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null || ! sudo -n true 2>/dev/null; then
            echo "missing packages: ${missing[*]}" >&2
            echo "install them with: apt-get install --no-install-recommends ${missing[*]}" >&2
            exit 1
        fi
        asRoot=(sudo -n)
    fi
    echo "installing packages: ${missing[*]}"
    if ! { "${asRoot[@]}" apt-get update -qq \
        && "${asRoot[@]}" env DEBIAN_FRONTEND=noninteractive \
            apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null; }; then
        echo "could not install: ${missing[*]}" >&2
        exit 1
    fi
}

# What each kind of work needs.
s_packagesBuild=(g++ cmake ninja-build libcli11-dev nlohmann-json3-dev)
s_packagesPictures=("${s_packagesBuild[@]}" python3 bsdutils)
s_packagesTest=("${s_packagesBuild[@]}" git make pkg-config python3 libgtest-dev libgmock-dev
    libssl-dev libtomlplusplus-dev libpugixml-dev tshark mandoc zsh fish vim)
s_packagesClang=(clang libclang-rt-14-dev)
s_packagesCheck=("${s_packagesTest[@]}" "${s_packagesClang[@]}" clang-format clang-tidy libc++-13-dev
    libc6-dev-i386-cross)
s_packagesPackage=("${s_packagesBuild[@]}" git make pkg-config debhelper dpkg-dev fakeroot lintian mmdebstrap)
s_packagesCross=(cmake ninja-build g++-s390x-linux-gnu g++-i686-linux-gnu qemu-user-static libgtest-dev
    clang libc++-13-dev libc++abi-13-dev)
s_packagesBench=("${s_packagesBuild[@]}" libbenchmark-dev rapidjson-dev libsimdjson-dev
    libmsgpack-cxx-dev libssl-dev libprotobuf-dev protobuf-compiler)
s_packagesBrowser=(nodejs chromium)
s_packagesExplorer=(cmake ninja-build emscripten nlohmann-json3-dev esbuild "${s_packagesBrowser[@]}")
s_packagesSite=(doxygen doxygen-awesome-css python3)
