# For the tests: the show as a process on a virtual screen of its own, and what a viewer sees and does there.

bats_require_minimum_version 1.5.0

root=$(cd "$BATS_TEST_DIRNAME/../.." && pwd)
bin=${QUELAR_BUILD:-$root/build}/bin

# The tests of a file have a screen.
setup_file() {
    read -r DISPLAY screen_pid < <(
        source "$root/Scripts/setup.sh"
        virtual_display 1024x768 3>&-
        trap - EXIT
        printf '%s %s\n' "$DISPLAY" "$virtual_display_pid"
    )
    export DISPLAY screen_pid
}

teardown_file() { kill "$screen_pid"; }

# Put before a command: no environment but the screen, and a home where libraries leave what they like.
bare=(env -i DISPLAY="${DISPLAY:-}" HOME="${BATS_TEST_TMPDIR:-}")

# Makes the current directory one to start the show from: a copy of its data, to be changed at will.
stage() {
    mkdir "$BATS_TEST_TMPDIR/stage" && cd "$BATS_TEST_TMPDIR/stage"
    cp -R "$root/data" .
}

# Starts the show, by the given command in place of the program itself.
launch() {
    (($#)) || set -- "$bin/quelar"
    out=$BATS_TEST_TMPDIR/out
    err=$BATS_TEST_TMPDIR/err
    : >"$out" # nobody takes the lines of the show before for those of this one
    timeout -k 1 60 "$@" >"$out" 2>"$err" 3>&- &
    pid=$!
}

# The show's own process; the one started is what limits its time.
show_process() { pgrep -P "$pid"; }

running() { kill -0 "$pid" 2>/dev/null; }

# Waits until the given command succeeds or the show is over.
await() { until "$@" || ! running; do sleep 0.05; done; }

# Starts the show and returns once it runs or is over.
start() { launch "$@" && await grep -qx 'Start !' "$out"; }

# The status with which the show ends, in status.
await_end() {
    status=0
    wait "$pid" || status=$?
}

# Holds Escape until the show is over.
escape() { xdotool keydown Escape && await_end && xdotool keyup Escape; }

# A show, ended by Escape if it runs at all.
play_show() {
    start "$@"
    if running; then escape; else await_end; fi
}

# After a test that failed half-way: the screen answers again, the show is over, the key is let go of.
teardown() {
    kill -CONT "$screen_pid"
    [ -z "${pid:-}" ] || ! running || pkill -KILL -P "$pid" || true
    xdotool keyup Escape
}

# Compares a file with standard input and shows the difference.
is() { diff - "$1" >&2; }

# What the show prints: up to its end, or with the picture running.
START_LINES='Zentrik initiliased\nMusic created\nScene creation\nGeometry generation\n'
RUN_LINES="${START_LINES}Texture preparation (R2T)\nGL Texture ID created: 1\nGL Texture ID created: 2
Frame buffer preparation (R2T)\nNew FrameBuffer id: 1\nFrameBuffer created\nStart !\nEnd !
FrameBuffer '1' deleted\nMusic deleted\nZentrik closed\n"

# The show ended with a status and said this: the status, the lines on standard output, those on standard error but for
# what the player tells of the size that it has chosen.
refused() {
    [ "$status" -eq "$1" ]
    is "$out" < <(printf '%b' "$2")
    is <(grep -vF ': software draws here: the picture is 640x480 (--size asks for another)' "$err") < <(printf '%b' "$3")
}

# The show ran, was left or came to its end, and had nothing but that to say on standard error.
ran() { refused 0 "$RUN_LINES" ''; }

# The show is seen at last, as WIDTHxHEIGHT+X+Y: all that is lit on the screen.
seen() {
    # by a rim, what is lit everywhere has an edge as well
    [ "$(import -window root png:- | convert - -bordercolor black -border 1 -trim -format '%wx%h%O' info: 2>/dev/null |
        awk -F + '{ print $1 "+" $2 - 1 "+" $3 - 1 }')" = "$1" ]
}
