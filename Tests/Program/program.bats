# The show as whoever starts it meets it: a window, keys, lines, a status. The word before a colon names the test
# for ctest, with Program. before it. quelar is the program alone, quelar-play what ./play starts.

bats_require_minimum_version 1.5.0
load screen

setup_file() { open_screen; }
teardown_file() { close_screen; }
teardown() { stop_show; }

@test "window: plays in the middle of the screen until Escape, whatever other keys do" {
    stage
    for program in quelar quelar-play; do
        start "$bin/$program"
        await seen 640x480+192+144
        xdotool keydown q keydown space keydown Return keydown Up keydown alt keydown F4
        sleep 0.5
        xdotool keyup q keyup space keyup Return keyup Up keyup F4 keyup alt
        running
        xdotool keydown Escape keyup Escape # shorter than a frame
        await_end
        ran
    done
}

@test "window: hears Escape while it is still starting, and keeps off the screen's connection" {
    stage
    # What is closed is not open again as that connection, to which the line about the music would go.
    rm data/music/quelar.mp3
    for program in quelar quelar-play; do
        launch bash -c 'exec "$0" <&- 2>&-' "$bin/$program"
        await xdotool search --name '^(Kavel|Quelar)' >/dev/null
        escape
        ran
    done
}

@test "settings: takes the size from the settings, cut to whole pixels, 0 for the screen's" {
    stage
    while IFS='|' read -r settings place said; do
        printf '%s' "$settings" >data/settings.ini
        start
        await seen "$place"
        escape
        ran "$said"
    done <<'END'
hres 800.9 vres 600|800x600+112+84|
hres 320 vres 2e2 hres 400 HRES 500|400x200+312+284|
hres 0 vres -0.9|1024x768+0+0|
|640x480+192+144|
hres nan vres 600 seed|640x600+192+84|The setting 'hres' is not a number: 'nan'\nThe setting 'seed' has no value\n
END
    for width in -5 1e9 -1e30 2000; do
        printf 'hres\n\t%s\n' "$width" >data/settings.ini
        play_show
        refused 252 '' 'Fail to create the window\nException cought\n'
    done
}

@test "data: does without settings and track, and says so in one line; damage to the track is no matter" {
    stage
    while IFS='|' read -r change said; do
        eval "$change"
        play_show
        ran "$said"
    done <<'END'
dd if=/dev/zero of=data/music/quelar.mp3 bs=1000 seek=100 count=300 conv=notrunc status=none|
seq 50000 >data/music/quelar.mp3|The music file is not an MP3.\n
rm -r data/music data/settings.ini|Fail to open the setting file\nThe music file does not exist.\n
END
}

@test "hardware: gives up where there is no screen, too old an OpenGL or an extension missing" {
    stage
    # Left to itself the window library would try to draw in letters, on the terminal.
    while IFS='|' read -r program surroundings code lines errors; do
        play_show env "$surroundings" "$bin/$program"
        refused "$code" "$lines" "$errors"
    done <<'END'
quelar|DISPLAY=|252||Fail to create the window\nException cought\n
quelar|MESA_GL_VERSION_OVERRIDE=1.0|254||GL 1.1 and up are not supported\nGlew failed to initialise\n
quelar-play|MESA_GL_VERSION_OVERRIDE=1.0|254||GL 1.1 and up are not supported\nGlew failed to initialise\n
quelar-play|MESA_EXTENSION_OVERRIDE=-GL_ARB_framebuffer_sRGB|0|Zentrik initiliased\nExtension 'GL_ARB_framebuffer_sRGB' not found\nThe demo needs better hardware. Sorry about it\nZentrik closed\n|
END
}

SHADER_END='Music deleted\nZentrik closed\n'

@test "shaders: gives up on shader files that it cannot read" {
    local unread="$START_LINES\nFail to read shaders\n$SHADER_END"
    stage
    truncate -s 3G data/shaders/pulse.ps
    play_show bash -c 'ulimit -v 2500000; exec "$0"' "$bin/quelar"
    refused 253 "$unread" "Erreur d'allocation de la m\xE9moire pour y placer le contenu du fichier\n\n"
    rm data/shaders/pulse.ps
    mkdir data/shaders/pulse.ps
    play_show "$bin/quelar-play"
    refused 253 "$unread" "Erreur d'ouverture du fichier: 'data/shaders/pulse.ps'\n"
    cd ..
    play_show
    refused 253 "$unread" "Fail to open the setting file\nThe music file does not exist.\n$(
        printf "Erreur d'ouverture du fichier: 'data/shaders/%s'\\\\n" pulse.vs pulse.ps
    )"
}

