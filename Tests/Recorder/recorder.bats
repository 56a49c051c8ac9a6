# The recorder as its users meet it: what it makes of which options, what it says when it can't.

bats_require_minimum_version 1.5.0

setup_file() {
    export ROOT=$BATS_TEST_DIRNAME/../..
    export PROGRAMS=${QUELAR_BUILD:-$ROOT/build}/bin
    # Nothing here may lean on a screen that happens to be there.
    unset DISPLAY QUELAR_COMMAND
}

setup() { mkdir "$BATS_TEST_TMPDIR/work" && cd "$BATS_TEST_TMPDIR/work"; }

# What it said into files is shown too, when a test fails.
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

# A song of so many seconds: song NAME SECONDS [FILTER]
song() { ffmpeg -v error -f lavfi -i "sine=60:duration=$2${3:+,$3}" -- "$1"; }

@test "wrong options are named, with status 2" {
    while IFS='|' read -r text options; do
        # shellcheck disable=SC2086
        fails 2 "$text" "$PROGRAMS/quelar-record" $options
    done <<'END'
unknown option '--smooth=3'|--smooth=3
'wide' is not WIDTHxHEIGHT|--size wide
the size 15x48 is outside 16x16 to 3840x2160|--size 15x48
'-1' is not a whole number from 0 to 16777216|--seed -1
--size needs WIDTHxHEIGHT|--size
'x' is not a number of seconds|--from x
the show is over at 103.2 seconds|--still 103.215 a.png
no frame between|--from 2 --to 2
should end in .png|--still 2 a.jpg
'--fast' should end in .mp4|-- --fast
should end in .jpg or .jpeg or .png|--contact-sheet a.gif
two videos named|-o a.mp4 b.mp4
--whole needs --track|--whole
for a video file and nothing else|--jobs 2 --still 1 a.png a.mp4
--sshlogin needs --jobs|--sshlogin attic
END
    ln -s a.png link.png
    fails 2 "two things are to be" record --contact-sheet link.png --still 1 ./a.png
}

@test "help and version go to standard output; the manual and the completion know every option" {
    run --separate-stderr env QUELAR_COMMAND=record "$PROGRAMS/quelar-record" --to 3 --help
    [ "$status$stderr" = 0 ]
    [ "$(awk 'length > 110' <<<"$output")" = "" ]
    grep -qx 'Usage: record \[OPTION\]... \[FILE\]' <<<"$output"
    options=$(grep -oE '^  [^"]*--[a-z-]+' <<<"$output" | grep -oE -- '--[a-z-]+' | sort -u)
    [ "$(wc -l <<<"$options")" -ge 17 ]
    for option in $options; do grep -qF -- "${option//-/\\-}" "$ROOT/Packaging/quelar.6"; done
    source "$ROOT/Packaging/quelar.bash-completion"
    COMP_WORDS=("$PROGRAMS/quelar-record" --) COMP_CWORD=1
    _quelar "${COMP_WORDS[0]}"
    [ "$(printf '%s\n' "${COMPREPLY[@]}" | sort -u)" = "$options" ]
    [ "$("$PROGRAMS/quelar-record" -V)" = "Quelar $(sed -n 's/^project(quelar VERSION \([^ ]*\).*/\1/p' "$ROOT/CMakeLists.txt")" ]
    fails 1 "can't write to standard output: No space left" sh -c "'$PROGRAMS/quelar-record' --help >/dev/full"
}

