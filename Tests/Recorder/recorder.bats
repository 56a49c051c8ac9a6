# The recorder and the player as their users meet them: what they make of which options, what they say when they can't.

bats_require_minimum_version 1.5.0

setup_file() {
    export ROOT=$BATS_TEST_DIRNAME/../..
    export PROGRAMS=${QUELAR_BUILD:-$ROOT/build}/bin
    # Nothing here may lean on a screen that happens to be there.
    unset DISPLAY
}

setup() { mkdir "$BATS_TEST_TMPDIR/work" && cd "$BATS_TEST_TMPDIR/work"; }

# What the programs said into files is shown too, when a test fails.
teardown() { tail -v -n 20 "$BATS_TEST_TMPDIR"/{errors,shown,work/said} 2>/dev/null || true; }

# The show's own lines are kept away.
record() { "$PROGRAMS/quelar-record" --data "${DATA:-$ROOT/data}" --size 64x48 "$@" >../shown; }
frames() { "$PROGRAMS/quelar-record" --data "$ROOT/data" --size 64x48 "$@" - 2>../errors; }

# What it reads like when it fails: this status, one line holding this text, and no new file.
fails() {
    local status=$1 text=$2 before
    shift 2
    before=$(ls -A)
    "$@" >../shown 2>../errors && return 1
    [ $? -eq "$status" ]
    [ "$(wc -l <../errors)" -eq 1 ]
    grep -F -- "$text" ../errors
    [ "$(ls -A)" = "$before" ]
}

