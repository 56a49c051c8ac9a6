# What every script at the top starts with: where the repository is, its packages, its build.
# Sourced by bash, from any current directory.
# shellcheck shell=bash
set -euo pipefail

# The place itself, whatever links lead there: the build knows it by that name.
root=$(cd -P "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
build_folder=$root/build

# What libraries keep for their next start stays in the build folder: compiled shaders, and what a client of the
# sound server leaves at home, where none has been yet. (One thing is out of reach: where a second sound server's
# library is installed, it lays a list of its clients in shared memory, /dev/shm, until the machine restarts.)
export XDG_CACHE_HOME=$build_folder/cache
export npm_config_cache=$XDG_CACHE_HOME/npm
if [[ ! -e ${XDG_CONFIG_HOME:-${HOME:-/nonexistent}/.config}/pulse ]]; then
    export PULSE_COOKIE=${PULSE_COOKIE:-$XDG_CACHE_HOME/pulse-cookie}
    [[ -n ${XDG_RUNTIME_DIR:-} ]] || export PULSE_RUNTIME_PATH=${PULSE_RUNTIME_PATH:-$XDG_CACHE_HOME/pulse}
fi

say() { printf '%s\n' "$*" >&2; }

# The packages of the given kinds (see Scripts/packages).
packages() {
    local kind package
    while read -r kind package; do
        [[ " $* " != *" $kind "* ]] || printf '%s\n' "$package"
    done < <(grep -v '^#' "$root/Scripts/packages")
}

# Those of them that this machine lacks. A program of that name will do, wherever it came from: another Node brings
# its own npm, and refuses Debian's.
missing_packages() {
    local package
    for package in $(packages "$@"); do
        ! command -v "$package" >/dev/null || continue
        [[ $(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null) == installed ]] ||
            printf '%s\n' "$package"
    done
}

# Installs what is missing of the given kinds. Without apt it names the packages and goes on: the build tells.
need_packages() {
    local -a missing become_root=()
    if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
        say "No apt here; if the build fails, install the likes of these Debian packages:" \
            "$(packages "$@" | paste -sd ' ')"
        return 0
    fi
    mapfile -t missing < <(missing_packages "$@")
    ((${#missing[@]})) || return 0
    say "Installing ${missing[*]}"
    if ((EUID)); then
        command -v sudo >/dev/null || { say "Please install them as root: apt-get install ${missing[*]}"; return 1; }
        become_root=(sudo)
    fi
    local log
    log=$(mktemp)
    if ! { "${become_root[@]}" apt-get update &&
        "${become_root[@]}" env DEBIAN_FRONTEND=noninteractive \
            apt-get install -y --no-install-recommends "${missing[@]}"; } >"$log" 2>&1 </dev/null; then
        cat "$log" >&2
        rm -f "$log"
        return 1
    fi
    rm -f "$log"
}

# The lines on top of a script, which say what it is for.
usage() { sed -n '2,/^source/{/^source/d;s/^# \{0,1\}//;p}' "$0"; }

# help_for PROGRAM [ARGUMENT]...: where help is asked for, gives the program's own and ends, or the script's, where the
# program is still to be built and packages are missing: for help nothing is installed.
help_for() {
    local program=$build_folder/bin/$1 argument
    for argument in "${@:2}"; do
        case $argument in
            --) return 0 ;;
            -h | --help)
                [[ -n $(missing_packages run) ]] || build "$1"
                [[ ! -x $program ]] || exec "$program" --help
                usage
                printf '\nThe options are told once the show is built, which takes these packages:\n%s\n' \
                    "$(missing_packages run | paste -sd ' ')"
                exit 0
                ;;
        esac
    done
}

# is_configured SOURCE FOLDER: whether CMake has made the folder ready to build the source, and neither was moved or
# copied since.
is_configured() {
    [[ -f $2/Makefile && $(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' "$2/CMakeCache.txt") -ef $1 ]]
}

# Makes the build folder, where there is none.
make_build_folder() {
    if ! mkdir -p "$XDG_CACHE_HOME" 2>/dev/null || [[ ! -w $build_folder ]]; then
        say "$(id -un) cannot write to $build_folder: copy the checkout to a place of your own, and start it there"
        return 1
    fi
}

# Lets CMake look around, whatever it found before. All that was built or recorded stays.
configure() {
    local log=$build_folder/build.log
    make_build_folder || return 1
    if [[ ! -f $build_folder/Makefile ]]; then
        say "Building Quelar, once"
    elif ! is_configured "$root" "$build_folder"; then
        say "Building Quelar anew: the checkout was moved or copied since"
    fi
    cmake --fresh -S "$root" -B "$build_folder" -G "Unix Makefiles" >"$log" 2>&1 || { cat "$log" >&2; return 1; }
}

# Builds the given targets, all of them if none is named; silent unless it fails.
build() {
    local log=$build_folder/build.log
    make_build_folder || return 1
    is_configured "$root" "$build_folder" || configure || return 1
    cmake --build "$build_folder" -j "$(nproc)" ${1:+--target "$@"} >"$log" 2>&1 || { cat "$log" >&2; return 1; }
}

# figure PLAN FOLDER PICTURE: draws a picture by a plan for gnuplot, of the numbers in the folder.
figure() { gnuplot -e "style='$root/Scripts/figure.gp'; folder='$2'; picture='$3'" "$1"; }

# Whether anything here could be heard: a sound card, or a sound server, which may be another machine's.
has_sound() {
    compgen -G '/dev/snd/pcm*p' >/dev/null || [[ -S ${XDG_RUNTIME_DIR:-/nonexistent}/pulse/native ]] ||
        [[ -n ${PULSE_SERVER:-} ]]
}

# Starts a virtual screen of the given size (640x480 by default), sets DISPLAY to it and ends it with the script.
virtual_display() {
    local number
    exec {display_pipe}<> <(:)
    Xvfb -displayfd "$display_pipe" -screen 0 "${1:-640x480}x24" -nolisten tcp -noreset >/dev/null 2>&1 &
    virtual_display_pid=$!
    trap 'kill "$virtual_display_pid" 2>/dev/null || true' EXIT
    if ! read -r -t 20 -u "$display_pipe" number; then
        say "The virtual display did not start"
        return 1
    fi
    export DISPLAY=:$number
}
