# The scripts at the top, with a stand-in for the build.

bats_require_minimum_version 1.5.0

setup() {
    top="$BATS_TEST_TMPDIR/a place with spaces"
    mkdir -p "$top" "$BATS_TEST_TMPDIR/bin" "$BATS_TEST_TMPDIR/elsewhere"
    cp -R "$BATS_TEST_DIRNAME/../../"{play,Scripts} "$top"
    cd "$BATS_TEST_TMPDIR/elsewhere"
    PATH=$BATS_TEST_TMPDIR/bin:$PATH
    # every package is there
    command_is dpkg-query 'echo installed'
    # configuring leaves what is made of it, building leaves a program that tells where it was started
    command_is cmake 'folder=$4 && [[ $1 == -S ]] && mkdir -p "$folder" && : >"$folder/Makefile" &&
            echo "CMAKE_HOME_DIRECTORY:INTERNAL=$2" >"$folder/CMakeCache.txt" && echo configured >>../configured
        folder=$2 && [[ $1 == --build ]] && mkdir -p "$folder/bin" && [[ " $* " == *" --target quelar"* ]] &&
            printf "#!/bin/sh\npwd\nexit 7\n" >"$folder/bin/quelar" && chmod +x "$folder/bin/quelar"
        true'
    export DISPLAY=:9
}

command_is() {
    printf '#!/usr/bin/env bash\n%s\n' "$2" >"$BATS_TEST_TMPDIR/bin/$1"
    chmod +x "$BATS_TEST_TMPDIR/bin/$1"
}

@test "play starts the program from the top and hands on its status" {
    run -7 --separate-stderr "$top/play"
    [ "$output" = "$top" ]
    # once configured, again only when the folder was moved
    run -7 "$top/play"
    [ "$(cat ../configured)" = configured ]
    mv "$top" "$top too"
    top+=' too'
    run -7 --separate-stderr "$top/play"
    [ "$output" = "$top" ]
    [ "$(wc -l <../configured)" -eq 2 ]
    # all that was written is in the build folder
    [ "$(cd "$top" && echo *)" = 'Scripts build play' ]
    [ -z "$(ls -A)" ]
}

@test "play shows why a build failed and starts nothing" {
    "$top/play" || true
    command_is cmake 'echo "main.cpp:1: error: broken"; exit 2'
    run ! "$top/play"
    [[ $output == *'main.cpp:1: error: broken'* ]]
    [[ $output != *"$top"$'\n'* ]]
}

@test "play records where there is no screen" {
    printf '#!/bin/sh\necho "record: $*"\nexit 5\n' >"$top/record"
    chmod +x "$top/record"
    DISPLAY='' run -5 --separate-stderr "$top/play"
    [ "$output" = "record: $top/build/quelar.mp4" ]
    [[ $stderr == *"$top/build/quelar.mp4"* ]]
}

@test "packages that are missing are named where they cannot be installed" {
    command_is dpkg-query '[[ $3 != libsdl1.2-dev && $3 != ffmpeg ]] && echo installed'
    command_is apt-get 'echo "E: no such package"; exit 100'
    command_is sudo 'exec "$@"'
    run ! "$top/play"
    [[ $output == *'libsdl1.2-dev ffmpeg'* && $output == *'E: no such package'* ]]
}
