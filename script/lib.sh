# What the scripts of this folder share; each sources it first. They work from the project's root folder.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
export LC_ALL=C.UTF-8
export CMAKE_GENERATOR=Ninja

build_packages=(g++ cmake ninja-build)
demo_packages=("${build_packages[@]}" libxml2-utils php-cli php-dev unzip)
test_packages=("${demo_packages[@]}" clang clang-format clang-tidy doxygen dpkg-dev file libclang-rt-14-dev
               jq libexpat1-dev libgtest-dev locales man-db nlohmann-json3-dev parallel php-parser pkg-config
               postgresql python3 valgrind zlib1g-dev)
bench_packages=("${build_packages[@]}" libbenchmark-dev libktoblzcheck1-dev libxml2-dev php-cli php-dev python3 valgrind)

# quietly NAME COMMAND...: runs the command with its output in build/log/NAME.log, which is shown if it fails.
quietly() {
    local log=build/log/$1.log
    shift
    mkdir -p build/log
    if ! "$@" >"$log" 2>&1; then
        grep -vE '^\[ *[0-9]+[/%]' "$log" >&2 || true # without the progress of a build
        echo "Failed: $*" >&2
        exit 1
    fi
}

# as_root COMMAND...: by sudo for those who are not root and have it.
as_root() {
    if ((EUID == 0)); then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        echo "Only root can do this, and there is no sudo: $*" >&2
        return 1
    fi
}

# require_packages NAME...: installs what is missing; needs the network only then.
require_packages() {
    local package missing=()
    if ! command -v apt-get >/dev/null; then
        echo "Not a Debian: what corresponds to ${*} must be there already"
        return
    fi
    for package; do
        if [[ $(dpkg-query --show --showformat '${db:Status-Status}' "$package" 2>/dev/null) != installed ]]; then
            missing+=("$package")
        fi
    done
    if ((${#missing[@]})) && ((EUID != 0)) && ! command -v sudo >/dev/null; then
        echo "These packages are missing. Only root can install them, and there is no sudo:" >&2
        echo "    apt-get install ${missing[*]}" >&2
        exit 1
    fi
    if ((${#missing[@]})); then
        echo "Installing ${missing[*]}"
        quietly apt-update as_root apt-get update -q
        quietly apt-install as_root env DEBIAN_FRONTEND=noninteractive \
            apt-get install -q -y --no-install-recommends "${missing[@]}"
    fi
}

# configure_and_build PRESET FOLDER: a build that CMakePresets.json describes.
configure_and_build() {
    quietly "configure-$1" cmake --preset "$1"
    quietly "build-$1" cmake --build "$2"
}
