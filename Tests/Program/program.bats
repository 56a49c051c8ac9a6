# The show as whoever starts it meets it: a window, keys, lines, a status. The word before a colon names the test
# for ctest, with Program. before it. quelar is the program alone, quelar-play what ./play starts.

load screen

@test "window: plays in the middle of the screen until Escape, whatever other keys do" {
    stage
    for program in quelar quelar-play; do
        start "$bin/$program"
        await seen 640x480+192+144
        xdotool keydown q keydown space keydown Return keydown Up keydown alt keydown F4
        sleep 0.5
        xdotool keyup q keyup space keyup Return keyup Up keyup F4 keyup alt
        running
        kill -STOP "$(show_process)" # in the middle of a frame, which lasts longer than the tap
        xdotool keydown Escape keyup Escape
        kill -CONT "$(show_process)"
        await_end
        ran
    done
}

@test "window: hears Escape while it is still starting, and keeps off the screen's connection" {
    stage
    # What is closed is not open again as that connection, to which the lines would go.
    for program in quelar quelar-play; do
        launch bash -c 'exec "$0" >&-' "$bin/$program"
        await xdotool search --name '^(Kavel|Quelar)' >/dev/null
        escape
        refused 0 '' ''
    done
}

@test "settings: have the size, 0 for the screen's" {
    stage
    while IFS='|' read -r program settings place; do
        printf '%s' "$settings" >data/settings.ini
        start "$bin/$program"
        await seen "$place"
        escape
        ran
    done <<'END'
quelar|hres 320 vres 2e2 hres 400.9 HRES 500|400x200+312+284
quelar-play|hres 0 vres 600|1024x600+0+84
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
quelar-play|MESA_GL_VERSION_OVERRIDE=1.0|254||GL 1.1 and up are not supported\nGlew failed to initialise\n
quelar-play|MESA_EXTENSION_OVERRIDE=-GL_ARB_framebuffer_sRGB|0|Zentrik initiliased\nExtension 'GL_ARB_framebuffer_sRGB' not found\nThe demo needs better hardware. Sorry about it\nZentrik closed\n|
END
}

@test "shaders: gives up on those that it cannot read or build, and says why" {
    local end='Music deleted\nZentrik closed\n'
    stage
    echo 'void main() { nothing; }' >data/shaders/hblur.vs
    play_show "$bin/quelar-play"
    # the driver's words in between are its own
    grep -q "^Fail to link the shader 'data/shaders/hblur.vs': .*nothing" "$out"
    sed -i '/^Fail to link/,/^Fail to create/{/^Fail to create/!d}' "$out"
    refused 253 "${START_LINES}Fail to create the shader\n$end" ''
    cd ..
    play_show
    refused 253 "${START_LINES}Fail to read shaders\n$end" \
        "Fail to open the setting file\nThe music file does not exist.\n$(
            printf "Erreur d'ouverture du fichier: 'data/shaders/pulse.%s'\\\\n" vs ps)"
}

# Whether the show listens to SIGTERM, the fifteenth of a mask, at the moment.
listening() { ((16#$(awk '/^SigCgt/ { print $2 }' "/proc/$(show_process)/status") & 1 << 14)); }

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
}

@test "player: where no screen answers, it says which and has all of it recorded" {
    cd "$BATS_TEST_TMPDIR"
    cp "$bin/quelar-play" .
    printf '#!/bin/sh\necho "recorder: $*"\nexit 7\n' >quelar-record
    chmod +x quelar-record
    export LD_LIBRARY_PATH=$bin/../lib QUELAR_VIDEO=film.mp4
    DISPLAY='' run -7 --separate-stderr ./quelar-play -- -song.mp3
    [[ $stderr == *'DISPLAY is not set'*film.mp4* && $output == 'recorder: --data data --track -song.mp3 --whole -- film.mp4' ]]
    DISPLAY=:30000 run -7 --separate-stderr ./quelar-play --seed 7 --data else --size 64x48
    [[ $stderr == *' :30000 '* && $output == 'recorder: --data else --size 64x48 --seed 7 -- film.mp4' ]]
}
