# The scripts at the top, with stand-ins for the build, the tests' runner and Debian.

bats_require_minimum_version 1.5.0

setup() {
    top="$BATS_TEST_TMPDIR/a place with spaces"
    mkdir -p "$top/"{Web,Tests/Program} "$BATS_TEST_TMPDIR/bin" "$BATS_TEST_TMPDIR/elsewhere"
    cp -R "$BATS_TEST_DIRNAME/../../"{play,record,test,web,Scripts} "$top"
    cp "$BATS_TEST_DIRNAME/../../Web/build" "$top/Web"
    cd "$BATS_TEST_TMPDIR/elsewhere"
    PATH=$BATS_TEST_TMPDIR/bin:$PATH
    command_is dpkg-query 'echo installed'
    # configuring leaves what is made of it, building leaves programs that tell how they were started
    command_is cmake 'folder=$5 && [[ $2 == -S ]] && : >"$folder/Makefile" &&
            echo "CMAKE_HOME_DIRECTORY:INTERNAL=$3" >"$folder/CMakeCache.txt" && echo configured >>../configured
        folder=$2 && [[ $1 == --build ]] && mkdir -p "$folder/bin" && echo "$* " >"$folder/built" &&
            printf "#!/bin/sh\necho \"\${0##*/} in \$PWD, caches in \$XDG_CACHE_HOME: \$*\"\nexit \${ENDS-7}\n" |
            tee "$folder/bin/"quelar{,-play} >"$folder/bin/quelar-record" && chmod +x "$folder/bin/"*
        true'
    export DISPLAY=:9
}

command_is() {
    printf '#!/usr/bin/env bash\n%s\n' "$2" >"$BATS_TEST_TMPDIR/bin/$1"
    chmod +x "$BATS_TEST_TMPDIR/bin/$1"
}

# The top was configured so many times, in the test so far.
configured() { [ "$(wc -l <../configured)" -eq "$1" ]; }

@test "start: play and record start their programs where they are called, and write in one folder only" {
    for script in play record; do
        run -7 --separate-stderr "$top/$script" --size 64x48 'a song.mp3'
        [ "$output" = "quelar-$script in $PWD, caches in $top/build/cache: --data $top/data --size 64x48 a song.mp3" ]
        [[ $(cat "$top/build/built") == *" quelar-$script " ]]
    done
    [ "$(ls -A . "$top" | xargs)" = ".: $top: Scripts Tests Web build play record test web" ]
}

@test "start: configures once, by whatever link it is called, and again where the checkout was moved" {
    ln -s "$top" ../link
    for place in "$top" ../link; do
        run -7 "$place/record"
        configured 1
        echo made >"$top/build/film.webm"
    done
    mv "$top" "$top too"
    run -7 "$top too/record"
    [[ $output == *moved*"$top too/data" ]]
    configured 2
    [ -e "$top too/build/film.webm" ]
}

