# The recorder as its user meets it: what it writes for which options, and what it says when it can't.

bats_require_minimum_version 1.5.0

setup_file() {
    export ROOT=$BATS_TEST_DIRNAME/../..
    export RECORDER=${QUELAR_BUILD:-$ROOT/build}/bin/quelar-record
    # Nothing here may lean on a screen that happens to be there.
    unset DISPLAY
}

setup() { cd "$BATS_TEST_TMPDIR"; }

# A small recording to files, or of bare frames; the show's own lines are kept away.
record() { "$RECORDER" --data "$ROOT/data" --size 64x48 "$@" >/dev/null; }
frames() { "$RECORDER" --data "$ROOT/data" --size 64x48 "$@" - 2>/dev/null; }

# What it reads like when the recording fails: this status, one line holding this text, and no new file.
fails() {
    local status=$1 text=$2 before
    shift 2
    before=$(ls -A)
    "$@" >/dev/null 2>errors && return 1
    [ $? -eq "$status" ]
    [ "$(wc -l <errors)" -eq 1 ]
    grep -qF -- "$text" errors
    rm errors
    [ "$(ls -A)" = "$before" ]
}

# One number about a video: probe FILE v:0 nb_read_frames
probe() {
    ffprobe -v error -count_frames -select_streams "$2" -show_entries "stream=$3" -of csv=p=0 "$1" | tr -d ,
}

# How loud the difference is between a video's sound and the track from this many ms on, in dB.
difference() {
    ffmpeg -nostats -i "$1" -i "$ROOT/data/music/quelar.mp3" -filter_complex \
        "[0:a]atrim=start=0.1[a];[1:a]atrim=start=$(($2 + 100))ms,volume=-1[b];
         [a]asetpts=PTS-STARTPTS[a];[b]asetpts=PTS-STARTPTS[b];
         [a][b]amix=2:duration=shortest:normalize=0,volumedetect" \
        -f null - 2>&1 | sed -n 's/.*mean_volume: \(.*\) dB/\1/p'
}

@test "wrong options are named, with status 2" {
    while IFS='|' read -r text options; do
        # shellcheck disable=SC2086
        fails 2 "$text" "$RECORDER" $options
    done <<'END'
unknown option '--fast'|--fast
'wide' is not|--size wide
'64x' is not|--size 64x
'64x48x' is not|--size 64x48x
outside 16x16 to 3840x2160|--size 15x48
outside 16x16 to 3840x2160|--size 3840x2161
whole number|--seed -1
whole number|--seed 16777217
--size needs|--size
not a number of seconds|--from x
not a number of seconds|--to -1
not a number of seconds|--to nan
over at 103.2|--from 103.3
over at 103.2|--still 104 a.png
no frame between|--from 2 --to 2
--still needs a file name|--still 2
should end in .png|--still 2 a.jpg
should end in .mp4|a.avi
should end in .jpg or .jpeg or .png|--contact-sheet a.gif
two videos named|-o a.mp4 b.mp4
END
}

@test "help is a success and goes to standard output" {
    run --separate-stderr "$RECORDER" --help
    [ "$status" -eq 0 ] && [ -z "$stderr" ]
    for option in FILE -o --size --seed --from --to --still --contact-sheet --data; do
        grep -qF -- "$option" <<<"$output"
    done
}

@test "records exactly the frames of a range, with the sound that belongs to them" {
    record --from 12.3 --to 14.1 --seed 7 range.mp4 2>summary
    grep -qF "120 frames, 1.8 s of 64x48 in range.mp4" summary
    [ "$(wc -l <summary)" -eq 1 ]
    [ "$(probe range.mp4 v:0 codec_name,width,height,pix_fmt,r_frame_rate,nb_read_frames)" = \
        h2646448yuv420p200/3120 ]
    [ "$(probe range.mp4 v:0 start_time,duration)" = 0.0000001.800000 ]
    [ "$(probe range.mp4 a:0 codec_name)" = aac ]
    # The sound ends with the picture, but for what is left of its last block.
    awk -v d="$(probe range.mp4 a:0 duration)" 'BEGIN { exit !(d >= 1.8 && d < 1.825) }'
    # It is at its place: even 5 ms to either side fit worse.
    here=$(difference range.mp4 12300)
    for other in 12285 12295 12305 12315; do
        awk -v here="$here" -v there="$(difference range.mp4 $other)" 'BEGIN { exit !(here < there - 3) }'
    done
    # The index comes first, for playing while loading.
    grep -abom1 -E 'moov|mdat' range.mp4 | head -n 1 | grep -q moov
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
    frames --still 4.5 late.png --still 3 early.png --from 3 --to 3.1 >frames.rgb
    [ ! -e quelar.mp4 ]
    ffmpeg -v error -i early.png -f rawvideo -pix_fmt rgb24 still.rgb
    head -c $((64 * 48 * 3)) frames.rgb | cmp - still.rgb
    [ "$(tr -d '\0' <still.rgb | wc -c)" -gt 300 ]
    run ! cmp -s early.png late.png
    record --from 4.5 --to 4.51 video.mp4
    ffmpeg -v info -i video.mp4 -i late.png -lavfi '[1:v]format=yuv420p[b];[0:v][b]psnr' -f null - 2>&1 |
        grep -oP 'PSNR.*average:\K[0-9]+' | { read -r average; [ "$average" -ge 30 ]; }
}

