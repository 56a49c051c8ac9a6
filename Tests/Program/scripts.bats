# The scripts at the top, with stand-ins for the build, the tests' runner and Debian.

bats_require_minimum_version 1.5.0

setup() {
    top="$BATS_TEST_TMPDIR/a place with spaces"
    mkdir -p "$top" "$BATS_TEST_TMPDIR/bin" "$BATS_TEST_TMPDIR/elsewhere"
    cp -R "$BATS_TEST_DIRNAME/../../"{play,record,test,web,Scripts} "$top"
    cd "$BATS_TEST_TMPDIR/elsewhere"
    PATH=$BATS_TEST_TMPDIR/bin:$PATH
    # every package is there
    command_is dpkg-query 'echo installed'
    # configuring leaves what is made of it, building leaves a program that tells how it was started
    command_is cmake 'folder=$5 && [[ $2 == -S ]] && mkdir -p "$folder" && : >"$folder/Makefile" &&
            echo "CMAKE_HOME_DIRECTORY:INTERNAL=$3" >"$folder/CMakeCache.txt" && echo configured >>../configured
        folder=$2 && [[ $1 == --build ]] && mkdir -p "$folder/bin" && echo "$*" >"$folder/built" &&
            printf "#!/bin/sh\necho \"started in \$PWD, caches in \$XDG_CACHE_HOME: \$*\"\nexit 7\n" |
            tee "$folder/bin/"quelar{,-play} >"$folder/bin/quelar-record" && chmod +x "$folder/bin/"*
        true'
    export DISPLAY=:9
    unset PULSE_SERVER XDG_RUNTIME_DIR
}

command_is() {
    printf '#!/usr/bin/env bash\n%s\n' "$2" >"$BATS_TEST_TMPDIR/bin/$1"
    chmod +x "$BATS_TEST_TMPDIR/bin/$1"
}

# The top was configured so many times, in the test so far.
configured() { [ "$(wc -l <../configured)" -eq "$1" ]; }

@test "play: starts the program from the top and hands on its status" {
    run -7 --separate-stderr "$top/play"
    [ "$output" = "started in $top, caches in $top/build/cache: " ]
    [[ $(cat "$top/build/built") == *' --target quelar' ]]
    # all that was written is in the build folder
    [ "$(cd "$top" && echo *)" = 'Scripts build play record test web' ]
    [ -z "$(ls -A)" ]
}

@test "play: leaves a song and options to the player, or to the recorder where there is no screen" {
    run -7 --separate-stderr "$top/play" --size 64x48 'a song.mp3'
    [ "$output" = "started in $PWD, caches in $top/build/cache: --data $top/data --size 64x48 a song.mp3" ]
    [[ $(cat "$top/build/built") == *' --target quelar quelar-play' ]]
    export DISPLAY=
    run -7 --separate-stderr "$top/play" --seed 7 'a song.mp3' --size 64x48
    [[ $output == *" --data $top/data --seed 7 --track a song.mp3 --size 64x48 $top/build/quelar.mp4" ]]
    [[ $stderr == *"to $top/build/quelar.mp4 instead" ]]
    for arguments in '' '--size '; do
        run -7 --separate-stderr "$top/play" $arguments
        [[ $output == *" --data $top/data $arguments$top/build/quelar.mp4" ]]
    done
}

@test "play: configures once, by whatever link it is called, and again when the checkout was moved" {
    ln -s "$top" ../link
    run -7 ../link/play
    : >"$top/build/object"
    for place in "$top" "$BATS_TEST_TMPDIR/link"; do
        run -7 --separate-stderr "$place/play"
        [[ $output == "started in $top,"* && $stderr != *Building* ]]
        configured 1
    done
    mv "$top" "$top too"
    run -7 --separate-stderr "$top too/play"
    [[ $output == "started in $top too,"* && $stderr == *moved* ]]
    configured 2
    # nothing of what was built, or recorded, is gone
    [ -e "$top too/build/object" ]
}