# A program of that name, to be found before all others.
command_is() {
    mkdir -p ../bin
    printf '#!/bin/bash\n%s\n' "$2" >"../bin/$1"
    chmod +x "../bin/$1"
    PATH=$BATS_TEST_TMPDIR/bin:${PATH#"$BATS_TEST_TMPDIR/bin:"}
}

# Numbers about a video: probe FILE v:0 nb_read_frames
probe() {
    ffprobe -v error -count_frames -select_streams "$2" -show_entries "stream=$3" -of csv=p=0 "$1" | tr -d ,
}

# How loud a video's sound is after the given filters, in dB.
volume() { ffmpeg -nostats -i "$1" -af "$2,volumedetect" -f null - 2>&1 | sed -n 's/.*mean_volume: \(.*\) dB/\1/p'; }

# How loud the difference is between a video's sound and the track from this many ms on, in dB.
difference() {
    ffmpeg -nostats -i "$1" -i "$ROOT/data/music/quelar.mp3" -filter_complex \
        "[0:a]atrim=start=0.1,asetpts=PTS-STARTPTS[a];[1:a]atrim=start=$(($2 + 100))ms,volume=-1,asetpts=PTS-STARTPTS[b];
         [a][b]amix=2:duration=shortest:normalize=0,volumedetect" \
        -f null - 2>&1 | sed -n 's/.*mean_volume: \(.*\) dB/\1/p'
}

# The quality of each frame of a 64x48 video against bare frames, the first ones left out, in dB, one a line.
quality() {
    ffmpeg -v error -i "$1" -f rawvideo -pixel_format rgb24 -video_size 64x48 -framerate 200/3 -i "$2" -lavfi \
        "[0:v]settb=1/200,setpts=3*N[a];[1:v]select=gte(n\,$3),settb=1/200,setpts=3*N,
         scale=out_color_matrix=bt709:out_range=tv,format=yuv420p[b];[a][b]psnr=f=-:shortest=1" -f null - |
        sed 's/.*psnr_y:\([^ ]*\).*/\1/; s/inf/99/'
}

# holds EXPRESSION: whether a comparison of numbers is true.
holds() { echo "$1" && awk "BEGIN { exit !($1) }"; }

# How far apart two pictures are: apart METRIC A B [OPERATOR...]
apart() { convert "$2" "$3" "${@:4}" -metric "$1" -compare -format '%[distortion]' info:; }

@test "wrong options are named, with status 2" {
    while IFS='|' read -r text options; do
        # shellcheck disable=SC2086
        fails 2 "$text" "$PROGRAMS/quelar-record" $options
    done <<'END'
unknown option '--quick'|--quick
'wide' is not|--size wide
'64x' is not|--size 64x
'64x48x' is not|--size 64x48x
the size 15x48 is outside 16x16 to 3840x2160|--size 15x48
the size 64x15 is outside|--size 64x15
the size 3841x48 is outside|--size 3841x48
the size 3840x2161 is outside|--size 3840x2161
whole number|--seed -1
whole number|--seed 16777217
--size needs|--size
not a number of seconds|--from x
not a number of seconds|--to -1
not a number of seconds|--to nan
over at 103.2|--from 103.3
over at 103.2|--still 104 a.png
no frame between|--from 2 --to 2
no frame between|--from 103.21
--still needs a file name|--still 2
should end in .png|--still 2 a.jpg
should end in .mp4|a.avi
'--fast' should end in .mp4|-- --fast
should end in .jpg or .jpeg or .png|--contact-sheet a.gif
two videos named|-o a.mp4 b.mp4
two songs named|--track a --track b
from 1 to 256|--jobs 0
from 1 to 256|--jobs 257
for a video file and nothing else|--jobs 2 -
for a video file and nothing else|--jobs 2 --still 1 a.png a.mp4
for a video file and nothing else|--jobs 2 --contact-sheet a.png a.mp4
--sshlogin needs --jobs|--sshlogin attic
END
    fails 2 "unknown option '--to'" "$PROGRAMS/quelar-play" --to 3
    fails 2 "the size 15x48 is outside 16x16 to 3840x2160" "$PROGRAMS/quelar-play" --size 15x48
    fails 2 "two songs named" "$PROGRAMS/quelar-play" --track a -- -b
}

@test "help is a success and goes to standard output" {
    for program in play record; do
        run --separate-stderr "$PROGRAMS/quelar-$program" --help
        [ "$status$stderr" = 0 ]
        [ "$(awk 'length > 110' <<<"$output")" = "" ]
        for option in --size --seed --track --data --help; do grep -qF -- "  $option" <<<"${output//SONG,/ }"; done
    done
    for option in FILE -o --from --to --still --contact-sheet --smooth --fast --silent --jobs --sshlogin; do
        grep -qF -- "$option" <<<"$output"
    done
}

@test "records exactly the frames of a range, with the sound that belongs to them and a word on what it is" {
    record --from 12.3 --to 14.1 --seed 7 range.mp4 2>said
    [ "$(cat said)" = "quelar-record: 120 frames, 1.8 s of 64x48 in range.mp4 ($(($(stat -c %s range.mp4) / 1000 + 1)) KB)" ]
    [ "$(probe range.mp4 v:0 codec_name,profile,width,height,pix_fmt,color_range,color_space,color_transfer,color_primaries,r_frame_rate,nb_read_frames)" = \
        h264High6448yuv420ptvbt709bt709bt709200/3120 ]
    [ "$(probe range.mp4 v:0 start_time,duration)" = 0.0000001.800000 ]
    [ "$(probe range.mp4 a:0 codec_name)" = aac ]
    # The sound ends with the picture, but for what is left of its last block.
    holds "$(probe range.mp4 a:0 duration) >= 1.8 && $(probe range.mp4 a:0 duration) < 1.825"
    # It is at its place: even 5 ms to either side fit worse.
    for other in 12285 12295 12305 12315; do
        holds "$(difference range.mp4 12300) < $(difference range.mp4 $other) - 3"
    done
    # The index comes first, for playing while loading.
    grep -abom1 -E 'moov|mdat' range.mp4 | head -n 1 | grep -q moov
    [ "$(ffprobe -v error -show_entries format_tags=title,artist,comment -of default=nw=1:nk=1 range.mp4)" = \
        "Quelar
Olmbrex
version $(sed -n 's/^project(quelar VERSION \([^ ]*\).*/\1/p' "$ROOT/CMakeLists.txt"), seed 7, 64x48" ]
    record --from 12.3 --to 14.1 --seed 7 --fast --silent fast.mp4
    [ "$(probe fast.mp4 v:0 profile)$(probe fast.mp4 a:0 codec_name)" = 'Constrained Baseline' ]
}

@test "the same settings give the same picture, with or without what comes before; another seed another" {
    frames --to 1.5 >whole.rgb
    frames --to 1.5 >again.rgb
    frames --from 1.2 --to 1.5 >part.rgb
    frames --from 20 --to 20.03 >late.rgb
    frames --from 20 --to 20.03 --seed 7 >other.rgb
    frame=$((64 * 48 * 3))
    [ "$(stat -c %s whole.rgb)" -eq $((100 * frame)) ]
    cmp whole.rgb again.rgb
    tail -c +$((80 * frame + 1)) whole.rgb | cmp - part.rgb
    run ! cmp -s late.rgb other.rgb
}

@test "stills and bare frames show what the video shows" {
    frames --still 4.02 late.png --still 3.01 early.png --from 3 --to 3.1 >frames.rgb
    grep -qF 'frame 268 of 64x48 in late.png' ../errors
    grep -qF 'frame 200 of 64x48 in early.png' ../errors
    [ ! -e quelar.mp4 ]
    ffmpeg -v error -i early.png -f rawvideo -pix_fmt rgb24 still.rgb
    head -c $((64 * 48 * 3)) frames.rgb | cmp - still.rgb
    [ "$(tr -d '\0' <still.rgb | wc -c)" -gt 300 ]
    run ! cmp -s early.png late.png
    record --from 3 --to 3.1 video.mp4
    [ "$(quality video.mp4 frames.rgb 0 | awk '$1 > 30' | wc -l)" -eq 7 ]
}

@test "the size comes from the settings too, within the same limits; an odd side grows for the video alone" {
    mkdir data
    ln -s "$ROOT"/data/{music,shaders} data
    printf 'hres 33 vres 21 seed -5.5' >data/settings.ini
    "$PROGRAMS/quelar-record" --to 0.1 --smooth --still 0 still.png odd.mp4 >/dev/null
    [ "$(probe odd.mp4 v:0 width,height)" = 3422 ]
    [ "$(probe still.png v:0 width,height)" = 3321 ]
    [ "$(ffprobe -v error -show_entries format_tags=comment -of csv=p=0 odd.mp4 | cut -d , -f 2-)" = \
        ' seed -5, 33x21, smooth"' ]
    [ "$(cat data/settings.ini)" = 'hres 33 vres 21 seed -5.5' ]
    while IFS='|' read -r settings size; do
        echo "$settings" >data/settings.ini
        fails 2 "the size $size is outside 16x16 to 3840x2160" "$PROGRAMS/quelar-record" --to 0.1 a.mp4
        [ ! -s ../shown ]
    done <<'END'
hres 1000000000|1000000000x480
vres -5.5|640x-5
hres 15.9 vres 16|15x16
hres 3840 vres 2161|3840x2161
END
    # The screen's own size is the usual one, where there is no screen; the limits themselves are allowed.
    echo 'hres 0.9 vres -0.9' >data/settings.ini
    [ "$("$PROGRAMS/quelar-record" --to 0.01 - 2>/dev/null | wc -c)" -eq $((640 * 480 * 3)) ]
    [ "$(frames --size 3840x2160 --seed 16777216 --to 0.01 | wc -c)" -eq $((3840 * 2160 * 3)) ]
    [ "$(frames --size 16x16 --seed 0 --to 0.01 | wc -c)" -eq $((16 * 16 * 3)) ]
}

@test "a large picture and a smooth one look like the usual one" {
    for size in 640x480 1280x960; do record --size $size --still 55.3 $size.png; done
    record --size 640x480 --smooth --still 55.3 smooth.png
    record --smooth --still 55.3 small.png
    record --still 55.3 rough.png
    ffmpeg -v error -i 1280x960.png -vf scale=640:480:flags=area,format=rgb24 averaged.png
    # Each pixel the average of four, but for the rounding.
    holds "$(apart PAE smooth.png averaged.png) < 1.1 / 255"
    for picture in smooth averaged; do
        holds "$(apart RMSE 640x480.png $picture.png -resize '40x30!') < 0.02"
        holds "$(apart RMSE 640x480.png $picture.png) > 0.02"
        # The lines are as wide: there is as much light.
        holds "$(apart MAE 640x480.png $picture.png -resize '1x1!') < 0.01"
    done
    # Below the usual height the lines are no thinner.
    holds "$(apart RMSE rough.png small.png -resize '4x3!') < 0.03"
}

@test "the contact sheet shows three frames of each scene in less than 400 KB" {
    record --size 160x120 --contact-sheet sheet.jpg --contact-sheet sheet.png --still 3.42 1.png --still 99.44 18.png
    [ ! -e sheet.jpg ]
    [ "$(probe sheet.png v:0 width,height)" = $((3 * 160 + 16))$((6 * 120 + 28)) ]
    [ "$(stat -c %s sheet.png)" -lt 400000 ]
    for place in 1+4+4 18+332+624; do
        convert sheet.png -crop 160x120+${place#*+} +repage cell.png
        holds "$(apart RMSE cell.png ${place%%+*}.png) < 0.05"
    done
}

@test "plays another song: moved by it, silent after its end, with the data as it was; or says why not" {
    ffmpeg -v error -f lavfi -i sine=60:duration=1 -c:a libmp3lame song.mp3
    before=$(ls -lR --full-time "$ROOT/data")
    record --track song.mp3 --to 2 --still 0.9 moved.png song.mp4
    holds "$(probe song.mp4 a:0 duration) >= 2"
    holds "$(volume song.mp4 atrim=end=0.9) > -25 && $(volume song.mp4 atrim=start=1.2) < -80"
    record --still 14 own.png
    record --track song.mp3 --still 14 silent.png
    run ! cmp -s own.png silent.png
    [ "$(ls -lR --full-time "$ROOT/data")" = "$before" ]
    yes 'No music.' | head -c 9999 >text.mp3
    for program in "$PROGRAMS/quelar-record --track" "$PROGRAMS/quelar-play"; do
        for fault in 'text.mp3: The music file is not an MP3.' 'none: The music file does not exist.'; do
            # shellcheck disable=SC2086
            fails 1 "$fault" $program "${fault%%:*}"
            [ ! -s ../shown ]
        done
    done
    cp -R "$ROOT/data" data
    rm data/music/quelar.mp3
    DATA=data record --to 0.1 mute.mp4 2>said
    grep -qx 'quelar-record: The music file does not exist. The video is silent.' said
    [ -z "$(probe mute.mp4 a:0 codec_name)" ]
}

@test "several processes, here and elsewhere, make one video: the same frames in the same order" {
    # A machine reached by this, which has folders of its own, and nobody's login shell.
    unset SHELL
    command_is far 'while [[ $1 == -* ]]; do shift; done; shift; [[ $1 != -- ]] || shift
        command=${*//quelar-stage./far-stage.}; echo "$command" >>'"$BATS_TEST_TMPDIR"'/log
        exec sh -c "${command//7175656c61722d73746167652e/6661722d73746167652e}"'
    ffmpeg -v error -f lavfi -i sine=60:duration=16 -c:a libmp3lame song.mp3
    same=(--track song.mp3 --seed 7 --smooth --to 15.2)
    frames "${same[@]}" --from 13.99 >frames.rgb
    HOME=$PWD PARALLEL_SSH=far record "${same[@]}" --from 14.01 --fast --jobs 1 --sshlogin attic,: spread.mp4 2>said
    [[ $(cat said) == "quelar-record: 80 frames, 1.2 s of 64x48 in spread.mp4 (0."?" MB), 6 pieces" ]]
    grep -q 'mkdir -p.*far-stage' ../log
    [ "$(ls -A)" = $'frames.rgb\nsaid\nsong.mp3\nspread.mp4' ]
    [ "$(probe spread.mp4 v:0 profile,start_time,duration,nb_read_frames)" = "Constrained Baseline0.0000001.20000080" ]
    [ "$(ffprobe -v error -select_streams v -show_entries packet=pts_time,flags -of csv=p=0 spread.mp4 | sed -n 's/,K.*//p' | uniq | tr '\n' ' ')" = \
        "0.000000 0.195000 0.390000 0.600000 0.795000 0.990000 " ]
    holds "$(volume spread.mp4 anull) > -25"
    for other in 0 1 2; do quality spread.mp4 frames.rgb $other >$other; done
    [ "$(paste 0 1 2 | head -n 79 | awk '$2 > 31 && $1 < 30 && $3 < 30' | wc -l)" -eq 79 ]
}

@test "a piece that fails is named, and nothing half-made is left" {
    command_is ffmpeg "case \$* in *piece-2*) echo 'no luck' >&2; exit 1 ;; esac; exec $(command -v ffmpeg) \"\$@\""
    echo precious >video.mp4
    fails 1 "the piece from 0.195 to 0.390 s failed: quelar-record: can't write piece-2.mp4: ffmpeg says 'no luck'" \
        record --to 0.6 --jobs 1 video.mp4
    [ "$(cat video.mp4)" = precious ]
    command_is parallel 'kill -INT $PPID; trap "exit 9" TERM; while :; do sleep 0.1; done'
    fails 130 'stopped before there was anything to keep' record --jobs 1 video.mp4
    command_is parallel 'echo "never heard of it" >&2; exit 255'
    fails 1 "GNU parallel failed: never heard of it" record --jobs 1 video.mp4
    rm ../bin/parallel
    fails 1 "GNU parallel is not installed" env PATH="$BATS_TEST_TMPDIR/bin" "$PROGRAMS/quelar-record" --jobs 2 \
        --data "$ROOT/data" video.mp4
}

@test "what can't be written is told before the show starts, and nothing is left" {
    mkdir folder.mp4
    fails 1 "can't write none/a.mp4: No such file" record none/a.mp4
    fails 1 "not a plain file" record folder.mp4
    fails 1 "can't write /proc/a.png" record b.mp4 --still 1 /proc/a.png
    fails 1 "no data folder none" record --data none a.mp4
    for options in '' '--still 1 a.png -' '--contact-sheet a.png -'; do
        # shellcheck disable=SC2086
        fails 1 "ffmpeg is not installed" env PATH="$PWD" "$PROGRAMS/quelar-record" --data "$ROOT/data" $options
    done
}

@test "a full disk ends it with one line and no file" {
    within() { (trap '' XFSZ; ulimit -f "$1"; shift; record "$@"); }
    fails 1 "can't write full.mp4: ffmpeg says" within 20 --to 3 full.mp4
    run --separate-stderr eval '"$PROGRAMS/quelar-record" --data "$ROOT/data" --size 64x48 --to 0.5 - >/dev/full'
    [ "$status" -eq 1 ]
    [ "${stderr_lines[-1]}" = "quelar-record: can't write to standard output: No space left on device" ]
}

@test "an encoder that fails ends it with one line and no file, and keeps what was there" {
    echo precious >video.mp4
    while IFS='|' read -r said does; do
        command_is ffmpeg "head -c 99999 >/dev/null; $does"
        fails 1 "$said" record --to 3 video.mp4
    done <<'END'
the encoder (ffmpeg) was killed by signal 9|kill -KILL $$
the encoder (ffmpeg) was stopped by a signal|exit 255
the encoder (ffmpeg) ended with status 3|exit 3
can't write video.mp4: ffmpeg says 'video.mp4: no luck'|echo "${@: -1}: no luck" >&2; echo at all >&2; exit 1
the encoder (ffmpeg) stopped before the end|exit 0
END
    [ "$(cat video.mp4)" = precious ]
}

@test "an interrupt finishes the file with what there is, if that is a second at least" {
    # The signal comes to the whole group, as from a terminal, when the encoder has had so many bytes.
    for signal in INT TERM HUP QUIT; do
        command_is ffmpeg "{ head -c 1500000; kill -$signal -- -\$PPID; cat; } | $(PATH=${PATH#*/bin:} command -v ffmpeg) \"\$@\""
        status=0
        setsid -w env --default-signal "$PROGRAMS/quelar-record" --data "$ROOT/data" --size 64x48 $signal.mp4 \
            >/dev/null 2>said || status=$?
        [ "$status" -eq $((128 + $(kill -l $signal))) ]
        frames=$(probe $signal.mp4 v:0 nb_read_frames)
        holds "$frames > 67 && $frames < 6000"
        grep -qF "$frames frames" said
        surplus="$(probe $signal.mp4 a:0 duration) - $frames * 0.015"
        holds "$surplus > -0.001 && $surplus < 1"
    done
    # One of them is of no interest to who has it ignored.
    trap '' HUP
    echo precious | tee video.mp4 >still.png
    command_is ffmpeg 'head -c 1 >/dev/null; kill -INT $PPID; kill -HUP $PPID; exec cat >/dev/null'
    fails 130 'stopped before there was anything to keep' record --size 640x480 --still 0 still.png video.mp4
    fails 130 'stopped before there was anything to keep' record --size 640x480 --from 2 video.mp4
    [ "$(cat video.mp4 still.png)" = $'precious\nprecious' ]
}

@test "a terminal is shown how far it is, and left clean for the summary" {
    script -qec true /dev/null >/dev/null || skip "there are no pseudo-terminals here"
    script -qec "'$PROGRAMS/quelar-record' --data '$ROOT/data' --size 64x48 --from 25 --to 30 video.mp4 >/dev/null" /dev/null |
        tr '\r' '\n' | grep . >shown
    grep -q 'of 30.0 s' shown
    wrong=$(grep left shown | grep -cvE '^[0-9]+\.[0-9] of 30\.0 s, [1-9][0-9]* frames/s, [0-9]+:[0-5][0-9] left.\[K$') || true
    [ "$wrong" -eq 0 ]
    [[ $(tail -n 1 shown) == $'\e[K'"quelar-record: 333 frames"* ]]
    record --to 2 video.mp4 2>said
    run ! grep left said
}

@test "a failing show keeps its status and message, and leaves no file" {
    mkdir data
    DATA=data run record a.mp4
    [ "$status" -eq 253 ]
    grep -qF "Fail to read shaders" ../shown
    [ "$(ls -A)" = data ]
}

@test "the player stages the show, hands on signals and status, and leaves nothing" {
    mkdir programs
    cp "$PROGRAMS/quelar-play" programs
    ln -s "$PROGRAMS/../lib" lib
    export TMPDIR=$BATS_TEST_TMPDIR
    # In place of the show.
    printf '#!/bin/sh\necho >>data/settings.ini; cp -RL data "%s"; ls -l /proc/$$/fd >"%s/held"; kill -KILL $$' "$PWD" "$PWD" >programs/quelar
    chmod +x programs/quelar
    ffmpeg -v error -f lavfi -i sine=60:duration=1 -c:a libmp3lame -- -song.mp3
    run -137 --separate-stderr programs/quelar-play --size 3840x2160 --seed 16777216 --data "$ROOT/data" -- -song.mp3
    [ -z "$output$stderr" ]
    # The show has its folder in use, should it outlive the player.
    grep -q quelar-stage held
    cmp -- -song.mp3 data/music/quelar.mp3
    cmp "$ROOT/data/shaders/pulse.vs" data/shaders/pulse.vs
    [ "$(tail -n 5 data/settings.ini | tr '\n' ' ')" = 'hres 3840 vres 2160  seed 16777216  ' ]
    for signal in INT TERM HUP; do
        printf '#!/bin/sh\ntrap "exit 5" %s; echo >here; while :; do sleep 0.1; done' $signal >programs/quelar
        env --default-signal programs/quelar-play --data "$ROOT/data" & player=$!
        until compgen -G "$TMPDIR/quelar-stage.*/here"; do kill -0 $player; sleep 0.1; done
        kill -$signal $player
        status=0 && wait $player || status=$?
        [ "$status" -eq 5 ]
        run ! compgen -G "$TMPDIR/quelar-stage.*"
    done
}