@test "records exactly the frames of a range, with the sound that belongs to them and a word on what it is" {
    record range.MP4 --from=12.3 --to 14.1 --seed 7 2>said
    [ "$(cat said)" = "quelar-record: 120 frames, 1.8 s of 64x48 in range.MP4 ($(($(stat -c %s range.MP4) / 1000 + 1)) KB)" ]
    [ "$(probe range.MP4 v:0 codec_name,profile,width,height,pix_fmt,color_range,color_space,color_transfer,color_primaries,r_frame_rate,nb_read_frames)" = \
        h264High6448yuv420ptvbt709bt709bt709200/3120 ]
    [ "$(probe range.MP4 v:0 start_time,duration)" = 0.0000001.800000 ]
    [ "$(probe range.MP4 a:0 codec_name)" = aac ]
    # The sound ends with the picture, but for what is left of its last block.
    holds "$(probe range.MP4 a:0 duration) >= 1.8 && $(probe range.MP4 a:0 duration) < 1.825"
    # It is at its place: even 5 ms to either side fit worse.
    for other in 12285 12295 12305 12315; do
        holds "$(difference range.MP4 12300) < $(difference range.MP4 $other) - 3"
    done
    # The index comes first, for playing while loading.
    grep -abom1 -E 'moov|mdat' range.MP4 | head -n 1 | grep -q moov
    [ "$(ffprobe -v error -show_entries format_tags=title,artist,comment -of default=nw=1:nk=1 range.MP4)" = \
        "Quelar
Olmbrex
version $("$PROGRAMS/quelar-record" --version | cut -d ' ' -f 2), seed 7, 64x48" ]
    record --from 103.1 --to 200 --fast --silent fast.mp4
    [ "$(probe fast.mp4 v:0 profile,nb_read_frames)$(probe fast.mp4 a:0 codec_name)" = 'Constrained Baseline7' ]
}

@test "the same settings give the same picture, whoever waits and whatever came before; another seed another" {
    frames --to 1.5 >whole.rgb
    frames --to 1.5 | { sleep 1; cat; } >again.rgb
    frames --from 1.2 --to 1.5 >part.rgb
    frames --from 20 --to 20.03 >late.rgb
    frames --from 20 --to 20.03 --seed 7 >other.rgb
    frame=$((64 * 48 * 3))
    [ "$(stat -c %s whole.rgb)" -eq $((100 * frame)) ]
    cmp whole.rgb again.rgb
    tail -c +$((80 * frame + 1)) whole.rgb | cmp - part.rgb
    run ! cmp -s late.rgb other.rgb
    frames --to 20 | head -c 1000 >/dev/null
    tail -n 1 ../errors | grep -E 'nobody reads standard output any more|Broken pipe'
}

@test "stills and bare frames show what the video shows" {
    frames --still 4.02 late.png --still 3.01 early.png --from 3 --to 3.1 >frames.rgb
    grep -qF 'frame 200 of 64x48 in early.png' ../errors
    [ ! -e quelar.mp4 ]
    ffmpeg -v error -i early.png -f rawvideo -pix_fmt rgb24 still.rgb
    head -c $((64 * 48 * 3)) frames.rgb | cmp - still.rgb
    run ! cmp -s early.png late.png
    record --from 3 --to 3.1 video.mp4
    [ "$(quality video.mp4 frames.rgb 0 | awk '$1 > 30' | wc -l)" -eq 7 ]
}

@test "the settings file is read as strictly as the options; an odd side grows for the video alone" {
    mkdir show
    ln -s "$ROOT"/data/{music,shaders} show
    export TMPDIR=$BATS_TEST_TMPDIR/temporary
    mkdir "$TMPDIR"
    printf 'speed -3.5 hres 33 vres 21 seed 5' >show/settings.ini
    "$PROGRAMS/quelar-record" --data show --to 0.1 --smooth --still 0 still.png odd.mp4 >/dev/null
    [ "$(probe odd.mp4 v:0 width,height)" = 3422 ]
    [ "$(probe still.png v:0 width,height)" = 3321 ]
    [ "$(ffprobe -v error -show_entries format_tags=comment -of csv=p=0 odd.mp4 | cut -d , -f 2-)" = \
        ' seed 5, 33x21, smooth"' ]
    [ -z "$(ls -A "$TMPDIR")" ]
    while IFS='|' read -r settings text; do
        printf '%b' "$settings" >show/settings.ini
        fails 2 "$text" "$PROGRAMS/quelar-record" --data show --to 0.1 a.mp4
    done <<'END'
hres 1000000000|hres: '1000000000' is not a whole number from 0 to 3840
hres=640 vres=480|'hres=640' is not followed by a number
seed|'seed' is not followed by a number
\xEF\xBB\xBFseed 7|byte order mark
END
    # The screen's own size is the usual one, where there is no screen; an option goes before the file.
    echo 'hres 0 vres 0 seed 99999999' >show/settings.ini
    [ "$("$PROGRAMS/quelar-record" --data show --seed 1 --to 0.01 - 2>/dev/null | wc -c)" -eq $((640 * 480 * 3)) ]
    [ "$(frames --size 3840x2160 --seed 16777216 --to 0.01 | wc -c)" -eq $((3840 * 2160 * 3)) ]
    [ "$(frames --size 16x16 --seed 0 --to 0.01 | wc -c)" -eq $((16 * 16 * 3)) ]
}

@test "a large picture and a smooth one look like the usual one" {
    for size in 640x480 1280x960; do record --size $size --still 59.3 $size.png; done
    record --size 640x480 --smooth --still 59.3 smooth.png
    record --smooth --still 59.3 small.png
    record --still 59.3 rough.png
    ffmpeg -v error -i 1280x960.png -vf scale=640:480:flags=area,format=rgb24 averaged.png
    # Each pixel the average of four, but for the rounding.
    holds "$(apart PAE smooth.png averaged.png) < 1.1 / 255"
    for picture in smooth averaged; do
        holds "$(apart RMSE 640x480.png $picture.png -resize '40x30!') < 0.02"
        holds "$(apart RMSE 640x480.png $picture.png) > 0.02"
        # Lines and points are as wide: there is as much light, on the whole and where a fountain stands.
        for part in 640x480+0+0 80x60+340+180; do
            holds "$(apart MAE 640x480.png $picture.png -crop $part +repage -resize '1x1!') < 0.01"
        done
    done
    # Below the usual height they are no thinner.
    holds "$(apart RMSE rough.png small.png -resize '4x3!') < 0.03"
}

@test "the contact sheet shows three frames of each scene in less than 400 KB" {
    record --size 160x120 --contact-sheet sheet.jpg --contact-sheet sheet.png --still 3.42 1.png --still 99.44 18.png
    [ ! -e sheet.jpg ]
    [ "$(probe sheet.png v:0 width,height)" = $((3 * 160 + 16))$((6 * 120 + 28)) ]
    [ "$(stat -c %s sheet.png)" -lt 400000 ]
    for place in 1+4+4 18+332+624; do
        convert sheet.png -crop 160x120+${place#*+} +repage cell.png
        holds "$(apart RMSE cell.png ${place%%+*}.png) < 0.06"
    done
}

@test "plays another song: moved by it, silent after its end; or says why not" {
    song -60.flac 14.1
    record --track -60.flac --from 13 --to 15 --still 14 moved.png song.mp4
    holds "$(probe song.mp4 a:0 duration) >= 1.995"
    holds "$(volume song.mp4 atrim=end=1.05) > -25 && $(volume song.mp4 atrim=start=1.2) < -80"
    # A song that comes by a pipe moves it alike; the own track does not.
    record --track - --still 14 piped.png < <(cat -- -60.flac)
    record --still 14 own.png
    cmp moved.png piped.png
    run ! cmp -s moved.png own.png
    yes 'No music.' | head -c 9999 >text.mp3
    fails 1 'text.mp3: The music file has no sound' record --track text.mp3
    fails 1 'none: The music file does not exist.' record --track none
    fails 1 '-: The music file is empty.' record --track - </dev/null
    fails 1 '.: The music file is a folder.' record --track .
    fails 2 './song.mp4 is the song' record --track song.mp4 ./song.mp4
    cp -R "$ROOT/data" data
    rm data/music/quelar.mp3
    DATA=data record --to 0.1 mute.mp4 2>said
    grep -qx 'quelar-record: The music file does not exist. The video is silent.' said
    [ -z "$(probe mute.mp4 a:0 codec_name)" ]
}

@test "a whole song is filmed in rounds: each starts fresh, with the next seed, and hears the song go on" {
    song silent.wav 118 volume=0
    song song.wav 118 "volume=0:enable='lt(t,115)'"
    song short.wav 0.1
    frames --track silent.wav --whole --seed 7 --from 117.3 --to 117.6 >second.rgb
    frames --track silent.wav --seed 8 --from 14.085 --to 14.385 >first.rgb
    frames --track song.wav --whole --seed 7 --from 117.3 --to 117.6 --still 117.33 third.png >moved.rgb
    [ "$(stat -c %s second.rgb)" -eq $((20 * 64 * 48 * 3)) ]
    cmp first.rgb second.rgb
    run ! cmp -s second.rgb moved.rgb
    ffmpeg -v error -i third.png -f rawvideo -pix_fmt rgb24 - | cmp - <(tail -c +$((2 * 64 * 48 * 3 + 1)) moved.rgb | head -c $((64 * 48 * 3)))
    # From one round into the next.
    frames --track silent.wav --whole --seed 7 --from 103.17 --to 103.5 >over.rgb
    frames --track silent.wav --seed 8 --to 0.285 >start.rgb
    tail -c +$((3 * 64 * 48 * 3 + 1)) over.rgb | cmp - start.rgb
    record --track short.wav --whole short.mp4
    [ "$(probe short.mp4 v:0 nb_read_frames)" -eq 7 ]
    fails 2 'the song is over at 0.1 seconds' record --track short.wav --whole --still 0.2 a.png
}

# Machines reached by ssh, where the test's own folder is another, empty one; "old" and "other" have another show.
# What lies in that folder afterwards is told in ../left.
machines() {
    command_is ssh "folder=$BATS_TEST_TMPDIR"'
        machine=${*: -2:1} command=${*: -1}
        case $machine in
            dead) echo "ssh: connect to host dead port 22: No route to host" >&2 && exit 255 ;;
            hung) exec sleep 1000 ;;
            stopped) exec >&- 2>&-; sleep 0.2; kill -INT $PPID; exit 255 ;;
            old) command=${command/--piece/--older} ;;
            other) command=$(sed "s/--piece. ./&0/" <<<"$command") ;;
        esac
        exec 9>>"$folder/left"
        unshare -rm true 2>/dev/null || exec sh -c "$command"
        export folder command
        exec unshare -rm bash -c "mount -t tmpfs far \$folder && cd \$folder && export {TMPDIR,XDG_CACHE_HOME}=\$folder
            sh -c \"\$command\"; status=\$?; ls -A >&9; exit \$status"'
}