@test "play: says in one sentence that another's checkout cannot be built in" {
    ((EUID)) || command -v setpriv >/dev/null || skip "nobody here but root"
    chmod 755 "$BATS_TEST_TMPDIR" "$BATS_RUN_TMPDIR"
    mkdir -p "$top/build/cache"
    chmod a-w "$top/build"
    run -1 $( ((EUID)) || echo setpriv --reuid 65534) "$top/play"
    [[ ${#lines[@]} -eq 1 && $output == *" cannot write to $top/build: "* ]]
}

@test "play: shows why a build failed and starts nothing" {
    run -7 "$top/play"
    command_is cmake 'echo "main.cpp:1: error: broken"; exit 2'
    for made in "$top/build/Makefile" none; do
        run -1 "$top/play"
        [[ $output == *'main.cpp:1: error: broken' && $output != *started* ]]
        rm -f "$made"
    done
}

@test "play: says that nothing will be heard where that is so" {
    local here=$BATS_TEST_TMPDIR silent='There is no sound device here: the show runs silent'
    sed -i "s:/dev/snd:$here/snd:" "$top/Scripts/setup.sh"
    mkdir -p "$here/"{snd,run/pulse,socket/pulse}
    cd "$here/socket/pulse" # a path to a socket must be short
    perl -MIO::Socket::UNIX -e 'IO::Socket::UNIX->new(Local => "native", Listen => 1) or die'
    : >"$here/run/pulse/native" # a file like any other
    run -7 "$top/play"          # whatever is to be built has been
    while IFS='|' read -r surroundings device said; do
        : >"$here/snd/$device"
        run -7 --separate-stderr env ${surroundings:+"$surroundings"} "$top/play"
        [ "$stderr" = "$said" ]
        rm "$here/snd/$device"
    done <<END
|pcmC0D0c|$silent
|pcmC0D0p|
PULSE_SERVER=elsewhere|none|
XDG_RUNTIME_DIR=$here/run|none|$silent
XDG_RUNTIME_DIR=$here/socket|none|
END
}

@test "record: starts the recorder where it is called, with the show's data" {
    DISPLAY='' run -7 --separate-stderr "$top/record" --size 64x48 'a film.mp4'
    [ "$output" = "started in $PWD, caches in $top/build/cache: --data $top/data --size 64x48 a film.mp4" ]
    [[ $(cat "$top/build/built") == *' --target quelar-record' ]]
    [[ $stderr != *sound* ]]
    # what spreads it is asked for only then
    echo 'spread nowhere' >>"$top/Scripts/packages"
    command_is dpkg-query '[[ $3 != nowhere ]] && echo installed'
    command_is apt-get 'exit 100'
    run -7 "$top/record" 'a film.mp4'
    run -1 "$top/record" --jobs 2 'a film.mp4'
}

@test "test: looks around anew, and runs the tests that are asked for, of everything built" {
    mkdir -p "$top/Tests/Program"
    echo 'TEST(Grid, lies) {' >"$top/Tests/Grid.test.cpp"
    : >"$top/Tests/Program/show.bats"
    command_is ctest "[[ \$1 == --show* ]] || { echo \"in \$PWD: \$*\"; exit 8; }
        printf '[{\"name\" : \"Grid.lies\"}, [\"bats\", \"%s\"]]' '$top/Tests/Program/show.bats'"
    for times in 1 2; do
        run -8 --separate-stderr "$top/test" -R Grid
        [ "$output" = "in $top/build: --output-on-failure -j $(nproc) -R Grid" ]
        configured "$times"
    done
    [[ $(cat "$top/build/built") != *--target* ]]
    # a test that nobody can run has not passed
    for absent in Scenes.end Program/other.bats; do
        echo 'TEST_F(Scenes, end) {' >"$top/Tests/${absent/#Scenes.end/Scenes.test.cpp}"
        run -1 "$top/test" -R Grid
        [[ $output == *"$absent" && $output != *"in $top"* ]]
        rm "$top/Tests/"{Scenes.test.cpp,Program/other.bats} || true
    done
}

@test "packages: what is missing of a script's own is installed, by whoever may" {
    command_is dpkg-query '[[ $3 != libsdl1.2-dev && $3 != libegl-dev && $3 != libgtest-dev ]] && echo installed'
    command_is apt-get 'echo "$*" >>../apt'
    command_is sudo '"$@"'
    run -7 "$top/play"
    [ "$(cat ../apt)" = 'update
install -y --no-install-recommends libsdl1.2-dev libegl-dev' ]
    command_is apt-get 'echo "E: no such package"; exit 100'
    run -1 "$top/play"
    [[ $output == *'libsdl1.2-dev libegl-dev'* && $output == *'E: no such package'* && $output != *started* ]]
}

@test "packages: none is installed for help" {
    command_is dpkg-query '[[ $3 != libegl-dev ]] && echo installed'
    command_is apt-get 'exit 100'
    for script in play record test; do
        run -0 "$top/$script" 'a song.mp3' -h
        [[ ${lines[0]} == [PR]* && $output == *libegl-dev* ]]
    done
    run -0 "$top/test" --help
    command_is dpkg-query 'echo installed'
    for script in play record; do
        run -7 --separate-stderr "$top/$script" --help
        [[ $output == *': --help' ]]
    done
    run -7 "$top/play" -- --help
    [[ $output != *': --help' ]]
}

@test "packages: without apt they are named, and the build is tried" {
    for tool in bash dirname cat chmod find grep mkdir nproc paste rm sed tee wc; do
        ln -s "$(command -v "$tool")" "$BATS_TEST_TMPDIR/bin"
    done
    run -7 --separate-stderr env PATH="$BATS_TEST_TMPDIR/bin" "$top/play"
    [[ ${stderr_lines[0]} == *' g++ '*' ffmpeg' ]]
    [[ ${stderr_lines[0]} != *bats* ]]
}