@test "the size comes from the settings too; an odd side grows for the video alone" {
    mkdir data
    ln -s "$ROOT"/data/{music,shaders} data
    printf 'hres 33 vres 21' >data/settings.ini
    "$RECORDER" --to 0.1 --still 0 still.png odd.mp4 >/dev/null
    [ "$(probe odd.mp4 v:0 width,height)" = 3422 ]
    [ "$(probe still.png v:0 width,height)" = 3321 ]
    [ "$(cat data/settings.ini)" = 'hres 33 vres 21' ]
}

@test "the contact sheet shows three frames of each scene in less than 400 KB" {
    record --contact-sheet sheet.jpg --contact-sheet sheet.png
    [ ! -e sheet.jpg ]
    [ "$(probe sheet.png v:0 width,height)" = $((3 * 64 + 16))$((6 * 48 + 28)) ]
    [ "$(stat -c %s sheet.png)" -lt 400000 ]
}

@test "what can't be written is told before the show starts, and nothing is left" {
    mkdir folder.mp4
    fails 1 "can't write none/a.mp4: No such file" "$RECORDER" --data "$ROOT/data" none/a.mp4
    fails 1 "not a plain file" "$RECORDER" --data "$ROOT/data" folder.mp4
    fails 1 "can't write /proc/a.png" "$RECORDER" --data "$ROOT/data" b.mp4 --still 1 /proc/a.png
    fails 1 "no data folder none" "$RECORDER" --data none a.mp4
    fails 1 "ffmpeg is not installed" env PATH="$PWD" "$RECORDER" --data "$ROOT/data" a.mp4
}

@test "a full disk ends it with one line and no file" {
    within() { (trap '' XFSZ; ulimit -f "$1"; shift; record "$@"); }
    fails 1 "can't write full.mp4: ffmpeg says" within 20 --to 2 full.mp4
    run --separate-stderr eval '"$RECORDER" --data "$ROOT/data" --size 64x48 --to 0.5 - >/dev/full'
    [ "$status" -eq 1 ]
    [ "${stderr_lines[-1]}" = "quelar-record: can't write to standard output: No space left on device" ]
}

@test "a killed encoder ends it with one line and no file, and keeps what was there" {
    echo precious >video.mp4
    "$RECORDER" --data "$ROOT/data" --size 64x48 video.mp4 >/dev/null 2>errors &
    recorder=$!
    until encoder=$(pgrep -P $recorder ffmpeg); do kill -0 $recorder; done
    kill -KILL "$encoder"
    status=0 && wait $recorder || status=$?
    [ "$status" -eq 1 ]
    [ "$(cat errors)" = "quelar-record: the encoder (ffmpeg) was killed by signal 9" ]
    [ "$(ls -A)" = $'errors\nvideo.mp4' ]
    [ "$(cat video.mp4)" = precious ]
}

@test "an interrupt finishes the file with what there is" {
    for signal in INT TERM; do
        # A session of its own, so that the signal goes to the whole group, as it does from a terminal.
        setsid "$RECORDER" --data "$ROOT/data" --size 64x48 $signal.mp4 >/dev/null 2>summary &
        recorder=$!
        sleep 1.5
        kill -$signal -- -$recorder
        status=0 && wait $recorder || status=$?
        [ "$status" -eq $((128 + $(kill -l $signal))) ]
        frames=$(probe $signal.mp4 v:0 nb_read_frames)
        [ "$frames" -gt 20 ] && [ "$frames" -lt 6000 ]
        grep -qF "$frames frames" summary
        awk -v n="$frames" -v d="$(probe $signal.mp4 a:0 duration)" 'BEGIN { exit !(d >= n * 0.015 - 0.001) }'
    done
}

@test "a terminal is shown how far it is, and left clean for the summary" {
    script -qec "'$RECORDER' --data '$ROOT/data' --size 64x48 --from 25 --to 30 video.mp4 >/dev/null" /dev/null |
        tr '\r' '\n' | grep . >shown
    grep -q 'of 30.0 s' shown
    wrong=$(grep left shown | grep -cvE '^[0-9]+\.[0-9] of 30\.0 s, [1-9][0-9]* frames/s, [0-9]:[0-5][0-9] left.\[K$') || true
    [ "$wrong" -eq 0 ]
    [[ $(tail -n 1 shown) == $'\e[K'"quelar-record: 333 frames"* ]]
    record --to 2 video.mp4 2>quiet
    run ! grep left quiet
}

@test "a failing show keeps its status and message, and leaves no file" {
    mkdir data
    run "$RECORDER" --data data a.mp4
    [ "$status" -eq 253 ]
    grep -qF "Fail to read shaders" <<<"$output"
    [ "$(ls -A)" = data ]
}