@test "several processes, here and elsewhere, make one video: the same frames in the same order" {
    machines
    mkdir "{1} of 'mine'"
    cd "{1} of 'mine'"
    song song.flac 118
    same=(--track song.flac --whole --seed 7 --smooth --to 117.2)
    "$PROGRAMS/quelar-record" --data "$ROOT/data" --size 64x48 "${same[@]}" --from 115.99 - >frames.rgb 2>../../errors
    "$PROGRAMS/quelar-record" --data "$ROOT/data" --size 64x48 "${same[@]}" --from 116.01 --fast --jobs 2 \
        --sshlogin attic,: spread.mp4 2>said
    [[ $(cat said) == "quelar-record: 80 frames, 1.2 s of 64x48 in spread.mp4 ("*"B), 12 pieces" ]]
    [ "$(ls -A)" = $'frames.rgb\nsaid\nsong.flac\nspread.mp4' ]
    [[ -e ../../left && ! -s ../../left ]]
    [ "$(probe spread.mp4 v profile,start_time,duration,nb_read_frames)" = "Constrained Baseline0.0000001.20000080" ]
    [ "$(ffprobe -v error -select_streams v -show_entries packet=pts_time,flags -of csv=p=0 spread.mp4 | sed -n 's/,K.*//p' | uniq | tr '\n' ' ')" = \
        "0.000000 0.090000 0.195000 0.300000 0.390000 0.495000 0.600000 0.690000 0.795000 0.900000 0.990000 1.095000 " ]
    holds "$(volume spread.mp4 anull) > -25"
    for other in 0 1 2; do quality spread.mp4 frames.rgb $other >$other; done
    [ "$(paste 0 1 2 | head -n 79 | awk '$2 > 31 && $1 < 30 && $3 < 30' | wc -l)" -eq 79 ]
}

