#!/usr/bin/env bats
# The picture: frames of every scene against references, and what must hold whatever the show looks like.

source "${BATS_TEST_DIRNAME}/frames.bash"

setup_file() {
    export frames=$BATS_FILE_TMPDIR/frames
    record_stills "$frames" data 320x240 0 "${moments[@]}" 2>&1
}

# altered NAME SED-EXPRESSION: a copy of the data whose pulse.vs is changed.
altered() {
    cp -r "$root/data" "$BATS_TEST_TMPDIR/$1"
    sed -i -E "$2" "$BATS_TEST_TMPDIR/$1/shaders/pulse.vs"
    ! cmp -s "$root/data/shaders/pulse.vs" "$BATS_TEST_TMPDIR/$1/shaders/pulse.vs" # or the test looks at nothing
    printf '%s' "$BATS_TEST_TMPDIR/$1"
}

# still NAME [DATA [SIZE]]: records second 4.5, a text and the lattice, and prints the file's name.
still() {
    record_stills "$BATS_TEST_TMPDIR/$1.stills" "${2-data}" "${3:-320x240}" 4.5 >/dev/null 2>&1 || return
    printf '%s' "$BATS_TEST_TMPDIR/$1.stills/4.5.png"
}

# line NAME POSITION [COLOUR]: data whose lattice is drawn as one line, all along which "along" runs from -1.2 to 1.2.
line() {
    local -a code=(
        "gl_FrontColor = vec4(${3:-vec3(0.46)}, 1.0);"
        "float along = 1.2 * (gl_Vertex.z / 74.25 - 1.0);"
        "gl_Position = gl_Vertex.y > 0.5 ? vec4(2.0, 2.0, 2.0, 1.0) : vec4($2, 0.0, 1.0);"
    )
    altered "$1" "s#gl_FrontColor = .*#${code[*]}#"
}

# measure EXPRESSION FILE [OPERATOR...]: a number from ImageMagick, of the file after the operators.
measure() { convert "${@:2}" -format "%[fx:$1]" info:; }

# holds EXPRESSION: whether a comparison of numbers is true.
holds() { echo "$1" && awk "BEGIN { exit !($1) }"; }

# near A B TOLERANCE: whether the three rings of two profiles differ by no more than that share of the first.
near() {
    awk -v most="$3" '{ for (i = 1; i <= 3; ++i) if (($(i + 4) / $i - 1) ^ 2 > most ^ 2) { print; exit 1 } }' <<<"$1 $2"
}

# compared METRIC A B: how the two frames compare from afar: lines may fall a pixel aside, light and colour may not.
compared() {
    convert "$2" "$3" -resize 40x30! -metric "$1" -compare -format '%[distortion]' info:
}

@test "every scene looks like its reference, and at twice the size; the show begins in black" {
    for moment in "${moments[@]}"; do
        echo "$moment s"
        # as much as another rasteriser of lines moves them
        holds "$(compared RMSE "$frames/$moment.png" "$references/$moment.png") < 0.015"
    done
    # Lines keep their width in pixels: what counts is where things are.
    holds "$(compared NCC "$frames/4.5.png" "$(still large data 640x480)") > 0.9"
    holds "$(measure maxima "$frames/0.png") == 0"
}

# mean_with UNIFORM VALUE: the mean of the picture with that value for the uniform, in mean, and its file in picture.
mean_with() {
    picture=$(still "$1$2" "$(altered "$1$2" "s/uniform float $1;/const float $1 = $2;/")")
    mean=$(measure mean "$picture")
}

@test "brightness follows the fade, down to nothing, glow included" {
    mean_with fade 1.0
    full=$mean
    mean_with fade 0.5
    holds "$mean < 0.72 * $full && $mean > 0.3 * $full"
    mean_with fade 0.0
    holds "$(measure maxima "$picture") == 0"
}

@test "a beat is a swell that falls smoothly, one below zero does nothing" {
    before=''
    for pulse in 1.0 0.66 0.33 0.0; do
        mean_with amplif $pulse
        [[ -z $before ]] || holds "$before > 1.06 * $mean && $before < 1.4 * $mean"
        before=$mean
    done
    rest=$picture
    mean_with amplif -0.04
    cmp "$rest" "$picture"
}

