# Shared by the scripts of the root folder: goes to the repository's root and defines the helpers.
# shellcheck shell=bash
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
logs=$root/build/log
jobs=${PICTOR_JOBS:-$(nproc)}
mkdir -p "$logs"

say() { printf '%s\n' "$*"; }

fail() {
    printf '%s\n' "$*" >&2
    exit 1
}

# quietly NAME COMMAND...: the output goes to build/log/NAME.log, its end is shown on failure.
quietly() {
    local log=$logs/$1.log
    shift
    "$@" >"$log" 2>&1 && return
    local code=$?
    tail -n 60 "$log" >&2
    printf 'Failed (%d): %s\nWhole output: %s\n' "$code" "$*" "$log" >&2
    return "$code"
}

# listed_packages build|checks|devices: the Debian packages that all but ./check need, those with
# what ./check needs, or all.
listed_packages() {
    local last='^## checks'
    [ "$1" = checks ] && last='^## devices'
    [ "$1" = devices ] && last='^## end'
    sed -e "/$last/,\$d" -e 's/#.*//' -e '/^[[:space:]]*$/d' packaging/debian-packages.txt
}

# need_packages build|checks|devices: installs what is missing, in one go.
need_packages() {
    command -v dpkg-query >/dev/null || return 0
    local listed missing
    mapfile -t listed < <(listed_packages "$1")
    mapfile -t missing < <(comm -23 <(printf '%s\n' "${listed[@]}" | sort) \
        <(dpkg-query -W -f='${db:Status-Status} ${Package}\n' "${listed[@]}" 2>/dev/null |
            sed -n 's/^installed //p' | sort))
    [ ${#missing[@]} -eq 0 ] && return
    say "Installing ${#missing[@]} Debian packages: ${missing[*]}"
    local as_root=()
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    if [ ${#as_root[@]} -gt 0 ] && ! command -v sudo >/dev/null; then
        say "Not root and no sudo: please install them, going on without."
        return
    fi
    if ! quietly packages install_packages "${missing[@]}"; then
        say "They could not be installed: please install them by hand, going on without."
    fi
}

install_packages() {
    local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get)
    local options=(install -y --no-install-recommends "$@")
    "${apt[@]}" "${options[@]}" || { "${apt[@]}" update && "${apt[@]}" "${options[@]}"; }
}

# build_folder PRESET: where the preset of CMakePresets.json builds.
build_folder() {
    if [ "$1" = release ]; then printf 'build'; else printf 'build-%s' "$1"; fi
}

# build PRESET [TARGET...]: configures when needed and builds.
build() {
    local preset=$1 folder
    shift
    folder=$(build_folder "$preset")
    say "Building ($preset) in $folder/"
    if [ ! -f "$folder/build.ninja" ] || [ CMakePresets.json -nt "$folder/build.ninja" ]; then
        quietly "configure-$preset" cmake --preset "$preset"
    fi
    quietly "build-$preset" cmake --build "$folder" -j "$jobs" ${1:+--target "$@"}
}

# run_tests PRESET LOG [CTEST ARGUMENT...]: runs the tests of a build, two at a time. Shows what
# failed with its output, and the runner's closing line last; the rest is in build/log/LOG.log.
run_tests() {
    local folder log=$logs/$2.log code=0
    folder=$(build_folder "$1")
    shift 2
    ctest --test-dir "$folder" --output-on-failure --no-tests=error --timeout 120 -j 2 "$@" 2>&1 |
        tee "$log" | awk -v terminal="$([ -t 1 ] && echo 1)" -f scripts/test_output.awk || code=$?
    return "$code"
}