@test "a piece that fails is named with its machine and a reason, ends the others, and nothing is left" {
    machines
    echo precious >video.mp4
    while IFS='|' read -r text options; do
        # shellcheck disable=SC2086
        fails 1 "$text" record --to 0.6 --jobs 1 $options video.mp4
    done <<'END'
the piece from 0.000 to 0.195 s failed on dead: connect to host dead port 22: No route to host|--sshlogin dead
s failed on hung: nothing was heard of it for 1 s|--sshlogin hung --patience 1
failed on old: unknown option '--older'|--sshlogin old
failed on other: the show here is|--sshlogin other
END
    [ ! -s ../left ]
    real=$(command -v ffmpeg)
    command_is ffmpeg "echo >>'$BATS_TEST_TMPDIR/calls'; mkdir '$BATS_TEST_TMPDIR/x' 2>/dev/null && exec $real \"\$@\"; echo 'no luck' >&2; exit 1"
    fails 1 "the piece from 0.195 to 0.390 s failed: can't write standard output: ffmpeg says" record --to 0.6 --jobs 1 video.mp4
    [ "$(wc -l <../calls)" -eq 2 ]
    command_is ffmpeg 'kill -KILL $PPID; exec cat >/dev/null'
    fails 1 'failed: killed by signal 9' record --to 0.6 --jobs 2 video.mp4
    command_is ffmpeg 'kill -TERM $(ps -o ppid= $PPID); exec cat >/dev/null'
    fails 143 'stopped before there was anything to keep' record --to 0.6 --jobs 2 video.mp4
    fails 130 'stopped before there was anything to keep' record --jobs 2 --sshlogin stopped video.mp4
    rm ../bin/ffmpeg
    fails 1 "can't keep it: File too large" within 1 --to 0.6 --jobs 1 video.mp4
    [ "$(cat video.mp4)" = precious ]
    # Neither here nor there goes anything on.
    for ((i = 0; i < 100; i++)); do pgrep -f "$BATS_TEST_TMPDIR" >../running || break; sleep 0.1; done
    [ ! -s ../running ]
}

