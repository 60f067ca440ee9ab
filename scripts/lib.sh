# SPDX-License-Identifier: MIT

# Shared by the scripts of this folder: installing what is missing and building. Everything here prints to standard
# error and leaves standard input alone, so that a session can be piped into scripts/run.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# need COMMAND_OR_FILE=PACKAGE ...: installs the packages whose command (or file) is not there.
need() {
    local missing=() pair what
    for pair in "$@"; do
        what=${pair%%=*}
        [[ $what == /* && -e $what ]] || command -v "$what" >/dev/null 2>&1 || missing+=("${pair#*=}")
    done
    ((${#missing[@]})) || return 0
    local sudo=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null 2>&1; then
            echo "Missing packages, and neither root nor sudo to install them: ${missing[*]}" >&2
            exit 1
        fi
        sudo=(sudo)
    fi
    echo "Installing: ${missing[*]}" >&2
    if ! { "${sudo[@]}" apt-get -qq update &&
        "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq -y --no-install-recommends install "${missing[@]}"; } \
        </dev/null >&2; then
        echo "Could not install: ${missing[*]}" >&2
        exit 1
    fi
}

compiler_packages=(g++=g++ cmake=cmake make=make /usr/include/curses.h=libncurses-dev)
test_packages=(/usr/include/gtest/gtest.h=libgtest-dev python3=python3 strace=strace ps=procps rlwrap=rlwrap
    /usr/include/vterm.h=libvterm-dev)
package_packages=(pandoc=pandoc mandoc=mandoc lintian=lintian dpkg-shlibdeps=dpkg-dev file=file)

# build PRESET DIRECTORY [TARGET] [CMAKE_OPTION...]: configures when needed and builds with all cores. Prints the
# log only when it fails.
build() {
    local preset=$1 dir=$root/$2 target=${3:-all} log
    shift 2
    (($#)) && shift
    log=$(mktemp)
    if ! {
        { [ -f "$dir/Makefile" ] && ! (($#)) ||
            (cd "$root" && cmake --preset "$preset" "$@"); } &&
            cmake --build "$dir" --target cmake_check_build_system && # learns of targets that are new
            cmake --build "$dir" --target "$target" -j "$(nproc)"
    } </dev/null >"$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        echo "The build failed ($preset)." >&2
        exit 1
    fi
    rm -f "$log"
}

# run_tests DIRECTORY [CTEST_OPTION...]: the failures with their output, and the summary.
run_tests() {
    local dir=$root/$1
    shift
    ctest --test-dir "$dir" -j "$(nproc)" --output-on-failure --no-tests=error "$@" </dev/null 2>&1 |
        grep -vE '^ +Start +[0-9]+:|^ *[0-9]+/[0-9]+ Test .* Passed |^Internal ctest|^Test project|^$'
}
