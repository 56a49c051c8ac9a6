# The show as whoever starts it meets it: a window, keys, lines, a status. The word before a colon names the test
# for ctest, with Program. before it.

bats_require_minimum_version 1.5.0
load screen

setup_file() { open_screen; }
teardown_file() { close_screen; }
teardown() { stop_show; }

@test "window: plays in the middle of the screen until Escape, whatever other keys do" {
    stage
    start
    [ "$(picture)" = 640x480+192+144 ]
    xdotool keydown q keydown space keydown Return keydown Up keydown alt keydown F4
    sleep 0.5
    xdotool keyup q keyup space keyup Return keyup Up keyup F4 keyup alt
    running
    escape
    ran </dev/null
}

@test "window: hears Escape while it is still starting" {
    stage
    launch
    await eval '[ -n "$(picture)" ]'
    escape
    ran </dev/null
}

@test "settings: takes the size from the settings, cut to whole pixels, 0 for the screen's" {
    stage
    while read -r settings size; do
        printf '%s' "${settings//,/ }" >data/settings.ini
        start
        [ "$(picture)" = "$size" ]
        escape
        ran </dev/null
    done <<'END'
hres,800.9,vres,600 800x600+112+84
hres,320,vres,2e2,hres,400,HRES,500 400x200+312+284
hres,0,vres,-0.9 1024x768+0+0
END
}

@test "settings: gives up on a size that no screen has" {
    stage
    for width in -5 1e9 -1e30 2000; do
        printf 'hres\n\t%s\n' "$width" >data/settings.ini
        play_show
        refused 252 '' 'Fail to create the window\nException cought\n'
    done
}

@test "settings: keeps to the defaults where the settings say nothing of use" {
    stage
    printf 'hres nan vres 600 seed' >data/settings.ini
    start
    [ "$(picture)" = 640x600+192+84 ]
    escape
    ran <<END
The setting 'hres' is not a number: 'nan'
The setting 'seed' has no value
END
    rm data/settings.ini
    play_show
    ran <<<'Fail to open the setting file'
    mkdir data/settings.ini
    play_show
    ran <<<'Fail to open the setting file'
    rmdir data/settings.ini
    : >data/settings.ini
    play_show
    ran </dev/null
}

@test "hardware: needs hardware that has both extensions" {
    local sorry="' not found\nThe demo needs better hardware. Sorry about it\nZentrik closed\n"
    local found="Zentrik initiliased\nExtension 'GL_ARB_framebuffer_"
    stage
    MESA_EXTENSION_OVERRIDE=-GL_ARB_framebuffer_sRGB play_show
    refused 0 "${found}sRGB$sorry" ''
    MESA_EXTENSION_OVERRIDE='-GL_ARB_framebuffer_sRGB -GL_ARB_framebuffer_object' play_show
    refused 0 "${found}object$sorry" ''
}

@test "hardware: gives up on an OpenGL that is too old" {
    stage
    MESA_GL_VERSION_OVERRIDE=1.0 play_show
    refused 254 '' 'GL 1.1 and up are not supported\nGlew failed to initialise\n'
}

@test "window: gives up where there is no screen" {
    stage
    # left to itself the window library would try to draw in letters, on the terminal
    DISPLAY='' play_show
    refused 252 '' 'Fail to create the window\nException cought\n'
    DISPLAY=:30000 play_show
    refused 252 '' 'Fail to create the window\nException cought\n'
}

SHADER_END='Music deleted\nZentrik closed\n'
unreadable() { printf "Erreur d'ouverture du fichier: 'data/shaders/%s'\\\\n" "$@"; }

@test "shaders: gives up on shader files that it cannot read" {
    local unread="$START_LINES\nFail to read shaders\n$SHADER_END"
    stage
    rm data/shaders/vblur.ps
    play_show
    refused 253 "$unread" "$(unreadable vblur.ps)"
    rm data/shaders/hblur.vs
    mkdir data/shaders/hblur.vs
    play_show
    refused 253 "$unread" "$(unreadable hblur.vs)"
    rm -r data/shaders
    play_show
    refused 253 "$unread" "$(unreadable pulse.vs pulse.ps)"
}