@test "what can't be written is told before the show starts, and nothing is left" {
    mkdir folder.mp4
    echo precious >locked.mp4
    chmod a-w locked.mp4
    fails 1 "can't write none/a.mp4: No such file" record none/a.mp4
    fails 1 "can't write folder.mp4: it is there already and not a plain file" record folder.mp4
    fails 1 "can't write locked.mp4: it is there already and write-protected" record locked.mp4
    fails 1 "can't write /proc/a.png" record b.mp4 --still 1 /proc/a.png
    fails 1 "no data folder none" "$PROGRAMS/quelar-record" --data none --silent a.mp4
    for options in '' '--still 1 a.png'; do
        # shellcheck disable=SC2086
        fails 1 "can't start ffmpeg: No such file or directory" env PATH="$PWD" "$PROGRAMS/quelar-record" --data "$ROOT/data" $options
    done
}

@test "a file takes its name when it is whole, with the rights of the old one, and nothing else is touched" {
    long=$(printf '%0251d' 0).png
    touch .a.png.backup .a.png.abcdef
    echo old >a.png
    chmod 640 a.png
    ln -s real.png b.png
    (umask 027 && TMPDIR= record --still 0 a.png --still 0 b.png --still 0 "$long" --still 0 c.png)
    [ "$(stat -c '%a %F' a.png c.png b.png real.png | tr '\n' ,)" = \
        '640 regular file,640 regular file,777 symbolic link,640 regular file,' ]
    for file in a.png real.png "$long"; do cmp c.png "$file"; done
    (umask 777 && record --still 0 d.png)
    [ "$(stat -c %a d.png)" = 0 ]
    [ "$(ls -A | grep -c '^\.')" -eq 2 ]
    # Killed at any moment, it leaves nothing.
    before=$(ls -A)
    command_is ffmpeg 'kill -KILL $PPID; exec cat >/dev/null'
    run -137 record --to 3 a.mp4
    [ "$(ls -A)" = "$before" ]
}