@test "start: says why it cannot build, and starts nothing" {
    run -7 "$top/record"
    command_is cmake 'echo "main.cpp:1: error: broken"; exit 2'
    for made in "$top/build/Makefile" none; do
        run -1 "$top/record"
        [[ $output == *'main.cpp:1: error: broken' ]]
        rm -f "$made"
    done
    # someone else's checkout
    chmod 755 "$BATS_TEST_TMPDIR" "$BATS_RUN_TMPDIR"
    chmod a-w "$top/build"
    run -1 $( ((EUID)) || echo setpriv --reuid 65534) "$top/record"
    [[ ${#lines[@]} -eq 1 && $output == *" cannot write to $top/build: "* ]]
}

@test "start: says that nothing will be heard only where that is so" {
    local here=$BATS_TEST_TMPDIR
    sed -i "s:/dev/snd:$here/snd:" "$top/Scripts/setup.sh"
    mkdir -p "$here/"{snd,socket/pulse}
    # a path to a socket must be short
    (cd "$here/socket/pulse" && perl -MIO::Socket::UNIX -e 'IO::Socket::UNIX->new(Local => "native", Listen => 1) or die')
    while read -r device server folder said; do
        : >"$here/snd/$device"
        PULSE_SERVER=${server#none} XDG_RUNTIME_DIR=$here/$folder run -7 "$top/play"
        [[ $(grep -c 'no sound device here' <<<"$output") -eq $said ]]
        rm "$here/snd/$device"
    done <<<$'pcmC0D0c none none 1\npcmC0D0p none none 0\nnone elsewhere none 0\nnone none socket 0'
}

@test "screen: a virtual one ends with its script, however that ends" {
    for end in 'exit 3' 'kill -TERM $$' 'kill -HUP $$'; do
        bash -c 'source "$0/Scripts/setup.sh"; virtual_display; echo $virtual_display_pid >screen; '"$end" "$top" 3>&- || true
        timeout 60 tail -s 0.1 -f /dev/null --pid "$(cat screen)" || { kill "$(cat screen)"; false; }
    done
}

@test "tests: looks around anew, and runs the tests that are asked for; one that is not there has not passed" {
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
    echo 'TEST_F(Scenes, end) {' | tee "$top/Tests/Scenes.test.cpp" >"$top/Tests/other.bats"
    run -1 "$top/test" -R Grid
    [[ $output == *" $top/Tests/other.bats"$'\n'Scenes.end ]]
}

@test "web: builds the page with the shaders of the moment, serves or proves it, and knows no other word" {
    mkdir -p "$top/Web/node_modules" "$top/data/"{music,shaders} "$top/build/web-parts/"{engine,kissfft,libebur128}
    touch "$top/data/music/track" "$top/build/web-parts/engine/quelar."{js,wasm}
    for tool in emcmake npm ffmpeg; do command_is $tool true; done
    command_is node 'echo "$PWD: $*"'
    while IFS='|' read -r arguments said; do
        echo "edited before $said" >"$top/data/shaders/pulse.ps"
        ENDS=0 run -0 --separate-stderr "$top/web" $arguments
        [ "$output" = "$said" ]
        cmp "$top/"{data,build/web/data}/shaders/pulse.ps
    done < <(printf '%s\n' "|$PWD: $top/Web/serve.js" '--build|' "--test a.mjs|$top: --test a.mjs")
    touch "$top/data/music/track"
    run -1 --separate-stderr "$top/web" --build # without its still picture
    run -2 --separate-stderr "$top/web" --biuld
    [[ -z $output && $stderr == *'./web --test '* ]]
}

@test "packages: what is missing of a script's own is installed, by whoever may, but not for help" {
    command_is dpkg-query '[[ $3 != libsdl1.2-dev && $3 != libegl-dev && $3 != libgtest-dev ]] && echo installed'
    command_is apt-get 'echo "$*" >>../apt'
    command_is sudo '"$@"'
    for script in play record test web; do
        run -0 --separate-stderr "$top/$script" --help
        [[ ${output,,} == *"$script"* && ! -e ../apt ]]
    done
    run -7 "$top/record" -- --help
    run "$top/test"
    installed='update install -y --no-install-recommends libsdl1.2-dev libegl-dev'
    [ "$(xargs <../apt)" = "$installed $installed libgtest-dev" ]
    command_is apt-get 'echo "E: no such package"; exit 100'
    run -1 "$top/record"
    [[ $output == *'libsdl1.2-dev libegl-dev'* && $output == *'E: no such package'* && $output != *data* ]]
    run -7 "$top/record" a -h
    [[ $output == *': --help' ]]
    # what spreads a recording is asked for only then
    command_is dpkg-query '[[ $3 != nowhere ]] && echo installed'
    echo 'spread nowhere' >>"$top/Scripts/packages"
    run -7 "$top/record" 'a film.mp4'
    run -1 "$top/record" --jobs 2 --sshlogin attic 'a film.mp4'
}

@test "packages: without apt they are named, and the build is tried" {
    for tool in bash dirname cat chmod find grep id mkdir nproc paste rm sed tee wc; do
        ln -s "$(command -v "$tool")" "$BATS_TEST_TMPDIR/bin"
    done
    run -7 --separate-stderr env PATH="$BATS_TEST_TMPDIR/bin" "$top/record"
    [[ ${stderr_lines[0]} == *' g++ '*' ffmpeg' && ${stderr_lines[0]} != *bats* ]]
}