@test "shaders: says what is wrong with a shader" {
    stage
    : >data/shaders/hblur.ps
    echo 'void main() { nothing; }' >data/shaders/hblur.vs
    play_show
    # the driver's words in between are its own
    grep -q "^Fail to link the shader 'data/shaders/hblur.vs': .*nothing" "$out"
    sed -i '/^Fail to link/,/^Fail to create/{/^Fail to create/!d}' "$out"
    refused 253 "$START_LINES\nFail to create the shader\n$SHADER_END" ''

    echo 'void other(); void main() { other(); }' | tee data/shaders/pulse.vs >data/shaders/pulse.ps
    play_show
    refused 253 "$START_LINES\nFail to create the shader: data/shaders/pulse.vs data/shaders/pulse.ps Linking\n$SHADER_END" \
        "$(cat "$err")\n"
    [ "$(head -n 1 "$err")" = "Erreur lors du liage du shader:" ]
    grep -q other "$err"
}

@test "surroundings: needs no environment, no right to write, and leaves nothing behind" {
    stage "another's folder, a strange one"
    chmod -R a-w .
    ls -lRA --full-time >"$BATS_TEST_TMPDIR/before"
    for program in quelar quelar-play; do
        play_show "${bare[@]}" "$bin/$program"
        ran
    done
    ls -lRA --full-time | is "$BATS_TEST_TMPDIR/before"
    chmod -R u+w .
}

# The signals that the show listens to at the moment, as a mask.
heeded() { awk '/^SigCgt/ { print $2 }' "/proc/$(show_process)/status"; }
listening() { (($((16#$(heeded))) & 1 << 14)); } # SIGTERM, the fifteenth

@test "signals: the first one ends the show as Escape does, a second one at once, wherever it is stuck" {
    stage
    # no answer comes from the screen
    kill -STOP "$screen_pid"
    launch
    await listening
    kill -HUP "$(show_process)"
    await eval '! listening'
    running
    kill -TERM "$(show_process)"
    await_end
    [ "$status" -eq $((128 + $(kill -l TERM))) ]
    is "$out" </dev/null
}

@test "signals: end the player with the show's last lines, also those that come together, to all of its group" {
    stage
    for signal in HUP TERM QUIT; do
        start setsid "$bin/quelar-play"
        leader=$(show_process)
        kill -"$signal" -- "-$leader"
        kill -TERM -- "-$leader" || true # it may be over already
        await_end
        ran
    done
}

@test "player: a song of any kind takes the track's place, and ends the show; one that is none is refused" {
    stage
    ffmpeg -v error -f lavfi -i sine=d=1 -- -song.flac
    start "$bin/quelar-play" --size=320x200 -- -song.flac
    await seen 320x200+352+284
    await_end
    ran
    run -1 "$bin/quelar-play" data/settings.ini
    [[ ${#lines[@]} -eq 1 && $output == *data/settings.ini* ]]
    run -2 "$bin/quelar-play" --size
    [[ ${#lines[@]} -eq 1 && $output == *--size* ]]
}

@test "player: where no screen answers, it says which and has all of it recorded" {
    mkdir "$BATS_TEST_TMPDIR/bin"
    cd "$BATS_TEST_TMPDIR/bin"
    cp "$bin/quelar-play" .
    printf '#!/bin/sh\necho "recorder: $*"\nexit 7\n' >quelar-record
    chmod +x quelar-record
    export LD_LIBRARY_PATH=$bin/../lib QUELAR_VIDEO=film.mp4
    DISPLAY='' run -7 --separate-stderr ./quelar-play -- -song.mp3
    [[ $stderr == *'DISPLAY is not set'*film.mp4* && $output == 'recorder: --data data'*' -song.mp3 '*'-- film.mp4' ]]
    DISPLAY=:30000 run -7 --separate-stderr ./quelar-play --seed 7 --data else --size 64x48
    [[ $stderr == *' :30000 '* && $output == 'recorder: --data else --size 64x48 --seed 7 -- film.mp4' ]]
}