@test "light falls off around a line, whichever way it runs, in shares of the picture, at any size" {
    near "29.4 10.4 6.5 1" "$(ring_profile "$(still flat "$(line flat 'along, 0.1 + 0.4 * along')" 640x480)")" 0.05
    near "26.3 9.5 5.5 1" "$(ring_profile "$(still steep "$(line steep '0.1 + 0.8 * along, along')" 640x480)")" 0.05
    # A broad beam of light: lines themselves are so many pixels wide.
    beam=$(line beam 'along, 0.1 + 0.4 * along + 0.0016 * gl_Vertex.x')
    expected=$(ring_profile "$(still 640x480 "$beam" 640x480)")
    for size in 651x487 1280x960 500x720; do
        near "$expected" "$(ring_profile "$(still "$size" "$beam" "$size")")" 0.08
    done
}

@test "grey light is cold, the colder the farther out, and red stays red" {
    # Of a level line in the middle: 8 and 22 pixels above its upper edge.
    grey=$(still grey "$(line grey 'along, 0.0')" 640x480)
    red=$(still red "$(line red 'along, 0.0' '0.7, 0.0, 0.0')" 640x480)
    close() { measure "255*mean.$2" "$1" -crop 640x1+0+230; }
    far() { measure "255*mean.$2" "$1" -crop 640x1+0+216; }
    holds "$(close "$grey" b) > 1.3 * $(close "$grey" r)"
    holds "$(far "$grey" r) / $(far "$grey" b) < 0.75 * $(close "$grey" r) / $(close "$grey" b)"
    holds "$(close "$red" r) > 15 && $(far "$red" r) > 5"
    holds "$(close "$red" b) + $(close "$red" g) + $(far "$red" b) + $(far "$red" g) < 0.1 * $(close "$red" r)"
}

@test "light fades into black without bands, by noise that never changes" {
    # Along a level line the light is the same: only the noise tells the pixels of a row apart.
    noise=$BATS_TEST_TMPDIR/noise
    record_stills "$noise" "$(line level 'along, 0.0')" 320x240 4.5 4.53 >/dev/null 2>&1
    cmp "$noise/4.5.png" "$noise/4.53.png"
    for row in 100 102 104 106; do
        holds "$(measure '255*(maxima.b-minima.b)' "$noise/4.5.png" -crop "100x1+110+$row") == 1"
    done
}

@test "a line that moves slowly does not flicker" {
    # The fade of the shot moves it, by less than a pixel a frame.
    slow() {
        record_stills "$BATS_TEST_TMPDIR/$1" "$(line "$1" "$2")" 320x240 \
            4.4 4.415 4.43 4.445 4.46 4.475 4.49 4.505 4.52 4.535 >/dev/null 2>&1
        for frame in "$BATS_TEST_TMPDIR/$1/"*.png; do ring_profile "$frame"; done >"$BATS_TEST_TMPDIR/profile"
    }
    # varies COLUMN: the largest of its ten numbers in shares of the least.
    varies() { sort -n -k "$1" "$BATS_TEST_TMPDIR/profile" | awk "{ v[NR] = \$$1 } END { print NR == 10 ? v[10] / v[1] : 9 }"; }
    slow slanted 'along, 0.1 + 0.6 * fade + 0.4 * along'
    for ring in 1 2 3; do holds "$(varies $ring) < 1.05"; done
    # Where a line follows the rows, light may shift between the rings, but there is no more and no less of it.
    slow level 'along, 0.1 + 0.6 * fade'
    holds "$(varies 4) < 1.08"
}

@test "light spreads to all sides, and none comes round to the opposite edge" {
    # A line along each edge of the picture, and of the small pictures too, which lie side by side.
    while read -r side opposite position near far; do
        picture=$(still "$side" "$(line "$side" "$position")")
        holds "$(measure maxima "$picture" -gravity "$side" -crop "$near") > 0"
        holds "$(measure maxima "$picture" -gravity "$opposite" -crop "$far") == 0"
    done <<'END'
west east -0.97,along 3x240+15+0 240x240+0+0
east west 0.97,along 3x240+15+0 240x240+0+0
south north along,-0.97 320x3+0+15 320x160+0+0
north south along,0.97 320x3+0+15 320x160+0+0
END
}