within() { (trap '' XFSZ; ulimit -f "$1"; shift; record "$@"); }

@test "a full disk ends it with one line and no file" {
    fails 1 "can't write full.mp4: ffmpeg says" within 20 --to 3 full.mp4
    run --separate-stderr eval '"$PROGRAMS/quelar-record" --data "$ROOT/data" --size 64x48 --to 0.5 - >/dev/full'
    [ "$status" -eq 1 ]
    [[ ${stderr_lines[-1]} == "quelar-record: can't write standard output: ffmpeg says"*"No space left on device'" ]]
}

@test "an encoder that fails ends it with one line and no file, and keeps what was there" {
    echo precious >video.mp4
    # Whoever starts it may have its children's ends ignored.
    trap '' CHLD
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
        command_is ffmpeg "[[ \$* != *pipe:0* ]] && exec $(PATH=${PATH#*/bin:} command -v ffmpeg) \"\$@\"
            { head -c 1500000; kill -$signal -- -\$PPID; cat; } | $(PATH=${PATH#*/bin:} command -v ffmpeg) \"\$@\""
        status=0
        setsid -w env --default-signal "$PROGRAMS/quelar-record" --data "$ROOT/data" --size 64x48 $signal.mp4 \
            >/dev/null 2>said || status=$?
        [ "$status" -eq $((128 + $(kill -l $signal))) ]
        frames=$(probe $signal.mp4 v:0 nb_read_frames)
        holds "$frames > 67 && $frames < 6000"
        grep -qF "$frames frames" said
        surplus="$(probe $signal.mp4 a:0 duration) - $frames * 0.015"
        holds "$surplus > -0.001 && $surplus < 0.025"
    done
    # One of them is of no interest to who has it ignored.
    trap '' HUP
    echo precious | tee video.mp4 >sheet.png
    command_is ffmpeg 'head -c 1 >/dev/null; kill -INT $PPID; kill -HUP $PPID; exec cat >/dev/null'
    for options in '--contact-sheet sheet.png' '--from 2'; do
        # shellcheck disable=SC2086
        fails 130 'stopped before there was anything to keep' record --size 640x480 $options video.mp4
    done
    [ "$(cat video.mp4 sheet.png)" = $'precious\nprecious' ]
}

@test "a terminal is shown how far it is and what time is left, and left clean for the summary" {
    script -qec true /dev/null >/dev/null || skip "there are no pseudo-terminals here"
    while read -r length jobs; do
        script -qec "'$PROGRAMS/quelar-record' --data '$ROOT/data' --size 64x48 --from 25 --to 30 $jobs video.mp4 >/dev/null" /dev/null |
            tr '\r' '\n' | grep . >shown
        grep left shown | sed 's/\x1b.*//' >lines
        [ -s lines ]
        run ! grep -vE "^[0-9]+\.[0-9] of $length s, [1-9][0-9]* frames/s, [0-9]+:[0-5][0-9] left$" lines
        # What is left takes as long as it does at that pace.
        awk -F '[ :]+' '{ left = $7 * 60 + $8; off = left - ($3 - $1) / 0.015 / $5; most = 1.5 + left / $5 }
            off > most || off < -most' lines >wrong
        [ ! -s wrong ]
        [[ $(tail -n 1 shown) == $'\e[K'"quelar-record: 333 frames"* ]]
    done <<<$'30.0\n5.0 --jobs 2'
    record --to 2 video.mp4 2>said
    run ! grep left said
}

@test "a failing show keeps its status and message, and leaves no file" {
    mkdir data
    DATA=data run record --silent a.mp4
    [ "$status" -eq 253 ]
    grep -qF "Fail to read shaders" ../shown
    [ "$(ls -A)" = data ]
}