@test "shaders: gives up on a shader file that is larger than memory" {
    stage
    truncate -s 3G data/shaders/pulse.ps
    play_show bash -c 'ulimit -v 2500000; exec "$0"' "$program"
    refused 253 "$START_LINES\nFail to read shaders\n$SHADER_END" \
        "Erreur d'allocation de la m\xE9moire pour y placer le contenu du fichier\n\n"
}

@test "shaders: says what is wrong with a shader" {
    stage
    : >data/shaders/hblur.ps
    echo 'void main() { nothing; }' >data/shaders/hblur.vs
    play_show
    [ "$status" -eq 253 ]
    # the driver's words in between are its own
    is <(head -n 4 "$out") <<<"$START_LINES"
    grep -q "^Fail to link the shader 'data/shaders/hblur.vs': .*nothing" "$out"
    run ! grep -q hblur.ps "$out"
    is <(tail -n 3 "$out") < <(printf "%b" "Fail to create the shader\n$SHADER_END")
    is "$err" </dev/null

    echo 'void other(); void main() { other(); }' | tee data/shaders/pulse.vs >data/shaders/pulse.ps
    play_show
    refused 253 "$START_LINES\nFail to create the shader: data/shaders/pulse.vs data/shaders/pulse.ps Linking\n$SHADER_END" \
        "$(cat "$err")\n"
    [ "$(head -n 1 "$err")" = "Erreur lors du liage du shader:" ]
    grep -q other "$err"
}

@test "music: plays silently without a track, and says why in one line" {
    stage
    rm data/music/quelar.mp3
    play_show
    ran <<<'The music file does not exist.'
    mkdir data/music/quelar.mp3
    play_show
    ran <<<'The music file is a folder.'
    rmdir data/music/quelar.mp3
    : >data/music/quelar.mp3
    play_show
    ran <<<'The music file is empty.'
    yes 'No music at all.' | head -c 300000 >data/music/quelar.mp3
    play_show
    ran <<<'The music file is not an MP3.'
}

@test "music: plays a track with a hole in it" {
    stage
    dd if=/dev/zero of=data/music/quelar.mp3 bs=1000 seek=100 count=300 conv=notrunc status=none
    play_show
    ran </dev/null
}

@test "surroundings: needs no environment, no right to write, and leaves nothing behind" {
    stage "another's folder, a strange one"
    chmod -R a-w .
    ls -lRA --full-time >"$BATS_TEST_TMPDIR/before"
    play_show "${bare[@]}" "$program"
    ran </dev/null
    ls -lRA --full-time | is "$BATS_TEST_TMPDIR/before"
    chmod -R u+w .
}

@test "surroundings: says what it misses when started from elsewhere" {
    cd "$BATS_TEST_TMPDIR"
    play_show
    refused 253 "$START_LINES\nFail to read shaders\n$SHADER_END" \
        "Fail to open the setting file\nThe music file does not exist.\n$(unreadable pulse.vs pulse.ps)"
}

@test "surroundings: keeps off the screen's connection where the console is closed" {
    stage
    while read -r closed; do
        launch bash -c "exec \"\$0\" $closed" "$program"
        await eval '[ -n "$(picture)" ]'
        escape
        [ "$status" -eq 0 ]
        is "$out" </dev/null
        is "$err" </dev/null
    done <<'END'
>&-
<&- >&- 2>&-
END
}

# The signals that the show listens to at the moment, as a mask.
heeded() { awk '/^SigCgt/ { print $2 }' "/proc/$(show_process)/status"; }
listening() { (($((16#$(heeded))) & 1 << 14)); } # SIGTERM, the fifteenth

@test "signals: the first one ends the show as Escape does" {
    stage
    for signal in INT TERM HUP QUIT; do
        start
        kill -"$signal" "$(show_process)"
        await_end
        ran </dev/null
        [ -z "$(picture)" ]
    done
}

@test "signals: a second one ends it at once, wherever it is stuck" {
    stage
    # no answer comes from the screen
    kill -STOP "$screen_pid"
    for second in TERM INT; do
        launch
        await listening
        kill -HUP "$(show_process)"
        await eval '! listening'
        running
        kill -"$second" "$(show_process)"
        await_end
        [ "$status" -eq $((128 + $(kill -l "$second"))) ]
        is "$out" </dev/null
    done
}

@test "signals: what the starter has the show ignore stays ignored" {
    stage
    start env --ignore-signal=HUP "$program"
    kill -HUP "$(show_process)"
    sleep 0.2
    running
    escape
    ran </dev/null
}
